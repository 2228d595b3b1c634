#include "common/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace KWCommonNS;

namespace {

constexpr NumberGrammar kWithExponent{.exponent = true};
constexpr NumberGrammar kWithTrailingPoint{.trailingPoint = true};

std::size_t lengthOf(std::u16string_view text, NumberGrammar grammar = {}) {
    return scanNumber(text, grammar).length;
}

TEST(NumberText, ScanTakesSignDigitsAndPoint) {
    EXPECT_EQ(lengthOf(u"12"), 2U);
    EXPECT_EQ(lengthOf(u"+12"), 3U);
    EXPECT_EQ(lengthOf(u"-1.5x"), 4U);
    EXPECT_EQ(lengthOf(u".5"), 2U);
    EXPECT_EQ(lengthOf(u"-.5"), 3U);
}

TEST(NumberText, ScanFindsNoNumberWithoutDigits) {
    for (const std::u16string_view text : {u"", u"+", u"-", u".", u"+.", u"e5", u"--1", u"x1"})
        EXPECT_EQ(lengthOf(text, {.exponent = true, .trailingPoint = true}), 0U);
}

TEST(NumberText, ScanTakesATrailingPointOnlyWhenAsked) {
    EXPECT_EQ(lengthOf(u"5."), 1U);
    EXPECT_EQ(lengthOf(u"5.", kWithTrailingPoint), 2U);
    EXPECT_FALSE(scanNumber(u"5.", kWithTrailingPoint).isWhole);
    EXPECT_EQ(lengthOf(u"5.e3", {.exponent = true, .trailingPoint = true}), 4U);
}

TEST(NumberText, ScanTakesAnExponentOnlyWhenAskedAndComplete) {
    EXPECT_EQ(lengthOf(u"1e3"), 1U);
    EXPECT_EQ(lengthOf(u"1e3", kWithExponent), 3U);
    EXPECT_EQ(lengthOf(u"1E+3", kWithExponent), 4U);
    EXPECT_EQ(lengthOf(u"1e-3", kWithExponent), 4U);
    EXPECT_EQ(lengthOf(u"1e", kWithExponent), 1U);
    EXPECT_EQ(lengthOf(u"1e+", kWithExponent), 1U);
    EXPECT_EQ(lengthOf(u"1em", kWithExponent), 1U);
}

TEST(NumberText, OnlyDigitsMakeAWholeNumber) {
    EXPECT_TRUE(scanNumber(u"-12", kWithExponent).isWhole);
    EXPECT_FALSE(scanNumber(u"12.0", kWithExponent).isWhole);
    EXPECT_FALSE(scanNumber(u"12e0", kWithExponent).isWhole);
    EXPECT_TRUE(scanNumber(u"12e", kWithExponent).isWhole);
}

TEST(NumberText, ValuesRoundToTheNearestDouble) {
    EXPECT_EQ(numberValue(u"0.039625"), 0.039625);
    EXPECT_EQ(numberValue(u"-.5"), -0.5);
    EXPECT_EQ(numberValue(u"+2e-3"), 0.002);
    EXPECT_EQ(numberValue(u"5."), 5.0);
    EXPECT_EQ(numberValue(u"9007199254740993"), 9007199254740992.0);
}

TEST(NumberText, HugeNumbersBecomeTheLargestDouble) {
    constexpr double kLargest = std::numeric_limits<double>::max();
    EXPECT_EQ(numberValue(u"1e999999"), kLargest);
    EXPECT_EQ(numberValue(u"-1e999999"), -kLargest);
    EXPECT_EQ(numberValue(u"1e99999999999999999999999999"), kLargest);
    EXPECT_EQ(numberValue(u"0.0001e400"), kLargest);
    EXPECT_EQ(numberValue(std::u16string(10000, u'9')), kLargest);
}

TEST(NumberText, TinyNumbersBecomeZero) {
    EXPECT_EQ(numberValue(u"1e-999999"), 0.0);
    EXPECT_EQ(numberValue(u"1000e-999999999999999999999"), 0.0);
    EXPECT_EQ(numberValue(u"0." + std::u16string(10000, u'0') + u"1"), 0.0);
    EXPECT_EQ(numberValue(u"0e999999"), 0.0);
}

TEST(NumberText, ALongExponentMeetsALongMantissa) {
    EXPECT_EQ(numberValue(u"1" + std::u16string(10000, u'0') + u"e-10000"), 1.0);
    EXPECT_EQ(numberValue(u"0." + std::u16string(9999, u'0') + u"1e10000"), 1.0);
}

TEST(NumberText, WholeNumbersOutsideIntHaveNoValue) {
    EXPECT_EQ(wholeNumberValue(u"2147483647"), 2147483647);
    EXPECT_EQ(wholeNumberValue(u"-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(wholeNumberValue(u"2147483648"), std::nullopt);
    EXPECT_EQ(wholeNumberValue(u"-2147483649"), std::nullopt);
    EXPECT_EQ(wholeNumberValue(std::u16string(10000, u'9')), std::nullopt);
    EXPECT_EQ(wholeNumberValue(std::u16string(10000, u'0') + u"7"), 7);
}

TEST(NumberText, OrdinaryNumbersPrintWithoutExponent) {
    EXPECT_EQ(numberText(65536.0), "65536");
    EXPECT_EQ(numberText(0.5), "0.5");
    EXPECT_EQ(numberText(-12.25), "-12.25");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(0.000001), "0.000001");
    EXPECT_EQ(numberText(1e20), "100000000000000000000");
}

TEST(NumberText, VeryLargeAndVerySmallNumbersPrintWithExponent) {
    EXPECT_EQ(numberText(1e21), "1e21");
    EXPECT_EQ(numberText(1e-7), "1e-7");
    EXPECT_EQ(numberText(-2.5e-10), "-2.5e-10");
    EXPECT_EQ(numberText(std::numeric_limits<double>::max()), "1.7976931348623157e308");
    EXPECT_EQ(numberText(std::numeric_limits<double>::denorm_min()), "5e-324");
}

TEST(NumberText, BothZerosPrintAsZero) {
    EXPECT_EQ(numberText(0.0), "0");
    EXPECT_EQ(numberText(-0.0), "0");
}

TEST(NumberText, ValuesThatAreNoNumbersPrintAsWords) {
    EXPECT_EQ(numberText(std::numeric_limits<double>::quiet_NaN()), "NaN");
    EXPECT_EQ(numberText(std::numeric_limits<double>::infinity()), "Infinity");
    EXPECT_EQ(numberText(-std::numeric_limits<double>::infinity()), "-Infinity");
}

TEST(NumberText, PrintedNumbersReadBackTheSame) {
    for (const double value : {1.0 / 3, 1.1e-7, 123456789.123456789, 1.2345678901234567e20, 4e300,
                               0.1 + 0.2, 1.5258789e-05}) {
        const std::string text = numberText(value);
        EXPECT_EQ(numberValue(std::u16string(text.begin(), text.end())), value) << text;
    }
}

} // namespace
