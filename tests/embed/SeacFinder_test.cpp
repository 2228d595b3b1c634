#include "embed/SeacFinder.h"

#include "CffOutput.h"
#include "support/Rng.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kPlenty = 1 << 20;

/// Tells the finder what a charstring holds, as who goes through it does.
std::vector<int> codesOf(const Bytes& charString, SubrWalker& walker, SeacFinder& finder) {
    CharStringCounts counts;
    CharStringScanner scan(viewOf(charString), counts);
    finder.begin(walker);
    NumberRun run;
    while (scan.nextOperator([&run](std::size_t at, std::size_t count) { run.add(at, count); })) {
        if (scan.op() == FS_Word::endchar) {
            finder.numbers(run, viewOf(charString));
            finder.endchar();
            break;
        }
        if (!scan.isCall())
            continue;
        finder.numbers(run, viewOf(charString));
        run.clear();
        finder.call(scan.isGlobalCall(), scan.callOperand(), counts);
    }
    std::vector<int> codes;
    finder.parts([&codes](std::uint8_t code) { codes.push_back(code); });
    return codes;
}

std::vector<int> codesOf(const Bytes& charString, const Subrs& subrs, SeacFinder& finder) {
    CharStringBudget budget(kPlenty);
    SubrWalker walker(subrs, budget);
    return codesOf(charString, walker, finder);
}

std::vector<int> codesOf(const Bytes& charString, const Subrs& subrs = Subrs(),
                         std::size_t bytes = kPlenty) {
    CharStringBudget budget(bytes);
    SeacFinder finder(subrs, budget);
    return codesOf(charString, subrs, finder);
}

Bytes numbers(std::initializer_list<int> values) {
    Bytes all;
    for (const int value : values)
        all.u8(28).i16(value);
    return all;
}
const Bytes kEndchar{14};

TEST(SeacFinder, TheTopIsTheAccentAndTheBaseLiesBelow) {
    EXPECT_THAT(codesOf(joined(numbers({10, 20, 65, 194}), kEndchar)), ElementsAre(194, 65));
    EXPECT_THAT(codesOf(joined(numbers({500, 10, 20, 65, 194}), kEndchar)), ElementsAre(194, 65));
}

TEST(SeacFinder, MoreThanThreeNumbersAreNeeded) {
    EXPECT_THAT(codesOf(joined(numbers({20, 65, 194}), kEndchar)), IsEmpty());
    EXPECT_THAT(codesOf(kEndchar), IsEmpty());
}

TEST(SeacFinder, CodesLieIn1To255) {
    EXPECT_THAT(codesOf(joined(numbers({0, 0, 1, 255}), kEndchar)), ElementsAre(255, 1));
    EXPECT_THAT(codesOf(joined(numbers({0, 0, 65, 0}), kEndchar)), ElementsAre(65));
    EXPECT_THAT(codesOf(joined(numbers({0, 0, 256, -1}), kEndchar)), IsEmpty());
}

TEST(SeacFinder, OperatorsLeaveTheNumbers) {
    EXPECT_THAT(codesOf(joined(numbers({1, 2}), Bytes{21}, numbers({3, 4}), Bytes{5}, kEndchar)),
                ElementsAre(4, 3));
}

TEST(SeacFinder, ACallTakesItsOperandOnly) {
    const Subrs subrs({{11}}, {{11}});
    EXPECT_THAT(codesOf(joined(numbers({1, 2, 3, 4}), callOf(0), kEndchar), subrs),
                ElementsAre(4, 3));
    EXPECT_THAT(codesOf(joined(numbers({1, 2, 3, 4}), callOf(0, true), kEndchar), subrs),
                ElementsAre(4, 3));
    // One of a subr that is not there, too, and one without an operand of its own.
    EXPECT_THAT(codesOf(joined(numbers({1, 2, 3, 4}), callOf(9), kEndchar), subrs),
                ElementsAre(4, 3));
    EXPECT_THAT(codesOf(joined(numbers({1, 2, 3, 4, 5}), Bytes{5, 10}, kEndchar), subrs),
                ElementsAre(4, 3));
    EXPECT_THAT(codesOf(joined(Bytes{10}, numbers({1, 2, 3, 4}), kEndchar), subrs),
                ElementsAre(4, 3));
}

