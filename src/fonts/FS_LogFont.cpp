#include <KWFontService17/FS_LogFont.h>

#include <tuple>
#include <utility>

namespace KWFontService_NS {

FS_LogFont::FS_LogFont(UnicodeString name, int fontWeight, bool fontItalic)
    : weight(fontWeight), italic(fontItalic), faceName(std::move(name)) {}

bool FS_LogFont::operator<(const FS_LogFont& other) const {
    return std::tie(faceName, weight, italic) <
           std::tie(other.faceName, other.weight, other.italic);
}

FS_EnumLogFontEx::FS_EnumLogFontEx(const FS_LogFont& font) : FS_LogFont(font) {}

FS_EnumLogFontEx::FS_EnumLogFontEx(UnicodeString name, UnicodeString full, int fontWeight,
                                   bool fontItalic)
    : FS_LogFont(std::move(name), fontWeight, fontItalic), fullName(std::move(full)) {}

} // namespace KWFontService_NS
