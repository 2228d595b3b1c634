#include "cff/CharStringWalk.h"

#include "cff/CharStringFixture.h"
#include "common/KWLimits.h"

#include <gmock/gmock.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr std::size_t kPlenty = 1 << 20;

// Operands of the first subrs, as bytes.
constexpr int k0 = 139 + subrNumber(0);
constexpr int k1 = 139 + subrNumber(1);
constexpr int k2 = 139 + subrNumber(2);

struct Walked {
    CharStringTokens tokens;
    CharStringCounts counts;
    SubrEntries globals;
    SubrEntries locals;

    explicit Walked(const Bytes& charString, const Subrs& subrs = Subrs(),
                    std::size_t allowed = kPlenty) {
        CharStringBudget budget(allowed);
        walkCharString(viewOf(charString), tokens, subrs, counts, &globals, &locals, budget);
        // The walk without tokens counts the same and finds the same subrs.
        CharStringBudget sameBudget(allowed);
        CharStringCounts sameCounts;
        SubrEntries sameGlobals;
        SubrEntries sameLocals;
        SubrWalker walker(subrs, sameBudget, &sameGlobals, &sameLocals);
        walker.walk(viewOf(charString), sameCounts);
        EXPECT_EQ(sameCounts, counts);
        EXPECT_EQ(sameGlobals, globals);
        EXPECT_EQ(sameLocals, locals);
    }
    std::string text() const { return textOf(tokens); }
};

TEST(WalkCharString, NumbersAndOperatorsBecomeTokens) {
    EXPECT_EQ(Walked({140, 141, 21, 2, 12, 10, 12, 99, 14}).text(),
              "1 2 rmoveto <> add <> endchar");
    // 65536ths stay as they are.
    EXPECT_EQ(Walked({255, 0, 1, 0x80, 0, 22}).text(), "98304 hmoveto");
}

TEST(WalkCharString, MasksGiveNoTokens) {
    EXPECT_EQ(Walked({140, 140, 18, 140, 140, 19, 0xC0, 22, 20, 0x80, 14}).text(),
              "1 1 hstemhm 1 1 hintmask hmoveto cntrmask endchar");
}

TEST(WalkCharString, AMaskWithoutStemsHasOneByte) {
    EXPECT_EQ(Walked({19, 14, 22}).text(), "hintmask hmoveto");
}

TEST(WalkCharString, SubrsStandBehindTheirCalls) {
    const Subrs subrs({{141, 22, 11}, {k0, 29, 142, 11}}, {{143, k1, 29, 11}});
    const Walked walked({140, k0, 10, 144, 14}, subrs);
    EXPECT_EQ(walked.text(), "1 -107 callsubr 4 -106 callgsubr -107 callgsubr 2 hmoveto return "
                             "3 return return 5 endchar");
    EXPECT_EQ(walked.locals, (SubrEntries{{-107, {{1, 0}, 0}}}));
    EXPECT_EQ(walked.globals, (SubrEntries{{-107, {{2, 0}, 0}}, {-106, {{2, 0}, 0}}}));
    EXPECT_EQ(walked.counts, CharStringCounts{});
}

TEST(WalkCharString, StemsOfASubrCountForTheMaskOfItsCaller) {
    const Subrs subrs({}, {Bytes().fill(18, 139).u8(18).u8(11)});
    EXPECT_EQ(Walked({k0, 10, 19, 14, 14, 22}, subrs).counts, (CharStringCounts{0, 9}));
    EXPECT_EQ(Walked({140, k0, 10, 19, 14, 14, 22}, subrs).tokens.size(), 1 + 2 + 20 + 2U);
}

TEST(WalkCharString, TheFirstEntryOfASubrStands) {
    const Subrs subrs({}, {{11}});
    const Walked walked({140, k0, 10, 140, 140, 1, 140, 140, 140, k0, 10, 14}, subrs);
    EXPECT_EQ(walked.locals, (SubrEntries{{-107, {{1, 0}, 0}}}));
}

TEST(WalkCharString, ASubrThatDoesNotExistLeavesItsCall) {
    const Walked walked({140, 141, 10, 142, 29, 14}, Subrs({}, {{11}}));
    EXPECT_EQ(walked.text(), "1 2 callsubr 3 callgsubr endchar");
    EXPECT_EQ(walked.globals.size(), 0U);
    EXPECT_EQ(walked.locals.size(), 0U);
}