TEST(SeacFinder, NumbersOfSubrsCount) {
    const Subrs subrs(
        {joined(numbers({194}), kEndchar)},
        {joined(numbers({20, 65}), Bytes{11}), joined(callOf(0), callOf(0, true)), kEndchar});
    EXPECT_THAT(codesOf(joined(numbers({10}), callOf(0), numbers({194}), kEndchar), subrs),
                ElementsAre(194, 65));
    EXPECT_THAT(codesOf(joined(numbers({10}), callOf(1)), subrs), ElementsAre(194, 65));
    EXPECT_THAT(codesOf(joined(numbers({10, 20, 65, 194}), callOf(2)), subrs),
                ElementsAre(194, 65));
}

TEST(SeacFinder, EndcharEndsItsSubrOnly) {
    const Subrs subrs({}, {joined(numbers({1, 2, 3, 4}), kEndchar)});
    EXPECT_THAT(codesOf(joined(callOf(0), numbers({5}), kEndchar), subrs), ElementsAre(4, 3, 5, 4));
    EXPECT_THAT(codesOf(joined(numbers({1, 2, 3, 4}), kEndchar, numbers({5}), kEndchar), subrs),
                ElementsAre(4, 3));
}

TEST(SeacFinder, ASubrIsKnownByWhatItDoesToAnyStack) {
    const Subrs subrs({}, {kEndchar, Bytes{10}});
    CharStringBudget budget(kPlenty);
    SeacFinder finder(subrs, budget);
    for (const int base : {65, 66, 67}) {
        EXPECT_THAT(codesOf(joined(numbers({0, 0, base, 200}), callOf(0)), subrs, finder),
                    ElementsAre(200, base));
        // A subr that takes more than it gives.
        EXPECT_THAT(
            codesOf(joined(numbers({0, 0, base, 200, 9}), callOf(1), kEndchar), subrs, finder),
            ElementsAre(200, base));
    }
}

TEST(SeacFinder, MasksAreNoNumbers) {
    EXPECT_THAT(codesOf(joined(numbers({1, 2, 3, 4}), Bytes{18, 19, 140}, kEndchar)),
                ElementsAre(4, 3));
}

TEST(SeacFinder, WhatLiesTooDeepIsNotKnown) {
    Bytes many;
    for (int i = 1; i <= 25; ++i)
        many.bytes(numbers({i}));
    // Calls without operands take what lies on top; half of the numbers at least were forgotten.
    EXPECT_THAT(codesOf(joined(many, Bytes().fill(3, 10), kEndchar)), ElementsAre(22, 21));
    EXPECT_THAT(codesOf(joined(many, Bytes().fill(18, 10), kEndchar)), IsEmpty());
}

