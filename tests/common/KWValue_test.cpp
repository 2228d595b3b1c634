#include "KWCommon15/KWValue.h"

#include "KWCommon15/KWNamedValue.h"
#include "KWCommon15/KWParser.h"
#include "common/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>
#include <type_traits>
#include <vector>

using namespace KWCommonNS;
using KWTest::describe;
using KWTest::utf8;

namespace {

constexpr auto kDouble = KWUtil::QuoteMode::Double;
constexpr auto kSingle = KWUtil::QuoteMode::Single;
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

KWName key(int number) {
    return static_cast<KWNameEnum>(number);
}
KWValue text(const char16_t* units, KWUnitType unit = KWUnitType::None) {
    return KWValue(UnicodeString(units), unit);
}
KWValue compoundOf(int first, int second) {
    KWValue value;
    value.setNamedItem(key(1), first);
    value.setNamedItem(key(2), second);
    return value;
}
/// One value of every kind.
std::vector<KWValue> everyKind() {
    return {KWValue(), true, 3, 2.5, text(u"x"), KWNameEnum::Yes, compoundOf(1, 2)};
}

static_assert(sizeof(KWValue) <= 16);
static_assert(std::is_nothrow_move_constructible_v<KWValue>);
static_assert(!std::is_constructible_v<KWValue, const char*>);
static_assert(!std::is_constructible_v<KWValue, int*>);

TEST(KWValue, EveryValueHasExactlyItsKind) {
    const auto kinds = everyKind();
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(kinds[i].isNull(), i == 0);
        EXPECT_EQ(kinds[i].isBool(), i == 1);
        EXPECT_EQ(kinds[i].isInteger(), i == 2);
        EXPECT_EQ(kinds[i].isReal(), i == 3);
        EXPECT_EQ(kinds[i].isNumber(), i == 2 || i == 3);
        EXPECT_EQ(kinds[i].isString(), i == 4);
        EXPECT_EQ(kinds[i].isName(), i == 5);
        EXPECT_EQ(kinds[i].isCompound(), i == 6);
    }
    EXPECT_TRUE(NULL_VALUE.isNull());
}

TEST(KWValue, GettersGiveTheStoredValue) {
    EXPECT_TRUE(KWValue(true).getBoolValue());
    EXPECT_EQ(KWValue(-7).getIntegerValue(), -7);
    EXPECT_EQ(KWValue(2.5).getRealValue(), 2.5);
    EXPECT_EQ(KWValue(7).getRealValue(), 7.0);
    EXPECT_EQ(utf8(text(u"x").getStringValue()), "x");
    EXPECT_EQ(KWValue(KWNameEnum::On).getNameValue(), KWNameEnum::On);
    EXPECT_EQ(KWValue(1.0, KWUnitType::Px).getUnitType(), KWUnitType::Px);
    EXPECT_EQ(text(u"x", KWUnitType::Ident).getUnitType(), KWUnitType::Ident);
}

TEST(KWValue, GettersOfAnotherKindGiveTheirMissingValue) {
    const auto kinds = everyKind();
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        SCOPED_TRACE(i);
        const KWValue& value = kinds[i];
        EXPECT_EQ(value.getBoolValue(), i == 1);
        EXPECT_EQ(value.getIntegerValue(), i == 2 ? 3 : i == 3 ? 2 : 0);
        EXPECT_EQ(value.getRealValue(), i == 2 ? 3.0 : i == 3 ? 2.5 : 0.0);
        EXPECT_EQ(value.getStringValue().isEmpty(), i != 4);
        EXPECT_EQ(value.getNameValue().isEmpty(), i != 5);
        EXPECT_EQ(value.getNamedValueMap().empty(), i != 6);
        EXPECT_EQ(value.getNamedItem(key(1)).isNull(), i != 6);
    }
}

TEST(KWValue, IntegerOfARealIsCutTowardZeroAndSaturates) {
    EXPECT_EQ(KWValue(-12.5).getIntegerValue(), -12);
    EXPECT_EQ(KWValue(12.9, KWUnitType::Px).getIntegerValue(), 12);
    EXPECT_EQ(KWValue(1e300).getIntegerValue(), kIntMax);
    EXPECT_EQ(KWValue(-1e300).getIntegerValue(), kIntMin);
    EXPECT_EQ(KWValue(std::numeric_limits<double>::quiet_NaN()).getIntegerValue(), 0);
}

TEST(KWValue, RealsConvertAmongAbsoluteLengths) {
    EXPECT_EQ(KWValue(1.0, KWUnitType::In).getRealValue(KWUnitType::Pt), 72.0);
    EXPECT_EQ(KWValue(12.0, KWUnitType::Pt).getRealValue(KWUnitType::Px), 16.0);
}