TEST(WalkCharString, ACallWithoutANumberBeforeItLeadsNowhere) {
    const Subrs subrs({}, {{140, 22, 11}});
    EXPECT_EQ(Walked({10, 21, 10, k0, 12, 14, 10, 14}, subrs).text(),
              "callsubr rmoveto callsubr -107 neg callsubr endchar");
}

TEST(WalkCharString, EndcharEndsItsOwnCharstringOnly) {
    const Subrs subrs({}, {{140, 14, 141}});
    EXPECT_EQ(Walked({k0, 10, 142, 14, 143}, subrs).text(), "-107 callsubr 1 endchar 3 endchar");
}

TEST(WalkCharString, WhatFollowsReturnIsWalkedToo) {
    EXPECT_EQ(Walked({140, 11, 141, 14}).text(), "1 return 2 endchar");
}

TEST(WalkCharString, ASubrThatCallsItselfEnds) {
    const Subrs subrs({{k0, 29, k0, 29, 11}}, {{k0, 10, 11}});
    EXPECT_LT(Walked({k0, 10, 14}, subrs).tokens.size(), 100U);
    CharStringBudget budget(kPlenty);
    CharStringTokens tokens;
    CharStringCounts counts;
    const Bytes charString{k0, 29, 14};
    walkCharString(viewOf(charString), tokens, subrs, counts, nullptr, nullptr, budget);
    EXPECT_LE(tokens.size(), 3U << 17);
}

TEST(WalkCharString, TheBudgetEndsSubrsThatCallEachOther) {
    // Each calls the next one thirty times: 30^9 in all.
    std::vector<Bytes> subrs;
    for (int i = 0; i < 10; ++i) {
        Bytes subr;
        for (int k = 0; k < 30 && i < 9; ++k)
            subr.u8(139 + subrNumber(i + 1)).u8(10);
        subrs.push_back(subr.u8(11));
    }
    const Subrs fanOut({}, subrs);
    CharStringBudget budget(100000);
    CharStringTokens tokens;
    CharStringCounts counts;
    const Bytes charString{k0, 10, 14};
    walkCharString(viewOf(charString), tokens, fanOut, counts, nullptr, nullptr, budget);
    EXPECT_LE(tokens.size(), 200000U);

    // What is remembered costs what the bytes cost.
    const std::size_t pages = 3 * SubrEntries().costOf(0);
    CharStringBudget small(10 * (61 + KWCommonNS::kKnownSubrCost) + 3 + pages);
    SubrEntries locals;
    SubrWalker walker(fanOut, small, nullptr, &locals);
    walker.walk(viewOf(charString), counts);
    EXPECT_EQ(locals.size(), 10U);
    EXPECT_TRUE(small.charge(1));
    EXPECT_FALSE(small.isSpent());
    CharStringBudget tooSmall(5 * (61 + KWCommonNS::kKnownSubrCost));
    SubrWalker(fanOut, tooSmall).walk(viewOf(charString), counts);
    EXPECT_TRUE(tooSmall.isSpent());
}

TEST(SubrWalker, ASubrIsLookedAtOnceForEachStateThatItIsEnteredWith) {
    const Subrs subrs({}, {{140, 140, 19, 0, 11}});
    const Bytes charString{k0, 10, k0, 10, k0, 10, 14};
    constexpr std::size_t kEntry = 5 + KWCommonNS::kKnownSubrCost;
    CharStringBudget budget(7 + 3 * kEntry + 5);
    SubrWalker walker(subrs, budget);
    CharStringCounts counts;
    walker.walk(viewOf(charString), counts);
    EXPECT_EQ(counts.stems, 3);
    for (int i = 0; i < 5; ++i) {
        counts = {};
        walker.call(false, subrNumber(0), counts);
        EXPECT_EQ(counts, (CharStringCounts{0, 1}));
    }
    // The charstring, and three entries of five bytes.
    EXPECT_TRUE(budget.charge(5));
    EXPECT_FALSE(budget.charge(1));
}

