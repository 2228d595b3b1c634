#include "KWCommon15/KWUnicodeRange.h"

#include "KWCommon15/KWParser.h"
#include "common/ValueText.h"

#include <gtest/gtest.h>

#include <string>

using namespace KWCommonNS;
using KWTest::utf8;

namespace {

KWUnicodeRange rangeOf(const UnicodeString& text) {
    KWUnicodeRange range;
    EXPECT_TRUE(range.parseUnicodeRange(KWParser::parse(text))) << utf8(text);
    return range;
}

void expectOnly(const KWUnicodeRange& range, int first, int last) {
    EXPECT_FALSE(range.inRange(first - 1));
    EXPECT_TRUE(range.inRange(first));
    EXPECT_TRUE(range.inRange(first + (last - first) / 2));
    EXPECT_TRUE(range.inRange(last));
    EXPECT_FALSE(range.inRange(last + 1));
}

TEST(KWUnicodeRange, ASingleCodePointIsItself) {
    expectOnly(rangeOf(u"U+26"), 0x26, 0x26);
    expectOnly(rangeOf(u"u+10FFFF"), 0x10FFFF, 0x10FFFF);
    expectOnly(rangeOf(u"U+0"), 0, 0);
}

TEST(KWUnicodeRange, AnIntervalHoldsBothLimits) {
    expectOnly(rangeOf(u"U+0-7f"), 0, 0x7F);
    expectOnly(rangeOf(u"U+0025-00FF"), 0x25, 0xFF);
    expectOnly(rangeOf(u"U+5-5"), 5, 5);
    expectOnly(rangeOf(u"U+0-10FFFF"), 0, 0x10FFFF);
}

TEST(KWUnicodeRange, WildcardsStandForAnyDigit) {
    expectOnly(rangeOf(u"U+4??"), 0x400, 0x4FF);
    expectOnly(rangeOf(u"U+?"), 0, 0xF);
    expectOnly(rangeOf(u"U+?????"), 0, 0xFFFFF);
    expectOnly(rangeOf(u"U+10????"), 0x100000, 0x10FFFF);
}

TEST(KWUnicodeRange, ListsHoldEveryRange) {
    const KWUnicodeRange range = rangeOf(u" U+30-39 ,U+41 , /* and */ u+3??? ");
    for (const int ch : {0x30, 0x39, 0x41, 0x3000, 0x3FFF})
        EXPECT_TRUE(range.inRange(ch)) << ch;
    for (const int ch : {0x2F, 0x3A, 0x40, 0x42, 0x2FFF, 0x4000, -1, 0x110000})
        EXPECT_FALSE(range.inRange(ch)) << ch;
}

TEST(KWUnicodeRange, OverlappingAndTouchingRangesMerge) {
    expectOnly(rangeOf(u"U+50-5F, U+30-4F, U+35, U+58-6F"), 0x30, 0x6F);
}

TEST(KWUnicodeRange, ManyRangesAreSearchedRightly) {
    UnicodeString text;
    for (int i = 0; i < 20000; ++i) {
        char item[16];
        std::snprintf(item, sizeof item, "%sU+%X", i ? "," : "",
                      static_cast<unsigned>(39999 - 2 * i));
        text.append(UnicodeString(item));
    }
    const KWUnicodeRange range = rangeOf(text);
    for (int ch = 0; ch < 40001; ++ch)
        ASSERT_EQ(range.inRange(ch), ch < 40000 && ch % 2 == 1) << ch;
}

TEST(KWUnicodeRange, OneBadRangeMakesAllInvalid) {
    for (const char16_t* text : {u"U+110000",      u"U+??????",
                                 u"U+11????",      u"U+0-110000",
                                 u"U+7F-0",        u"U+12-",
                                 u"U+-12",         u"U+",
                                 u"U+1234567",     u"U+0-1234567",
                                 u"U+1?-2",        u"U+1-2?",
                                 u"U+4?5",         u"U+x",
                                 u"U+ 26",         u"26",
                                 u"normal",        u"U+26,",
                                 u",U+26",         u"U+26,,U+27",
                                 u"U+26 U+27",     u"U+26; U+27",
                                 u"U+26, x",       u"U+26, U+110000",
                                 u"'U+26' , U+27", u"",
                                 u"/* */"}) {
        KWUnicodeRange range = rangeOf(u"U+26");
        EXPECT_FALSE(range.parseUnicodeRange(KWParser::parse(text))) << utf8(text);
        EXPECT_TRUE(range.isEmpty()) << utf8(text);
        EXPECT_FALSE(range.inRange(0x26)) << utf8(text);
    }
}

TEST(KWUnicodeRange, OnlyStringsHaveRanges) {
    KWValue compound;
    compound.setNamedItem(KWNameEnum::On, KWParser::parse(u"U+26"));
    for (const KWValue& value :
         {KWValue(), KWValue(26), KWValue(2.6), KWValue(true), KWValue(KWNameEnum::On), compound}) {
        KWUnicodeRange range;
        EXPECT_FALSE(range.parseUnicodeRange(value));
        EXPECT_TRUE(range.isEmpty());
    }
}

TEST(KWUnicodeRange, ANewSetHoldsNothing) {
    const KWUnicodeRange range;
    EXPECT_TRUE(range.isEmpty());
    EXPECT_FALSE(range.inRange(0));
}

TEST(KWUnicodeRange, ParsingReplacesTheOldSet) {
    KWUnicodeRange range = rangeOf(u"U+26");
    EXPECT_TRUE(range.parseUnicodeRange(KWParser::parse(u"U+30")));
    expectOnly(range, 0x30, 0x30);
}

} // namespace
