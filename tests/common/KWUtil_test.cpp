#include "KWCommon15/KWUtil.h"

#include "KWCommon15/KWLength.h"
#include "common/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

using namespace KWCommonNS;
using KWTest::repeated;
using KWTest::utf8;

namespace {

struct Parsed {
    double value;
    std::int32_t end;
    bool ok;
    bool operator==(const Parsed&) const = default;
};

Parsed parsed(const UnicodeString& text) {
    Parsed result{0, -1, false};
    result.value = KWUtil::parseNumber(text, result.end, result.ok);
    return result;
}

std::string formatted(int value, const UnicodeString& pattern, int digits = 0) {
    UnicodeString text;
    EXPECT_TRUE(KWUtil::formatNumber(value, pattern, text, digits, KWLang(), KWNameEnum::None));
    return utf8(text);
}

TEST(KWUtil, ParseNumberReadsTheBeginning) {
    EXPECT_EQ(parsed(u"0.5"), (Parsed{0.5, 3, true}));
    EXPECT_EQ(parsed(u"50%"), (Parsed{50, 2, true}));
    EXPECT_EQ(parsed(u" \t-1.5e2 x"), (Parsed{-150, 8, true}));
    EXPECT_EQ(parsed(u"+7"), (Parsed{7, 2, true}));
    EXPECT_EQ(parsed(u"12,5"), (Parsed{12, 2, true}));
    EXPECT_EQ(parsed(u"1.2.3"), (Parsed{1.2, 3, true}));
    EXPECT_EQ(parsed(u"5."), (Parsed{5, 1, true}));
    EXPECT_EQ(parsed(u"2em"), (Parsed{2, 1, true}));
}

TEST(KWUtil, ParseNumberSaysWhenThereIsNone) {
    for (const char16_t* text : {u"", u"  ", u"x1", u"-", u".", u"%", u"inf", u"nan", u"\u0661"})
        EXPECT_EQ(parsed(text), (Parsed{0, 0, false})) << utf8(text);
}

TEST(KWUtil, ParseNumberStaysFinite) {
    EXPECT_EQ(parsed(u"1e999999"), (Parsed{std::numeric_limits<double>::max(), 8, true}));
    EXPECT_EQ(parsed(repeated(u"9", 10000)),
              (Parsed{std::numeric_limits<double>::max(), 10000, true}));
    EXPECT_EQ(parsed(u"0x10"), (Parsed{0, 1, true}));
}

TEST(KWUtil, ToStringIsTheShortestText) {
    EXPECT_EQ(utf8(KWUtil::toString(65536.0)), "65536");
    EXPECT_EQ(utf8(KWUtil::toString(0.5)), "0.5");
    EXPECT_EQ(utf8(KWUtil::toString(1e-7)), "1e-7");
}

TEST(KWUtil, FormatNumberWritesPlainDecimals) {
    EXPECT_EQ(formatted(1035, u""), "1035");
    EXPECT_EQ(formatted(1234567, u""), "1234567");
    EXPECT_EQ(formatted(std::numeric_limits<int>::min(), u""), "-2147483648");
}

TEST(KWUtil, FormatNumberFillsThePattern) {
    EXPECT_EQ(formatted(7, u"000"), "007");
    EXPECT_EQ(formatted(-7, u"000"), "-007");
    EXPECT_EQ(formatted(1234, u"000"), "1234");
    EXPECT_EQ(formatted(7, u"No. #00!"), "No. 07!");
    EXPECT_EQ(formatted(7, u"#"), "7");
    EXPECT_EQ(formatted(7, u"No. "), "No. 7");
    EXPECT_EQ(formatted(7, u"0 and 0"), "7 and 0");
}

TEST(KWUtil, FormatNumberHasAtLeastTheDigitsAskedFor) {
    EXPECT_EQ(formatted(7, u"", 4), "0007");
    EXPECT_EQ(formatted(7, u"00", 4), "0007");
    EXPECT_EQ(formatted(7, u"0000", 2), "0007");
    EXPECT_EQ(formatted(7, u"", -5), "7");
    EXPECT_EQ(formatted(7, u"", std::numeric_limits<int>::max()).size(), 64U);
}

TEST(KWUtil, FormatNumberIgnoresTheLanguage) {
    UnicodeString text;
    EXPECT_TRUE(KWUtil::formatNumber(1234567, u"", text, 0, KWLang(1025), KWNameEnum::Normal));
    EXPECT_EQ(utf8(text), "1234567");
}

TEST(KWUtil, FormatNumberRefusesOtherStyles) {
    UnicodeString text(u"before");
    EXPECT_FALSE(KWUtil::formatNumber(7, u"", text, 0, KWLang(), KWNameEnum::On));
    EXPECT_EQ(utf8(text), "before");
}

TEST(KWUtil, FormatNumberMayWriteOverItsPattern) {
    UnicodeString text(u"<000>");
    EXPECT_TRUE(KWUtil::formatNumber(7, text, text, 0, KWLang(), KWNameEnum::None));
    EXPECT_EQ(utf8(text), "<007>");
}

TEST(KWUtil, TheMissingFloatIsNotANumber) {
    static_assert(std::is_same_v<KWLength, float>);
    const KWLength missing = KWUtil::getNaNf();
    EXPECT_TRUE(std::isnan(missing));
}

} // namespace