// Of two ways to a subr one may be so deep that what it calls is not gone through.
TEST(SubrWalker, WhatTheLimitOfDepthCutsShortIsGoneThroughFromNearer) {
    std::vector<Bytes> chain;
    constexpr int kLength = KWCommonNS::kMaxSubrDepth + 3;
    for (int i = 0; i + 1 < kLength; ++i)
        chain.push_back(Bytes{139 + subrNumber(i + 1), 10, 11});
    chain.push_back({140, 22, 11});
    const Subrs subrs({}, chain);
    CharStringBudget budget(1 << 16);
    SubrEntries locals;
    SubrWalker walker(subrs, budget, nullptr, &locals);
    CharStringCounts counts;
    walker.call(false, subrNumber(0), counts);
    EXPECT_EQ(locals.size(), static_cast<std::size_t>(KWCommonNS::kMaxSubrDepth) + 1);
    EXPECT_EQ(locals.find(subrNumber(kLength - 1)), nullptr);
    counts = {};
    walker.call(false, subrNumber(kLength / 2), counts);
    EXPECT_NE(locals.find(subrNumber(kLength - 1)), nullptr);
}

TEST(SubrWalker, TablesOfSubrsArePaidForAsTheyGrow) {
    // Subrs far from each other, which one charstring calls.
    std::vector<Bytes> many(1000, Bytes{11});
    Bytes far;
    for (int i = 0; i < 1000; i += 100)
        far.bytes(Bytes{28}).u16(static_cast<std::uint16_t>(subrNumber(i))).u8(10);
    const Subrs subrs({}, many);
    const auto cost = [&](const Bytes& charString) {
        constexpr std::size_t kRoom = 1 << 20;
        CharStringBudget budget(kRoom);
        SubrEntries locals;
        SubrWalker walker(subrs, budget, nullptr, &locals);
        CharStringCounts counts;
        walker.walk(viewOf(charString), counts);
        return kRoom - budget.left();
    };
    Bytes near;
    for (int i = 0; i < 10; ++i)
        near.bytes(Bytes{28}).u16(static_cast<std::uint16_t>(subrNumber(i))).u8(10);
    EXPECT_GT(cost(far), cost(near) + 8 * 64 * sizeof(SubrEntryState));
}

/// Counts after calls of the first local subr, each with the counts before it, from a walker that
/// knows the subr by then; a walk for tokens, which looks each time, says the same.
std::vector<CharStringCounts> afterCalls(const std::vector<Bytes>& locals,
                                         const std::vector<CharStringCounts>& befores) {
    const Subrs subrs({}, locals);
    CharStringBudget budget(kPlenty);
    SubrWalker walker(subrs, budget);
    std::vector<CharStringCounts> afters;
    for (const CharStringCounts& before : befores) {
        CharStringTokens tokens;
        const Bytes charString{k0, 10};
        CharStringCounts counts = before;
        walker.walk(viewOf(charString), counts);
        CharStringCounts expected = before;
        walkCharString(viewOf(charString), tokens, subrs, expected, nullptr, nullptr, budget);
        EXPECT_EQ(counts, expected) << before.operands << ' ' << before.stems;
        afters.push_back(counts);
    }
    return afters;
}

TEST(SubrWalker, ASubrWithoutMasksIsKnownForAllCounts) {
    using testing::ElementsAre;
    const std::vector<CharStringCounts> befores{{0, 0}, {0, 0}, {1, 0}, {3, 4}, {6, 1}};
    // A stem of what was there and one number more, and two of its own.
    EXPECT_THAT(afterCalls({{140, 1, 140, 140, 140, 140, 23, 140, 11}}, befores),
                ElementsAre(CharStringCounts{1, 2}, CharStringCounts{1, 2}, CharStringCounts{1, 3},
                            CharStringCounts{1, 8}, CharStringCounts{1, 6}));
    // Stems behind an operator that takes all.
    EXPECT_THAT(afterCalls({{140, 21, 140, 140, 18, 11}}, befores),
                ElementsAre(CharStringCounts{0, 1}, CharStringCounts{0, 1}, CharStringCounts{0, 1},
                            CharStringCounts{0, 5}, CharStringCounts{0, 2}));
    // Numbers alone, also from a subr inside.
    EXPECT_THAT(afterCalls({{140, k1, 10, 140, 11}, {141, 11}}, befores),
                ElementsAre(CharStringCounts{3, 0}, CharStringCounts{3, 0}, CharStringCounts{4, 0},
                            CharStringCounts{6, 4}, CharStringCounts{9, 1}));
    // A subr inside makes stems of the numbers before it.
    EXPECT_THAT(afterCalls({{140, 140, k1, 10, 11}, {140, 3, 140, 140, 1, 140, 11}}, befores),
                ElementsAre(CharStringCounts{1, 2}, CharStringCounts{1, 2}, CharStringCounts{1, 3},
                            CharStringCounts{1, 8}, CharStringCounts{1, 6}));
    EXPECT_THAT(afterCalls({{21, 140, 140, k1, 10, 11}, {140, 140, 3, 11}}, befores),
                ElementsAre(CharStringCounts{0, 2}, CharStringCounts{0, 2}, CharStringCounts{0, 2},
                            CharStringCounts{0, 6}, CharStringCounts{0, 3}));
}

