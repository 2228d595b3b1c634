#include "type1/Type1Text.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

TEST(Type1Text, SeparatorsAreBlankTabCRAndLF) {
    EXPECT_EQ(trimSeparators(" \t\r\na b\t\n\r "), "a b");
    EXPECT_EQ(trimSeparators("\va\f"), "\va\f");
    EXPECT_EQ(trimSeparators(" \t"), "");
}

TEST(Type1Text, WordsAreCutOneByOne) {
    std::string_view text = "  one\ttwo \r\n";
    EXPECT_EQ(cutWord(text), "one");
    EXPECT_EQ(cutWord(text), "two");
    EXPECT_EQ(cutWord(text), "");
    EXPECT_EQ(cutWord(text), "");
}

TEST(Type1Text, ANumberIsWhatTheTextBeginsWith) {
    EXPECT_EQ(leadingNumber("12"), 12);
    EXPECT_EQ(leadingNumber(" -12.5 def"), -12.5);
    EXPECT_EQ(leadingNumber("+3"), 3);
    EXPECT_EQ(leadingNumber(".5x"), .5);
    EXPECT_EQ(leadingNumber("1e3"), 1000);
    EXPECT_EQ(leadingNumber("x1"), 0);
    EXPECT_EQ(leadingNumber("+-1"), 0);
    EXPECT_EQ(leadingNumber(""), 0);
}

TEST(Type1Text, WhatIsNoFiniteNumberIsZero) {
    for (const char* text : {"inf", "nan", "-infinity", "1e999", "-1e999", "1e39", "-1e39"})
        EXPECT_EQ(leadingNumber(text), 0) << text;
}

TEST(Type1Text, AnIntegerIsWhatTheTextBeginsWith) {
    EXPECT_EQ(leadingInteger("12"), 12);
    EXPECT_EQ(leadingInteger(" -12.9 def"), -12);
    EXPECT_EQ(leadingInteger("+3"), 3);
    EXPECT_EQ(leadingInteger("+-3"), 0);
    EXPECT_EQ(leadingInteger("x1"), 0);
    EXPECT_EQ(leadingInteger(""), 0);
    EXPECT_EQ(leadingInteger("fF>", 16), 255);
    EXPECT_EQ(leadingInteger("2147483648"), 2147483647);
    EXPECT_EQ(leadingInteger("-99999999999"), -2147483647 - 1);
}

TEST(Type1Text, TrueStandsAnywhereInEitherCase) {
    EXPECT_TRUE(holdsTrue("true"));
    EXPECT_TRUE(holdsTrue("is TrUe."));
    EXPECT_FALSE(holdsTrue("tru e"));
    EXPECT_FALSE(holdsTrue(""));
}

TEST(Type1Text, ABoxHasFourNumbers) {
    EXPECT_EQ(readType1Box(" -50 -250.5\t1050 750 "), (Type1Box{-50, -250.5F, 1050, 750}));
    EXPECT_EQ(readType1Box("1 2 3"), std::nullopt);
    EXPECT_EQ(readType1Box("1 2 3 4 5"), std::nullopt);
    EXPECT_EQ(readType1Box(""), std::nullopt);
    EXPECT_EQ((Type1Box{0, -200, 100, 800}.height()), 1000);
}

TEST(Type1Text, BytesAreLatin1) {
    EXPECT_EQ(textOfBytes("A\xE9"), UnicodeString(u"A\u00E9"));
    EXPECT_TRUE(textOfBytes("").isEmpty());
}

TEST(Type1SubFamilyName, IsTheWeightOfAFontCalledLikeItsFamily) {
    EXPECT_EQ(type1SubFamilyName(u"Sans", u"Sans", u"Book"), UnicodeString(u"Book"));
}

TEST(Type1SubFamilyName, IsWhatTheFullNameHasBehindTheFamily) {
    EXPECT_EQ(type1SubFamilyName(u"Sans  Bold Italic ", u"Sans", u"Bold"),
              UnicodeString(u"Bold Italic"));
    EXPECT_EQ(type1SubFamilyName(u"SansBold", u"Sans", u"x"), UnicodeString(u"Bold"));
}

TEST(Type1SubFamilyName, IsEmptyWhenTheFullNameIsAnother) {
    EXPECT_EQ(type1SubFamilyName(u"Serif Bold", u"Sans", u"Bold"), UnicodeString());
}

} // namespace
} // namespace KWFontService_NS
