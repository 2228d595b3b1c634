#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace KWFontService_NS;

//! [constant]
/// A length or a percentage of the font, or what the host takes in fonts that are not for formulas.
float constantOr(const FS_FontInfo& font, FS_FontInfo::MATHConstants constant, float otherwise) {
    const KWLength value = font.getMATHConstant(constant);
    return std::isnan(value) ? otherwise : value;
}
//! [constant]

//! [grow]
/// The form of a parenthesis, a root or the like for a formula of a height in em.
unsigned short tallForm(const FS_FontInfo& font, unsigned short glyph, float height) {
    const float units = std::ceil(height * static_cast<float>(font.getUnitsPerEm()));
    const unsigned short form = font.getMATHVariantV(glyph, std::max(1, static_cast<int>(units)));
    return form == FS_NO_GLYPH ? glyph : form;
}

/// The form of a sum, an integral or the like in a formula on a line of its own.
unsigned short displayForm(const FS_FontInfo& font, unsigned short glyph) {
    const unsigned short form = font.getMATHVariantV(glyph, 0);
    return form == FS_NO_GLYPH ? glyph : form;
}
//! [grow]

class GuideMath : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_MATH_FONT))));
        ASSERT_TRUE(plain.createFont(KWUri(UnicodeString(KW_GUIDE_PLAIN_FONT))));
        ASSERT_TRUE(font.hasMATHInfo());
        ASSERT_FALSE(plain.hasMATHInfo());
    }

    FS_FontInfo font;
    FS_FontInfo plain;
};

TEST_F(GuideMath, ConstantsComeFromTheFontWhereItHasThem) {
    const auto axisHeight = FS_MATHConstants::axisHeight;
    EXPECT_FLOAT_EQ(constantOr(font, axisHeight, 1), 0.275F);
    EXPECT_FLOAT_EQ(constantOr(plain, axisHeight, 0.25F), 0.25F);
}

TEST_F(GuideMath, ParenthesesGrowWithTheirFormula) {
    const unsigned short parenthesis = font.getGlyphID('(', false);
    EXPECT_EQ(tallForm(font, parenthesis, 0), parenthesis);
    const unsigned short taller = tallForm(font, parenthesis, 1.5F);
    const unsigned short tallest = tallForm(font, parenthesis, 100);
    EXPECT_NE(taller, parenthesis);
    EXPECT_NE(tallest, taller);
    EXPECT_EQ(tallForm(plain, 3, 2), 3);
}

TEST_F(GuideMath, ASumIsLargerInADisplayedFormula) {
    const unsigned short sum = font.getGlyphID(0x2211, false);
    EXPECT_NE(displayForm(font, sum), sum);
    EXPECT_EQ(displayForm(font, font.getGlyphID('x', false)), font.getGlyphID('x', false));
}

} // namespace
