#include <KWFontService17/FS_LogFont.h>

#include <KWFontService17/FS_WindowsRecords.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <tuple>
#include <utility>

namespace KWFontService_NS {

namespace {

/// A name of a Windows record: up to its NUL, or to the end of its field.
template <typename Unit, std::size_t N>
UnicodeString nameOf(const Unit (&field)[N]) {
    static_assert(sizeof(Unit) == sizeof(char16_t));
    const Unit* const end = std::find(std::begin(field), std::end(field), Unit{});
    const Unit* const start = field[0] == Unit{'@'} ? field + 1 : field;
    UnicodeString name;
    std::for_each(start, end, [&name](Unit unit) { name.append(static_cast<char16_t>(unit)); });
    return name;
}

} // namespace

FS_LogFont::FS_LogFont(UnicodeString name, int fontWeight, bool fontItalic)
    : weight(fontWeight), italic(fontItalic), faceName(std::move(name)) {}

FS_LogFont::FS_LogFont(const tagLOGFONTW& font)
    : FS_LogFont(nameOf(font.lfFaceName), font.lfWeight, font.lfItalic != 0) {}

bool FS_LogFont::operator<(const FS_LogFont& other) const {
    return std::tie(faceName, weight, italic) <
           std::tie(other.faceName, other.weight, other.italic);
}

FS_EnumLogFontEx::FS_EnumLogFontEx(const FS_LogFont& font) : FS_LogFont(font) {}

FS_EnumLogFontEx::FS_EnumLogFontEx(UnicodeString name, UnicodeString full, int fontWeight,
                                   bool fontItalic)
    : FS_LogFont(std::move(name), fontWeight, fontItalic), fullName(std::move(full)) {}

FS_EnumLogFontEx::FS_EnumLogFontEx(const tagENUMLOGFONTEXW& font)
    : FS_LogFont(font.elfLogFont), fullName(nameOf(font.elfFullName)) {}

} // namespace KWFontService_NS
