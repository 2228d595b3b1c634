#include "raster/DrawFixture.h"

#include <KWFontService17/FS_GlyphBMP.h>

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(GlyphBMP, StartsEmpty) {
    const FS_GlyphBMP bitmap;
    EXPECT_FALSE(bitmap.hasBMP());
    EXPECT_EQ(bitmap.getRows(), 0U);
    EXPECT_EQ(bitmap.getCols(), 0U);
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{0, 0, 0, 0}));
}

TEST(GlyphBMP, DrawsThroughTheFont) {
    CreatedFont font(squares().build());
    FS_GlyphBMP bitmap;
    KWError error;
    ASSERT_TRUE(bitmap.draw(1, 8, 72, &font.info, {}, error));
    EXPECT_TRUE(bitmap.hasBMP());
    EXPECT_EQ(picture(bitmap), std::vector<std::string>(4, "####"));
    EXPECT_EQ(bitmap.getPixel(3, 2), 0xFF);
}

TEST(GlyphBMP, ClearingFreesThePixelsAndZeroesAll) {
    CreatedFont font(squares().build());
    FS_GlyphBMP bitmap;
    KWError error;
    ASSERT_TRUE(bitmap.draw(1, 8, 72, &font.info, {}, error));
    bitmap.clear();
    EXPECT_FALSE(bitmap.hasBMP());
    EXPECT_EQ(bitmap.getRows(), 0U);
    EXPECT_EQ(bitmap.getCols(), 0U);
    EXPECT_EQ(offsets(bitmap), (std::vector<int>{0, 0, 0, 0}));
}

TEST(GlyphBMP, MovingTakesThePixelsAlong) {
    CreatedFont font(squares().build());
    FS_GlyphBMP bitmap;
    KWError error;
    ASSERT_TRUE(bitmap.draw(1, 8, 72, &font.info, {}, error));
    const std::vector<int> before = offsets(bitmap);
    FS_GlyphBMP moved(std::move(bitmap));
    EXPECT_EQ(picture(moved), std::vector<std::string>(4, "####"));
    EXPECT_EQ(offsets(moved), before);
    EXPECT_FALSE(bitmap.hasBMP());
    EXPECT_EQ(bitmap.getRows(), 0U);
}

TEST(GlyphBMP, MessagesAreOfTheDrawingErrorAlone) {
    EXPECT_EQ(FS_GlyphBMP::makeErrorMessage(FS_ERROR_GLYPH_BITMAP, "Ouf of Memory."),
              UnicodeString("Cannot make raster image of glyph: Ouf of Memory."));
    EXPECT_EQ(FS_GlyphBMP::makeErrorMessage(FS_ERROR_FONT_READ, "Ouf of Memory."),
              UnicodeString("FontService unknown error. "));
}

TEST(GlyphBMPSetting, TheFlagsAloneChangeNothing) {
    EXPECT_TRUE(FS_GlyphBMPSetting().isDefault());
    EXPECT_TRUE((FS_GlyphBMPSetting{.scaleVertically = true, .slantVertically = true}).isDefault());
    EXPECT_FALSE((FS_GlyphBMPSetting{.slantAngle = 1}).isDefault());
    EXPECT_FALSE((FS_GlyphBMPSetting{.rotationAngle = 1}).isDefault());
    EXPECT_FALSE((FS_GlyphBMPSetting{.scale = 2}).isDefault());
    EXPECT_FALSE((FS_GlyphBMPSetting{.emboldenPixels = -1}).isDefault());
}

} // namespace
} // namespace KWFontService_NS
