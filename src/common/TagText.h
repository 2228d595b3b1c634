#pragma once

#include <unicode/unistr.h>

#include <cstdint>

namespace KWCommonNS {

/// An sfnt tag from its four characters.
constexpr std::uint32_t sfntTag(const char (&text)[5]) {
    std::uint32_t tag = 0;
    for (int i = 0; i < 4; ++i)
        tag = (tag << 8) | static_cast<unsigned char>(text[i]);
    return tag;
}

/// The OpenType tag of a text, the first character in the top byte; a short text is padded with
/// blanks. 0 for more than four characters and for any outside U+0020 to U+007E.
inline std::uint32_t tagOfText(const icu::UnicodeString& text) {
    constexpr std::int32_t kTagLength = 4;
    if (text.length() > kTagLength)
        return 0;
    std::uint32_t tag = 0;
    for (std::int32_t i = 0; i < kTagLength; ++i) {
        const char16_t unit = i < text.length() ? text.charAt(i) : u' ';
        if (unit < 0x20 || unit > 0x7E)
            return 0;
        tag = tag << 8 | unit;
    }
    return tag;
}

} // namespace KWCommonNS
