#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace KWCommonNS {

constexpr bool isDigit(std::int32_t ch) {
    return ch >= '0' && ch <= '9';
}
constexpr std::int32_t toAsciiLower(std::int32_t ch) {
    return ch >= 'A' && ch <= 'Z' ? ch + ('a' - 'A') : ch;
}
constexpr char16_t toAsciiUpper(char16_t ch) {
    return ch >= u'a' && ch <= u'z' ? static_cast<char16_t>(ch - (u'a' - u'A')) : ch;
}
constexpr bool isAlpha(std::int32_t ch) {
    const std::int32_t lower = toAsciiLower(ch);
    return lower >= 'a' && lower <= 'z';
}
/// The value of a hexadecimal digit; -1 for another character.
constexpr int hexValue(std::int32_t ch) {
    if (isDigit(ch))
        return ch - '0';
    const std::int32_t lower = toAsciiLower(ch);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Equality with a lower-case ASCII word, ASCII letters of either case taken as equal.
constexpr bool equalsWord(std::u16string_view text, std::u16string_view lowerWord) {
    if (text.size() != lowerWord.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (toAsciiLower(text[i]) != lowerWord[i])
            return false;
    }
    return true;
}

inline std::u16string lowerAscii(std::u16string_view text) {
    std::u16string lower(text);
    for (char16_t& c : lower)
        c = static_cast<char16_t>(toAsciiLower(c));
    return lower;
}

/// The text without the units at both ends for which `isBlank` holds.
template <typename IsBlank>
constexpr std::u16string_view trimWhere(std::u16string_view text, IsBlank isBlank) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace KWCommonNS
