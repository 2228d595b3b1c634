#pragma once

#include <unicode/unistr.h>

#include <cstdint>

namespace KWCommonNS {

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
