#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace KWFontService_NS {

/// Kinds of the segments of a PFB file (Adobe Technical Note 5040, chapter 3).
inline constexpr std::uint8_t kPfbText = 1;
inline constexpr std::uint8_t kPfbBinary = 2;
inline constexpr std::uint8_t kPfbEnd = 3; ///< has a mark and a type, and no length

/// What each segment begins with.
inline constexpr std::uint8_t kPfbMark = 0x80;

/// Bytes of the mark and the type, and of the length behind them.
inline constexpr std::size_t kPfbTypeSize = 2;
inline constexpr std::size_t kPfbLengthSize = 4;
inline constexpr std::size_t kPfbHeaderSize = kPfbTypeSize + kPfbLengthSize;

/// The length of a segment, little-endian.
constexpr std::uint32_t pfbLength(std::span<const std::uint8_t, kPfbLengthSize> bytes) {
    return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
}

/// What a segment of text or binary begins with.
constexpr std::array<std::uint8_t, kPfbHeaderSize> pfbHeader(std::uint8_t type,
                                                             std::uint32_t length) {
    return {kPfbMark,
            type,
            static_cast<std::uint8_t>(length),
            static_cast<std::uint8_t>(length >> 8),
            static_cast<std::uint8_t>(length >> 16),
            static_cast<std::uint8_t>(length >> 24)};
}

} // namespace KWFontService_NS