TEST(KWValue, PlainNumbersAndPlainRequestsTakeTheFigureAsItStands) {
    EXPECT_EQ(KWValue(12.0, KWUnitType::Pt).getRealValue(), 12.0);
    EXPECT_EQ(KWValue(50.0, KWUnitType::Percent).getRealValue(), 50.0);
    EXPECT_EQ(KWValue(12.0).getRealValue(KWUnitType::Pt), 12.0);
    EXPECT_EQ(KWValue(12).getRealValue(KWUnitType::Em), 12.0);
}

TEST(KWValue, AConversionWithoutARatioIsNotANumber) {
    EXPECT_TRUE(std::isnan(KWValue(1.0, KWUnitType::Em).getRealValue(KWUnitType::Px)));
    EXPECT_TRUE(std::isnan(KWValue(1.0, KWUnitType::Px).getRealValue(KWUnitType::Percent)));
}

TEST(KWValue, CopiesAreIndependent) {
    const KWValue original = compoundOf(1, 2);
    KWValue copy = original;
    copy.setNamedItem(key(1), 9);
    EXPECT_EQ(original.getNamedItem(key(1)).getIntegerValue(), 1);
    EXPECT_EQ(copy.getNamedItem(key(1)).getIntegerValue(), 9);
    EXPECT_EQ(copy.getNamedItem(key(2)).getIntegerValue(), 2);
}

TEST(KWValue, MovingLeavesNull) {
    for (KWValue& value : everyKind()) {
        const KWValue copy = value;
        const KWValue moved = std::move(value);
        EXPECT_TRUE(value.isNull());
        EXPECT_EQ(value.getUnitType(), KWUnitType::None);
        EXPECT_EQ(moved, copy);
        KWValue assigned(5);
        KWValue source = copy;
        assigned = std::move(source);
        EXPECT_TRUE(source.isNull());
        EXPECT_EQ(assigned, copy);
    }
}

TEST(KWValue, SwapExchangesKindUnitAndContents) {
    KWValue number(1.0, KWUnitType::Px);
    KWValue word = text(u"y");
    number.swap(word);
    EXPECT_EQ(describe(number), "text:y");
    EXPECT_EQ(word, KWValue(1.0, KWUnitType::Px));
}

TEST(KWValue, AssignmentReplacesKindAndUnit) {
    KWValue value(1.0, KWUnitType::Px);
    value = text(u"y");
    EXPECT_EQ(describe(value), "text:y");
    const KWValue& self = value;
    value = self;
    EXPECT_EQ(describe(value), "text:y");
    value = NULL_VALUE;
    EXPECT_TRUE(value.isNull());
}

TEST(KWValue, SettingAnItemMakesACompound) {
    KWValue value;
    value.setNamedItem(key(32), 5);
    EXPECT_TRUE(value.isCompound());
    EXPECT_EQ(value.getNamedItem(key(32)).getIntegerValue(), 5);
    EXPECT_EQ(&value.getNamedItem(key(33)), &NULL_VALUE);
    KWValue number(3);
    number.setNamedItem(key(1), text(u"x"));
    EXPECT_EQ(describe(number), "compound:x");
}

TEST(KWValue, SettingNullRemovesAnItem) {
    KWValue value = compoundOf(1, 2);
    value.setNamedItem(key(1), KWValue());
    EXPECT_EQ(value.getNamedValueMap().size(), 1U);
    value.setNamedItem(key(2), NULL_VALUE);
    EXPECT_TRUE(value.isCompound());
    EXPECT_TRUE(value.getNamedValueMap().empty());
}

TEST(KWValue, ItemsIterateInOrderOfTheirNumbers) {
    KWValue value;
    for (const int number : {3, 1, 2})
        value.setNamedItem(key(number), number * 11);
    KWNamedValueMapIterator it(value.getNamedValueMap());
    std::vector<int> seen;
    while (it.next())
        seen.push_back(it.getValue().getIntegerValue());
    EXPECT_EQ(seen, (std::vector<int>{11, 22, 33}));
}

TEST(KWValue, ACompoundMayHoldACopyOfItself) {
    KWValue value = compoundOf(1, 2);
    value.setNamedItem(key(3), value);
    EXPECT_EQ(value.getNamedItem(key(3)), compoundOf(1, 2));
    value.setNamedItem(key(4), value.getNamedItem(key(1)));
    EXPECT_EQ(value.getNamedItem(key(4)).getIntegerValue(), 1);
}

