#include "type1/WeightText.h"

#include <unicode/locid.h>

#include <gtest/gtest.h>

namespace {

using KWFontService_NS::weightFromText;

TEST(WeightFromText, ThinIs100) {
    EXPECT_EQ(weightFromText(u"Thin"), 100);
}

TEST(WeightFromText, ExtraAndUltraLightAre200) {
    EXPECT_EQ(weightFromText(u"ExtraLight"), 200);
    EXPECT_EQ(weightFromText(u"Ultra Light"), 200);
}

TEST(WeightFromText, LightIs300) {
    EXPECT_EQ(weightFromText(u"Light"), 300);
    EXPECT_EQ(weightFromText(u"SemiLight"), 300);
    EXPECT_EQ(weightFromText(u"DemiLight"), 300);
}

TEST(WeightFromText, MediumIs500) {
    EXPECT_EQ(weightFromText(u"Medium"), 500);
    EXPECT_EQ(weightFromText(u"ExtraMedium"), 500);
}

TEST(WeightFromText, BlackAndHeavyAre900) {
    EXPECT_EQ(weightFromText(u"Black"), 900);
    EXPECT_EQ(weightFromText(u"Heavy"), 900);
    EXPECT_EQ(weightFromText(u"UltraBlack"), 900);
    EXPECT_EQ(weightFromText(u"Demi Heavy"), 900);
}

TEST(WeightFromText, DemiAndSemiBoldAre600) {
    EXPECT_EQ(weightFromText(u"DemiBold"), 600);
    EXPECT_EQ(weightFromText(u"Semi Bold"), 600);
}

TEST(WeightFromText, ExtraAndUltraBoldAre800) {
    EXPECT_EQ(weightFromText(u"ExtraBold"), 800);
    EXPECT_EQ(weightFromText(u"Ultra-Bold"), 800);
}

TEST(WeightFromText, BoldIs700) {
    EXPECT_EQ(weightFromText(u"Bold"), 700);
}

TEST(WeightFromText, EverythingElseIs400) {
    for (const char* text : {"Regular", "Roman", "Book", "Normal", "Demi", "Semi", "Extra", "Ultra",
                             "Extra Condensed", "400", "900", ""})
        EXPECT_EQ(weightFromText(icu::UnicodeString::fromUTF8(text)), 400) << text;
}

TEST(WeightFromText, EarlierRowsGoFirst) {
    EXPECT_EQ(weightFromText(u"thin extra light"), 100);
    EXPECT_EQ(weightFromText(u"thin bold"), 100);
    EXPECT_EQ(weightFromText(u"light medium"), 300);
    EXPECT_EQ(weightFromText(u"ultra light bold"), 200);
    EXPECT_EQ(weightFromText(u"light semi bold"), 300);
    EXPECT_EQ(weightFromText(u"medium bold"), 500);
    EXPECT_EQ(weightFromText(u"medium black"), 500);
    EXPECT_EQ(weightFromText(u"demi extra bold"), 600);
}

TEST(WeightFromText, BoldGoesBeforeBlackAndHeavy) {
    EXPECT_EQ(weightFromText(u"Black Bold"), 700);
    EXPECT_EQ(weightFromText(u"Heavy Ultra Bold"), 800);
    EXPECT_EQ(weightFromText(u"Heavy SemiBold"), 600);
}

TEST(WeightFromText, AWordCountsWhereverItStands) {
    EXPECT_EQ(weightFromText(u"Xthinx"), 100);
    EXPECT_EQ(weightFromText(u"Example-BoldOblique"), 700);
    EXPECT_EQ(weightFromText(u"Lightning"), 300);
    EXPECT_EQ(weightFromText(u"Something Bold"), 100);
    EXPECT_EQ(weightFromText(u"Bold, rather extravagant"), 800);
    EXPECT_EQ(weightFromText(u"Blackletter"), 900);
    EXPECT_EQ(weightFromText(u"Bo ld"), 400);
}

TEST(WeightFromText, CaseDoesNotCountInAnyLocale) {
    const icu::Locale previous = icu::Locale::getDefault();
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale("tr_TR"), status);
    EXPECT_EQ(weightFromText(u"THIN"), 100);
    EXPECT_EQ(weightFromText(u"SEMIBOLD"), 600);
    EXPECT_EQ(weightFromText(u"bLACK"), 900);
    icu::Locale::setDefault(previous, status);
    EXPECT_TRUE(U_SUCCESS(status));
}

TEST(WeightFromText, ABogusTextIs400) {
    icu::UnicodeString bogus;
    bogus.setToBogus();
    EXPECT_EQ(weightFromText(bogus), 400);
}

} // namespace
