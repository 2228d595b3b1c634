#include "raster/MonoBitmap.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace KWFontService_NS {

namespace {

using EightPixels = std::array<std::uint8_t, 8>;

constexpr std::array<EightPixels, 256> makePixelsOfByte() {
    std::array<EightPixels, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
        for (std::size_t bit = 0; bit < 8; ++bit)
            table[byte][bit] = (byte & (0x80U >> bit)) != 0 ? 0xFF : 0;
    return table;
}

constexpr std::array<EightPixels, 256> kPixelsOfByte = makePixelsOfByte();

} // namespace

void expandMonoBitmap(const FT_Bitmap& bitmap, std::uint8_t* pixels) {
    const std::size_t wholeBytes = bitmap.width / 8;
    const std::size_t rest = bitmap.width % 8;
    const std::ptrdiff_t pitch = bitmap.pitch;
    for (unsigned int y = 0; y < bitmap.rows; ++y) {
        // Memory starts with the bottom row when the pitch is negative.
        const auto line = static_cast<std::ptrdiff_t>(pitch < 0 ? bitmap.rows - 1 - y : y);
        const unsigned char* row = bitmap.buffer + line * std::abs(pitch);
        for (std::size_t i = 0; i < wholeBytes; ++i, pixels += 8)
            std::memcpy(pixels, kPixelsOfByte[row[i]].data(), 8);
        if (rest > 0) {
            std::memcpy(pixels, kPixelsOfByte[row[wholeBytes]].data(), rest);
            pixels += rest;
        }
    }
}

} // namespace KWFontService_NS
