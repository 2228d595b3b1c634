#include "fonts/FS_Type1PFA.h"

namespace KWFontService_NS {

FS_Type1PFA::FS_Type1PFA(const KWUri& fontUri) : FS_Type1Printer(fontUri) {}

unsigned int FS_Type1PFA::getClassId() const {
    return FS_CLASSID_TYPE1_PFA;
}

bool FS_Type1PFA::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_TYPE1_PFA || FS_Type1Printer::isKindOf(id);
}

FS_FontFileType FS_Type1PFA::getFontFileType(int) const {
    return FS_FILETYPE_PFA;
}

std::optional<Type1FileError> FS_Type1PFA::scanHead(std::istream& stream,
                                                    PrinterFontHead& head) const {
    return scanPFAHead(stream, head);
}

bool FS_Type1PFA::readSections(std::istream& stream, Type1Sections& sections) const {
    return readPFASections(stream, sections);
}

} // namespace KWFontService_NS
