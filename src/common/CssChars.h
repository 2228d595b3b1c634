#pragma once

#include "common/AsciiChars.h"

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
constexpr bool isNameStart(std::int32_t ch) {
    return isAlpha(ch) || ch == '_' || ch >= 0x80;
}
constexpr bool isNameChar(std::int32_t ch) {
    return isNameStart(ch) || isDigit(ch) || ch == '-';
}
constexpr bool isNonPrintable(std::int32_t ch) {
    return (ch >= 0 && ch <= 8) || ch == 0x0B || (ch >= 0x0E && ch <= 0x1F) || ch == 0x7F;
}

constexpr std::u16string_view trimCssSpace(std::u16string_view text) {
    return trimWhere(text, isCssSpace);
}

} // namespace KWCommonNS
