#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace KWFontService_NS;

//! [map]
std::vector<unsigned short> glyphsOf(const FS_FontInfo& font, const UnicodeString& text) {
    std::vector<unsigned short> glyphs(static_cast<std::size_t>(text.countChar32()));
    int count = 0;
    int firstMissing = -1;
    font.getGlyphIDs(text, glyphs.data(), count, false, &firstMissing);
    glyphs.resize(static_cast<std::size_t>(count));
    if (firstMissing >= 0) {
        // text[firstMissing] needs another font; its place holds FS_NO_GLYPH (0xFFFF).
    }
    return glyphs;
}
//! [map]

//! [measure]
/// Width in thousandths of the em, with kerning: the unit of PDF text.
float widthOf(const FS_FontInfo& font, const std::vector<unsigned short>& glyphs) {
    const int size = -1000;
    float width = 0;
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        width += font.getGlyphWidth(glyphs[i], size, false);
        if (i > 0)
            width += font.getPairKerningValue(glyphs[i - 1], glyphs[i], size, false);
    }
    return width;
}
//! [measure]

class GuideText : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_FONT)))); }

    FS_FontInfo font;
};

TEST_F(GuideText, CharactersBecomeGlyphsOfTheirOwn) {
    const std::vector<unsigned short> glyphs = glyphsOf(font, u"AV A");
    ASSERT_EQ(glyphs.size(), 4U);
    EXPECT_EQ(glyphs[0], glyphs[3]);
    EXPECT_NE(glyphs[0], glyphs[1]);
    EXPECT_EQ(glyphs[0], font.getGlyphID('A', false));
}

TEST_F(GuideText, AMissingCharacterIsNoGlyph) {
    EXPECT_EQ(glyphsOf(font, u"\U000F0000"), std::vector<unsigned short>{FS_NO_GLYPH});
}

TEST_F(GuideText, TheWidthIsThatOfTheAdvancesAndTheKerning) {
    const std::vector<unsigned short> glyphs = glyphsOf(font, u"AV");
    const float advances =
        font.getGlyphWidth(glyphs[0], -1000, false) + font.getGlyphWidth(glyphs[1], -1000, false);
    EXPECT_LT(widthOf(font, glyphs), advances) << "A and V are drawn together";
    EXPECT_GT(widthOf(font, glyphs), advances / 2);
    EXPECT_EQ(widthOf(font, {}), 0.0F);
}

} // namespace
