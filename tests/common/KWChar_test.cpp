#include "KWCommon15/KWChar.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>

using namespace KWCommonNS;

namespace {

TEST(KWChar, CategoryIsNumberedAsInIcu) {
    EXPECT_EQ(KWChar::getCategory('A'), U_UPPERCASE_LETTER);
    EXPECT_EQ(KWChar::getCategory('5'), U_DECIMAL_DIGIT_NUMBER);
    EXPECT_EQ(KWChar::getCategory(' '), 12);
    EXPECT_EQ(KWChar::getCategory(0x2028), 13);
    EXPECT_EQ(KWChar::getCategory(0x2029), 14);
    EXPECT_EQ(KWChar::getCategory('\n'), 15);
    EXPECT_EQ(KWChar::getCategory(0x200D), 16);
    EXPECT_EQ(KWChar::getCategory(0x1F600), U_OTHER_SYMBOL);
}

TEST(KWChar, NumbersThatAreNoCodePointsAreUnassigned) {
    EXPECT_EQ(KWChar::getCategory(-1), 0);
    EXPECT_EQ(KWChar::getCategory(0x110000), 0);
}

TEST(KWChar, RotatedCharactersHaveNoVerticalForm) {
    EXPECT_TRUE(KWChar::isNoVerticalChar('A'));
    EXPECT_TRUE(KWChar::isNoVerticalChar('-'));
    EXPECT_TRUE(KWChar::isNoVerticalChar(0x0E01)); // Thai
}

TEST(KWChar, UprightCharactersHaveOne) {
    EXPECT_FALSE(KWChar::isNoVerticalChar(0x4E00));
    EXPECT_FALSE(KWChar::isNoVerticalChar(0x3042));
    EXPECT_FALSE(KWChar::isNoVerticalChar(0xAC00));
    EXPECT_FALSE(KWChar::isNoVerticalChar(0x1F600));
}

TEST(KWChar, CharactersWithATransformedGlyphHaveOne) {
    EXPECT_FALSE(KWChar::isNoVerticalChar(0x3001)); // Tu
    EXPECT_FALSE(KWChar::isNoVerticalChar(0x300C)); // Tr
    EXPECT_FALSE(KWChar::isNoVerticalChar(0x30FC)); // Tr
}

TEST(KWChar, NumbersThatAreNoCodePointsAreNotRotated) {
    EXPECT_FALSE(KWChar::isNoVerticalChar(-1));
    EXPECT_FALSE(KWChar::isNoVerticalChar(0x110000));
}

} // namespace
