#include "raster/MonoBitmap.h"

#include <gtest/gtest.h>

#include <vector>

namespace KWFontService_NS {
namespace {

std::vector<int> expand(std::vector<unsigned char> bits, unsigned int rows, unsigned int width,
                        int pitch) {
    FT_Bitmap bitmap{};
    bitmap.rows = rows;
    bitmap.width = width;
    bitmap.pitch = pitch;
    bitmap.buffer = bits.data();
    std::vector<std::uint8_t> pixels(std::size_t{rows} * width, 0x55);
    expandMonoBitmap(bitmap, pixels.data());
    return {pixels.begin(), pixels.end()};
}

constexpr int X = 0xFF;

TEST(MonoBitmap, TheHighBitIsTheLeftPixel) {
    EXPECT_EQ(expand({0xA1}, 1, 8, 1), (std::vector<int>{X, 0, X, 0, 0, 0, 0, X}));
}

TEST(MonoBitmap, BitsPastTheWidthAreLeftOut) {
    EXPECT_EQ(expand({0xFF, 0x60, 0x00, 0xBF}, 2, 11, 2),
              (std::vector<int>{X, X, X, X, X, X, X, X, 0, X, X, //
                                0, 0, 0, 0, 0, 0, 0, 0, X, 0, X}));
}

TEST(MonoBitmap, RowsArePitchBytesApart) {
    EXPECT_EQ(expand({0x80, 0xEE, 0xEE, 0x40, 0xEE, 0xEE}, 2, 2, 3),
              (std::vector<int>{X, 0, 0, X}));
}

TEST(MonoBitmap, ANegativePitchStartsWithTheBottomRow) {
    EXPECT_EQ(expand({0x40, 0xEE, 0x80, 0xEE, 0xC0, 0xEE}, 3, 2, -2),
              (std::vector<int>{X, X, X, 0, 0, X}));
}

TEST(MonoBitmap, NothingIsWrittenWithoutPixels) {
    EXPECT_TRUE(expand({}, 0, 9, -2).empty());
    EXPECT_TRUE(expand({}, 4, 0, 0).empty());
}

} // namespace
} // namespace KWFontService_NS
