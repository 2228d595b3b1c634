#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

using namespace KWFontService_NS;

//! [draw]
std::string drawn(const FS_FontInfo& font, unsigned short glyph) {
    FS_GlyphBMP bitmap;
    KWError error;
    std::string picture;
    if (!font.drawGlyph(glyph, 12.0F, 72, &bitmap, FS_GlyphBMPSetting(), error))
        return picture;
    for (unsigned int y = 0; y < bitmap.getRows(); ++y) {
        for (unsigned int x = 0; x < bitmap.getCols(); ++x)
            picture += bitmap.getPixel(x, y) != 0 ? '#' : '.';
        picture += '\n';
    }
    return picture;
}
//! [draw]

TEST(Guide, AGlyphIsDrawn) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_FONT))));
    const std::string stem = drawn(font, font.getGlyphID('l', false));
    EXPECT_NE(stem.find('#'), std::string::npos) << stem;
    EXPECT_EQ(stem.find('.'), std::string::npos) << "the letter is one stem:\n" << stem;
    EXPECT_EQ(drawn(font, font.getGlyphID(' ', false)), "") << "a blank has nothing to draw";
}

} // namespace
