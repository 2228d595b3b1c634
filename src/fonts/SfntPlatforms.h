#pragma once

#include <cstdint>

namespace KWFontService_NS {

// Platform ids of `cmap` and `name` records (OpenType, Platforms, encodings and languages).
inline constexpr std::uint16_t kPlatformUnicode = 0;
inline constexpr std::uint16_t kPlatformMacintosh = 1;
inline constexpr std::uint16_t kPlatformWindows = 3;

/// The ICU converter of a Macintosh East Asian encoding, null for any other encoding.
constexpr const char* macEastAsianConverter(std::uint16_t encodingID) {
    switch (encodingID) {
    case 1:
        return "cp932";
    case 2:
        return "cp950";
    case 3:
        return "cp949";
    case 25:
        return "cp936";
    default:
        return nullptr;
    }
}

/// The ICU converter of a Windows encoding from before Unicode, null for any other encoding.
constexpr const char* windowsEastAsianConverter(std::uint16_t encodingID) {
    switch (encodingID) {
    case 2:
        return "ShiftJIS";
    case 3:
        return "GB2312";
    case 4:
        return "Big5";
    case 5:
        return "cp949";
    default:
        return nullptr;
    }
}

} // namespace KWFontService_NS
