#pragma once

#include <cstdint>
#include <string_view>

namespace KWCommonNS {

// Character classes of CSS Syntax Module Level 3. A unit of a surrogate pair is a name character,
// as every code point from U+0080 on is.

inline constexpr std::int32_t kReplacement = 0xFFFD;

constexpr bool isSurrogate(std::int32_t ch) {
    return ch >= 0xD800 && ch <= 0xDFFF;
}
constexpr bool isNewline(std::int32_t ch) {
    return ch == '\n' || ch == '\r' || ch == '\f';
}
constexpr bool isCssSpace(std::int32_t ch) {
    return ch == ' ' || ch == '\t' || isNewline(ch);
}
constexpr bool isDigit(std::int32_t ch) {
    return ch >= '0' && ch <= '9';
}
constexpr std::int32_t toAsciiLower(std::int32_t ch) {
    return ch >= 'A' && ch <= 'Z' ? ch + ('a' - 'A') : ch;
}
/// The value of a hexadecimal digit; -1 for another character.
constexpr int hexValue(std::int32_t ch) {
    if (isDigit(ch))
        return ch - '0';
    const std::int32_t lower = toAsciiLower(ch);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}
constexpr bool isNameStart(std::int32_t ch) {
    const std::int32_t lower = toAsciiLower(ch);
    return (lower >= 'a' && lower <= 'z') || ch == '_' || ch >= 0x80;
}
constexpr bool isNameChar(std::int32_t ch) {
    return isNameStart(ch) || isDigit(ch) || ch == '-';
}
constexpr bool isNonPrintable(std::int32_t ch) {
    return (ch >= 0 && ch <= 8) || ch == 0x0B || (ch >= 0x0E && ch <= 0x1F) || ch == 0x7F;
}

constexpr std::u16string_view trimCssSpace(std::u16string_view text) {
    while (!text.empty() && isCssSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isCssSpace(text.back()))
        text.remove_suffix(1);
    return text;
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

} // namespace KWCommonNS