TEST(KWValue, CopiesOfOneValueLiveOnManyThreads) {
    KWValue shared = compoundOf(1, 2);
    shared.setNamedItem(key(3), text(u"kept"));
    std::vector<int> sums(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < sums.size(); ++i) {
        threads.emplace_back([copy = shared, &sum = sums[i]]() mutable {
            for (int round = 0; round < 200; ++round) {
                KWValue own = copy;
                own.setNamedItem(key(1), round);
                sum += own.getNamedItem(key(1)).getIntegerValue() +
                       own.getNamedItem(key(3)).getStringValue().length();
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(sums, std::vector<int>(4, 199 * 200 / 2 + 200 * 4));
    EXPECT_EQ(shared.getNamedItem(key(1)).getIntegerValue(), 1);
}

TEST(KWValue, EqualityNeedsEqualKindsAndContents) {
    const auto kinds = everyKind();
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        for (std::size_t j = 0; j < kinds.size(); ++j)
            EXPECT_EQ(kinds[i] == kinds[j], i == j) << i << " " << j;
    }
    EXPECT_NE(KWValue(true), KWValue(false));
    EXPECT_NE(text(u"x"), text(u"y"));
    EXPECT_NE(text(u"x"), text(u"x", KWUnitType::Ident));
    EXPECT_EQ(text(u"x"), text(u"x"));
    EXPECT_NE(KWValue(KWNameEnum::Yes), KWValue(KWNameEnum::No));
    EXPECT_EQ(compoundOf(1, 2), compoundOf(1, 2));
    EXPECT_NE(compoundOf(1, 2), compoundOf(1, 3));
}

TEST(KWValue, NumbersCompareAcrossIntegerAndReal) {
    EXPECT_EQ(KWValue(2), KWValue(2.0));
    EXPECT_NE(KWValue(2), KWValue(2.5));
    EXPECT_NE(KWValue(kIntMax), KWValue(2147483648.0));
    EXPECT_TRUE(KWValue(3) >= KWValue(2.5));
    EXPECT_TRUE(KWValue(3) >= KWValue(3));
    EXPECT_FALSE(KWValue(2) >= KWValue(3));
}

TEST(KWValue, NumbersWithUnitsCompareWhenTheyConvert) {
    EXPECT_EQ(KWValue(1.0, KWUnitType::In), KWValue(96.0, KWUnitType::Px));
    EXPECT_TRUE(KWValue(1.0, KWUnitType::In) >= KWValue(95.0, KWUnitType::Px));
    EXPECT_FALSE(KWValue(1.0, KWUnitType::In) >= KWValue(97.0, KWUnitType::Px));
    EXPECT_NE(KWValue(1.0, KWUnitType::Em), KWValue(1.0, KWUnitType::Px));
    EXPECT_FALSE(KWValue(1.0, KWUnitType::Em) >= KWValue(1.0, KWUnitType::Px));
    EXPECT_NE(KWValue(1), KWValue(1.0, KWUnitType::Px));
    EXPECT_FALSE(KWValue(5) >= KWValue(1.0, KWUnitType::Px));
}

TEST(KWValue, OnlyNumbersAreOrdered) {
    for (const KWValue& value : everyKind()) {
        EXPECT_EQ(value >= KWValue(0), value.isNumber());
        EXPECT_EQ(KWValue(100) >= value, value.isNumber());
    }
}

TEST(KWValue, NotANumberEqualsNothing) {
    const KWValue nan(std::numeric_limits<double>::quiet_NaN());
    EXPECT_NE(nan, KWValue(nan));
    EXPECT_FALSE(nan >= nan);
}

TEST(KWValue, IntegersAddToIntegers) {
    EXPECT_EQ(describe(KWValue(2) + KWValue(3)), "int:5");
    EXPECT_EQ(describe(KWValue(2) - KWValue(3)), "int:-1");
    EXPECT_EQ(describe(-KWValue(2)), "int:-2");
    EXPECT_EQ(describe(-KWValue(0)), "int:0");
    KWValue sum(10);
    sum += KWValue(-4);
    EXPECT_EQ(describe(sum), "int:6");
}

TEST(KWValue, SumsBeyondIntBecomeReal) {
    EXPECT_EQ(describe(KWValue(kIntMax) + KWValue(1)), "real:2147483648");
    EXPECT_EQ(describe(KWValue(kIntMin) - KWValue(1)), "real:-2147483649");
    EXPECT_EQ(describe(KWValue(0) - KWValue(kIntMin)), "real:2147483648");
    EXPECT_EQ(describe(-KWValue(kIntMin)), "real:2147483648");
    EXPECT_EQ(describe(KWValue(kIntMax) + KWValue(0)), "int:2147483647");
}

TEST(KWValue, MixedNumbersAddToReals) {
    EXPECT_EQ(describe(KWValue(2) + KWValue(0.5)), "real:2.5");
    EXPECT_EQ(describe(KWValue(2.5) - KWValue(1)), "real:1.5");
    EXPECT_EQ(describe(KWValue(2.0) + KWValue(1)), "real:3");
    EXPECT_EQ(describe(-KWValue(2.5)), "real:-2.5");
    KWValue sum(0.5);
    sum += sum;
    EXPECT_EQ(describe(sum), "real:1");
}

TEST(KWValue, SumsKeepAndConvertUnits) {
    const KWValue inch(1.0, KWUnitType::In);
    EXPECT_EQ(describe(inch + KWValue(48.0, KWUnitType::Px)), "real:1.5in");
    EXPECT_EQ(describe(inch - KWValue(1)), "real:0in");
    EXPECT_EQ(describe(KWValue(1) + KWValue(2.0, KWUnitType::Em)), "real:3em");
    EXPECT_EQ(describe(-inch), "real:-1in");
}

TEST(KWValue, ArithmeticWithoutTwoNumbersIsNull) {
    for (const KWValue& value : everyKind()) {
        if (value.isNumber())
            continue;
        EXPECT_TRUE((value + KWValue(1)).isNull());
        EXPECT_TRUE((KWValue(1) + value).isNull());
        EXPECT_TRUE((value - KWValue(1)).isNull());
        EXPECT_TRUE((KWValue(1.5) - value).isNull());
        EXPECT_TRUE((-value).isNull());
        KWValue sum(1);
        sum += value;
        EXPECT_TRUE(sum.isNull());
    }
    EXPECT_TRUE((KWValue(1.0, KWUnitType::Em) + KWValue(1.0, KWUnitType::Px)).isNull());
}

TEST(KWValue, ToStringWritesEveryKind) {
    EXPECT_EQ(utf8(KWValue().toString()), "");
    EXPECT_EQ(utf8(KWValue(true).toString()), "true");
    EXPECT_EQ(utf8(KWValue(false).toString()), "false");
    EXPECT_EQ(utf8(KWValue(kIntMin).toString()), "-2147483648");
    EXPECT_EQ(utf8(KWValue(0.039625).toString()), "0.039625");
    EXPECT_EQ(utf8(KWValue(12.5, KWUnitType::Px).toString()), "12.5px");
    EXPECT_EQ(utf8(KWValue(50.0, KWUnitType::Percent).toString()), "50%");
    EXPECT_EQ(utf8(text(u"a 'b'").toString()), "a 'b'");
    EXPECT_EQ(utf8(KWValue(KWNameEnum::True).toString()), "true");
}

TEST(KWValue, ToStringJoinsTheItemsOfACompound) {
    KWValue value = compoundOf(-20, 0);
    value.setNamedItem(key(3), 0.5);
    EXPECT_EQ(utf8(value.toString()), "-20 0 0.5");
    value.setNamedItem(key(4), text(u"x"));
    EXPECT_EQ(utf8(value.toQuotedString(kDouble)), "-20 0 0.5 \"x\"");
}

TEST(KWValue, QuotedStringsChooseTheirMark) {
    EXPECT_EQ(utf8(text(u"a'b\"").toQuotedString(kDouble)), R"("a'b\"")");
    EXPECT_EQ(utf8(text(u"a'b\"").toQuotedString(kSingle)), R"('a\'b"')");
}

TEST(KWValue, QuotingLeavesOtherKindsAlone) {
    EXPECT_EQ(utf8(KWValue(12.5, KWUnitType::Px).toQuotedString(kDouble)), "12.5px");
    EXPECT_EQ(utf8(KWValue(KWNameEnum::Yes).toQuotedString(kDouble)), "yes");
    EXPECT_EQ(utf8(KWValue(true).toQuotedString(kDouble)), "true");
    EXPECT_EQ(utf8(KWValue().toQuotedString(kDouble)), "");
    EXPECT_EQ(utf8(text(u"U+4??, U+zz", KWUnitType::List).toQuotedString(kDouble)), "U+4??, U+zz");
}

TEST(KWValue, QuotedTokensReadBackTheSame) {
    for (const char16_t* source : {u"12",     u"-12.5",  u"12px",         u"50%",
                                   u"yes",    u"foo",    u"'it''s'",      u"\"a\\22 b\\a c\"",
                                   u"\\33 d", u"a\\ b",  u"f\\28(",       u"@\\31x",
                                   u"#0af",   u"#a\\!b", u"url( a\\)b )", u"U+4??",
                                   u"12foo",  u",",      u"a, 'b' c",     u"1e3foo",
                                   u"\\\n",   u"1\\65 3"}) {
        const KWValue value = KWParser::parse(source);
        for (const auto mode : {kDouble, kSingle}) {
            const UnicodeString quoted = value.toQuotedString(mode);
            EXPECT_EQ(KWParser::parse(quoted), value) << utf8(source) << " " << utf8(quoted);
        }
    }
}

} // namespace
