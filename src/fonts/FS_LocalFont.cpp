#include "fonts/FS_LocalFont.h"

#include <utility>

namespace KWFontService_NS {

FS_LocalFont::FS_LocalFont(KWCommonNS::KWPtr<FS_BaseFont> local) : FS_ExtraFont(std::move(local)) {
    if (const auto* const inside = dynamic_cast<const FS_LocalFont*>(innerFont.get()))
        depth_ = inside->depth() + 1;
}
FS_LocalFont::~FS_LocalFont() = default;

unsigned int FS_LocalFont::getClassId() const {
    return FS_CLASSID_LOCAL_FONT;
}

bool FS_LocalFont::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_LOCAL_FONT || FS_ExtraFont::isKindOf(id);
}

UnicodeString FS_LocalFont::getClassName() const {
    return UnicodeString("FS_LocalFont");
}

FS_FontFileType FS_LocalFont::getFontFileType(int) const {
    return FS_FILETYPE_LOCAL;
}

bool FS_LocalFont::scanFont(KWError&, std::istream&) {
    return static_cast<bool>(innerFont);
}

} // namespace KWFontService_NS
