#include "fonts/FS_OpenType.h"

namespace KWFontService_NS {

FS_OpenType::FS_OpenType(const KWUri& fontUri) : FS_CffFaceForwarder(fontUri) {}

unsigned int FS_OpenType::getClassId() const {
    return FS_CLASSID_OPENTYPE;
}

bool FS_OpenType::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_OPENTYPE || FS_TrueType::isKindOf(id);
}

UnicodeString FS_OpenType::getClassName() const {
    return UnicodeString("FS_OpenType");
}

FS_FontFileType FS_OpenType::getFontFileType(int) const {
    return info.isCIDFont() ? FS_FILETYPE_OPENTYPE_CID : FS_FILETYPE_OPENTYPE;
}

bool FS_OpenType::isType1OrNoCID(int) const {
    return !info.isCIDFont();
}
bool FS_OpenType::isTrueTypeOrCID(int) const {
    return info.isCIDFont();
}
bool FS_OpenType::isOpenType() const {
    return true;
}

unsigned short FS_OpenType::getStringID(unsigned short gid, int) const {
    const Type1CMap* cff = info.getCFFInfo();
    return cff != nullptr ? cff->getSIDOfGlyph(gid) : std::uint16_t{0};
}

} // namespace KWFontService_NS