TEST(SeacFinder, WhatASubrHidesIsNotKnownEither) {
    // Ten numbers of which calls without operands take three: five of seven are known, and hide
    // what lay there before.
    const Subrs subrs({},
                      {joined(numbers({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), Bytes{10, 10, 10})});
    const Bytes before = joined(numbers({65, 66, 67, 68}), callOf(0));
    EXPECT_THAT(codesOf(joined(before, kEndchar), subrs), ElementsAre(8, 7));
    EXPECT_THAT(codesOf(joined(before, Bytes().fill(7, 10), kEndchar), subrs), IsEmpty());
}

TEST(SeacFinder, ASingleNumberThatASubrForgotHidesToo) {
    // Nine numbers less one: seven are known of eight.
    const Subrs subrs({}, {joined(numbers({1, 2, 3, 4, 5, 6, 7, 8, 9}), Bytes{10})});
    const Bytes before = joined(numbers({65, 66, 67, 68}), callOf(0));
    EXPECT_THAT(codesOf(joined(before, Bytes().fill(6, 10), kEndchar), subrs), ElementsAre(2));
    EXPECT_THAT(codesOf(joined(before, Bytes().fill(7, 10), kEndchar), subrs), IsEmpty());
}

TEST(SeacFinder, ASubrThatForgotNothingHidesNothing) {
    const Subrs subrs({}, {numbers({194})});
    EXPECT_THAT(codesOf(joined(numbers({10, 20, 65}), callOf(0), kEndchar), subrs),
                ElementsAre(194, 65));
}

TEST(SeacFinder, NumbersOfEveryFormAreCodes) {
    const Bytes charString{139, 139, 139, 204, 247, 86, 14};
    EXPECT_THAT(codesOf(charString), ElementsAre(194, 65));
    EXPECT_THAT(codesOf(joined(Bytes{139, 139, 255, 0, 0, 0, 65, 255, 0, 0, 0, 194}, kEndchar)),
                ElementsAre(194, 65));
}

TEST(SeacFinder, ASubrThatCallsItselfIsKnownByItsOutermostCall) {
    const Subrs subrs({}, {joined(numbers({70}), Bytes{21}, callOf(0))});
    CharStringBudget budget(kPlenty);
    SeacFinder finder(subrs, budget);
    codesOf(callOf(0), subrs, finder);
    EXPECT_THAT(codesOf(joined(callOf(0), kEndchar), subrs, finder), ElementsAre(70, 70));
}

TEST(SeacFinder, ASubrIsGoneThroughWithTheStemsBeforeIt) {
    // Its mask is the eighth stem's; behind a ninth it would have two bytes.
    const Subrs subrs({}, {joined(Bytes{140, 140, 19, 0xAA}, Bytes{139 + 70, 11})});
    const Bytes stems = joined(Bytes().fill(14, 140), Bytes{18});
    EXPECT_THAT(codesOf(joined(stems, callOf(0), kEndchar), subrs), ElementsAre(70, 1));
}

TEST(SeacFinder, WhatTheWalkerLookedAtBeforeMakesNoDifference) {
    Rng random(17);
    const std::vector<Bytes> pieces{{140}, {141, 142}, {247, 86},  {28, 0, 65}, {139, 200}, {21},
                                    {5},   {18},       {19, 0xAA}, {12, 35},    {10},       {29},
                                    {11},  {14},       {255},      {200, 201},  {142, 143}};
    // The subrs ahead of a place call those behind it.
    const auto some = [&](int place) {
        Bytes charString;
        for (std::uint32_t i = random.below(20); i > 0; --i) {
            const int called = place + 1 + static_cast<int>(random.below(4));
            if (called < 4 && random.below(3) == 0)
                charString.bytes(callOf(called, random.below(2) == 0));
            else
                charString.bytes(pieces[random.below(static_cast<std::uint32_t>(pieces.size()))]);
        }
        return charString;
    };
    int found = 0;
    for (int round = 0; round < 3000; ++round) {
        const Subrs subrs({some(0), some(1), some(2), some(3)},
                          {some(0), some(1), some(2), some(3)});
        const Bytes charString = joined(some(-1), callOf(0), some(-1), kEndchar);
        CharStringBudget walked(kPlenty);
        CharStringBudget budget(kPlenty);
        CharStringBudget sameBudget(kPlenty);
        SubrWalker news(subrs, walked);
        SubrWalker knows(subrs, walked);
        CharStringCounts counts;
        knows.walk(viewOf(charString), counts);
        SeacFinder finder(subrs, budget);
        SeacFinder sameFinder(subrs, sameBudget);
        const auto codes = codesOf(charString, news, finder);
        ASSERT_EQ(codes, codesOf(charString, knows, sameFinder));
        ASSERT_EQ(budget.left(), sameBudget.left());
        found += codes.empty() ? 0 : 1;
    }
    EXPECT_GT(found, 500);
}

TEST(SeacFinder, TheCountsGetWhatTheSubrDoesToThem) {
    const Subrs subrs({}, {{140, 141, 18, 142, 11}});
    CharStringBudget budget(kPlenty);
    SubrWalker walker(subrs, budget);
    SeacFinder finder(subrs, budget);
    finder.begin(walker);
    CharStringCounts counts{2, 1};
    finder.call(false, subrNumber(0), counts);
    EXPECT_EQ(counts, (CharStringCounts{1, 3}));
    finder.call(false, std::nullopt, counts);
    finder.call(false, subrNumber(1), counts);
    EXPECT_EQ(counts, (CharStringCounts{1, 3}));
}

TEST(SeacFinder, SubrsThatCallEachOtherCostWhatTheirBytesCost) {
    std::vector<Bytes> locals;
    for (int i = 0; i < 10; ++i) {
        Bytes subr = numbers({1, 2, 3, 4});
        for (int k = 0; k < 30 && i < 9; ++k)
            subr.bytes(callOf(i + 1));
        locals.push_back(subr.bytes(kEndchar));
    }
    const Subrs fanOut({}, locals);
    // There are 30^9 ends, all with the same parts.
    EXPECT_THAT(codesOf(joined(callOf(0)), fanOut, 10000), Contains(4));
    const Subrs itself({}, {joined(callOf(0), callOf(0), kEndchar)});
    EXPECT_THAT(codesOf(joined(numbers({1, 2, 3, 4}), callOf(0), kEndchar), itself),
                ElementsAre(4, 3));
}

TEST(SeacFinder, ABudgetThatIsSpentSaysSo) {
    const Subrs subrs({}, {kEndchar});
    CharStringBudget budget(3);
    SeacFinder finder(subrs, budget);
    codesOf(joined(numbers({1, 2, 3, 4}), callOf(0)), subrs, finder);
    EXPECT_TRUE(budget.isSpent());
}

} // namespace
} // namespace KWFontService_NS
