#pragma once

#include <unicode/utf16.h>

#include <cstdint>

namespace KWFontService_NS {

inline constexpr UChar32 kSpace = ' ';

/// The code point at `i`, a lone surrogate included, and `i` moved behind it.
inline UChar32 nextCodePoint(const char16_t* units, std::int32_t& i, std::int32_t length) {
    const char16_t unit = units[i++];
    if (U16_IS_LEAD(unit) && i < length && U16_IS_TRAIL(units[i]))
        return U16_GET_SUPPLEMENTARY(unit, units[i++]);
    return unit;
}

} // namespace KWFontService_NS
