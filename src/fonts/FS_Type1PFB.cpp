#include "fonts/FS_Type1PFB.h"

namespace KWFontService_NS {

FS_Type1PFB::FS_Type1PFB(const KWUri& fontUri) : FS_Type1Printer(fontUri) {}

unsigned int FS_Type1PFB::getClassId() const {
    return FS_CLASSID_TYPE1_PFB;
}

bool FS_Type1PFB::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_TYPE1_PFB || FS_Type1Printer::isKindOf(id);
}

FS_FontFileType FS_Type1PFB::getFontFileType(int) const {
    return FS_FILETYPE_PFB;
}

std::optional<Type1FileError> FS_Type1PFB::scanHead(std::istream& stream,
                                                    PrinterFontHead& head) const {
    return scanPFBHead(stream, head);
}

bool FS_Type1PFB::readSections(std::istream& stream, Type1Sections& sections) const {
    return readPFBSections(stream, sections);
}

} // namespace KWFontService_NS