TEST(SubrWalker, ASubrWhoseMaskIsCutOffIsNotKnownForOtherCounts) {
    // Behind nine stems the mask is two bytes, of which one is there; behind one it is one.
    EXPECT_THAT(afterCalls({{140, 19, 140}}, {{0, 9}, {0, 1}, {4, 1}, {0, 9}}),
                testing::ElementsAre(CharStringCounts{0, 9}, CharStringCounts{0, 1},
                                     CharStringCounts{0, 3}, CharStringCounts{0, 9}));
}

TEST(SubrWalker, ALeafHoldsNothingToRenumber) {
    const Subrs subrs({}, {{140, 22, 11}, {140, 22, 14}, {140, k0, 10}, {14, k0, 10}, {19, 0}, {}});
    CharStringBudget budget(kPlenty);
    SubrWalker walker(subrs, budget);
    for (int i = 0; i < 6; ++i) {
        const bool isLeaf = i < 2 || i == 5;
        EXPECT_FALSE(walker.isLeaf(false, subrNumber(i)));
        CharStringCounts counts;
        walker.call(false, subrNumber(i), counts);
        EXPECT_EQ(walker.isLeaf(false, subrNumber(i)), isLeaf) << i;
        EXPECT_FALSE(walker.isLeaf(true, subrNumber(i)));
    }
}

TEST(SubrWalker, WhatIsKnownHoldsAtTheLimitsOfTheCounts) {
    constexpr int kMost = KWCommonNS::kMaxCharStringOperands;
    constexpr int kMostStems = KWCommonNS::kMaxCharStringStems;
    const std::vector<CharStringCounts> befores{{0, 0},
                                                {256, 0},
                                                {257, 0},
                                                {kMost - 1, 0},
                                                {kMost, 0},
                                                {kMost, kMostStems},
                                                {9, kMostStems - 1}};
    const Bytes many = Bytes().fill(260, 140);
    for (const Bytes& subr :
         {Bytes{140, 140, 1, 11}, Bytes{140, 140, 12, 12, 1, 11},
          Bytes(many).bytes(Bytes{1, 140, 11}), Bytes(many).bytes(Bytes{k1, 10, 1, 11}),
          Bytes{140, k1, 10, 18, 11}, Bytes{k1, 10, 140, 140, 10, 3, 11}})
        EXPECT_EQ(afterCalls({subr, {140, 140, 11}}, befores).size(), befores.size());
}

/// What the look at local subr 0 shows.
SubrWalker::Look lookAt(SubrWalker& walker) {
    SubrWalker::Look look;
    CharStringCounts counts;
    walker.call(false, subrNumber(0), counts, &look);
    return look;
}

TEST(SubrWalker, TheFirstLookAtALeafShowsItsNumbers) {
    // With masks, too, and without an end.
    for (const Bytes& subr :
         {Bytes{140, 141, 21, 142, 14, 143}, Bytes{140, 141, 18, 19, 140, 142, 14}}) {
        const Subrs subrs({}, {subr});
        CharStringBudget budget(kPlenty);
        SubrWalker walker(subrs, budget);
        const SubrWalker::Look look = lookAt(walker);
        EXPECT_TRUE(look.isLeaf);
        EXPECT_TRUE(look.hasEnded);
        std::vector<int> numbers;
        look.numbers.visitLast(viewOf(subr), [&numbers](int number) { numbers.push_back(number); });
        EXPECT_EQ(numbers, (std::vector<int>{1, 2, 3}));
        EXPECT_FALSE(lookAt(walker).isLeaf);
    }
    const Subrs subrs({}, {{140, 11}});
    CharStringBudget budget(kPlenty);
    SubrWalker walker(subrs, budget);
    EXPECT_FALSE(lookAt(walker).hasEnded);
}

TEST(SubrWalker, ASubrThatCallsIsNoLeaf) {
    for (const Bytes& subr : {Bytes{k1, 10, 140, 14}, Bytes{140, 5, 10, 11}, Bytes{k2, 29, 11}}) {
        const Subrs subrs({}, {subr, {140, 11}});
        CharStringBudget budget(kPlenty);
        SubrWalker walker(subrs, budget);
        EXPECT_FALSE(lookAt(walker).isLeaf);
    }
}

TEST(SubrWalker, ALookThatIsNotPaidForShowsNothing) {
    const Subrs subrs({}, {{140, 141, 11}});
    for (const std::size_t bytes : {std::size_t{0}, KWCommonNS::kKnownSubrCost + 2}) {
        CharStringBudget budget(bytes);
        SubrWalker walker(subrs, budget);
        EXPECT_FALSE(lookAt(walker).isLeaf);
    }
}

TEST(SubrWalker, WhatItKnowsStaysWhenNothingIsNotedAnyMore) {
    const Subrs subrs({{11}}, {{140, 11}, {141, 11}});
    CharStringBudget budget(kPlenty);
    SubrEntries globals;
    SubrEntries locals;
    SubrWalker walker(subrs, budget, &globals, &locals);
    CharStringCounts counts;
    walker.call(false, subrNumber(0), counts);
    CharStringBudget other(2 + KWCommonNS::kKnownSubrCost);
    walker.stopNoting(other);
    walker.call(false, subrNumber(0), counts);
    EXPECT_TRUE(walker.isPlain(false, subrNumber(0)));
    walker.call(false, subrNumber(1), counts);
    EXPECT_FALSE(other.isSpent());
    EXPECT_EQ(counts.operands, 3);
    walker.call(true, subrNumber(0), counts);
    EXPECT_TRUE(other.isSpent());
    EXPECT_EQ(locals.size(), 1U);
    EXPECT_EQ(globals.size(), 0U);
}

TEST(SubrWalker, WhatASubrIsEnteredWithTellsItFromItself) {
    // A stem of whatever is there; nothing, under the same number.
    const Subrs subrs({{1, 11}}, {{11}});
    CharStringBudget budget(kPlenty);
    SubrWalker walker(subrs, budget);
    const auto after = [&walker](bool isGlobal, CharStringCounts counts) {
        walker.call(isGlobal, subrNumber(0), counts);
        return counts;
    };
    EXPECT_EQ(after(true, {2, 0}), (CharStringCounts{0, 1}));
    EXPECT_EQ(after(true, {4, 0}), (CharStringCounts{0, 2}));
    EXPECT_EQ(after(true, {2, 5}), (CharStringCounts{0, 6}));
    EXPECT_EQ(after(false, {2, 0}), (CharStringCounts{2, 0}));
}

TEST(SubrWalker, EntriesSayWhoFoundThem) {
    const Subrs subrs({{11}}, {{11}});
    CharStringBudget budget(kPlenty);
    SubrEntries globals;
    SubrEntries first;
    SubrEntries second;
    const Bytes charString{k0, 10, k0, 29, 14};
    for (const auto& [entries, fontDict] : {std::pair{&first, 3}, {&second, 5}}) {
        SubrWalker walker(subrs, budget, &globals, entries, static_cast<std::uint8_t>(fontDict));
        CharStringCounts counts;
        walker.walk(viewOf(charString), counts);
    }
    EXPECT_EQ(globals.find(-107)->fontDict, 3);
    EXPECT_EQ(first.find(-107)->fontDict, 3);
    EXPECT_EQ(second.find(-107)->fontDict, 5);
}

TEST(WalkCharString, DeepSubrsOfAnHonestFontAreReached) {
    std::vector<Bytes> subrs;
    for (int i = 0; i < 10; ++i)
        subrs.push_back(Bytes{139 + subrNumber(i + 1), 10, 11});
    subrs.push_back(Bytes{177, 22, 11});
    EXPECT_EQ(Walked({k0, 10, 14}, Subrs({}, subrs)).tokens.size(), 2 * 11 + 2 + 11 + 1U);
    EXPECT_EQ(Walked({k2, 10, 14}, Subrs({}, subrs)).locals.size(), 9U);
}

} // namespace
} // namespace KWFontService_NS
