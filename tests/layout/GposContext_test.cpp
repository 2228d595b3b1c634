#include "layout/GposContext.h"

#include "layout/GposFixture.h"

#include "common/KWLimits.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr int kIgnoreMarkGlyphs = 0x08;

const Bytes kClasses = classDefFormat2({{10, 10, 1}, {11, 11, 2}, {12, 12, 3}});

/// 10 before 11, by each of the three formats that can match.
Bytes context2(const Records& records) {
    return contextFormat2({10}, kClasses, {{}, {{.input = {2}, .records = records}}});
}
Bytes chain2(const Records& records) {
    return chainContextFormat2({10}, kClasses, kClasses, kClasses,
                               {{}, {{.input = {2}, .records = records}}});
}
Bytes chain3(const Records& records) {
    return chainContextFormat3({}, {{10}, {11}}, {}, records);
}

/// Adds to the advance of every glyph from 10 to 12.
Bytes widen(int amount) {
    return lookupTable(1, {singlePosFormat1({10, 11, 12}, 0x04, {amount})});
}
/// A font whose first lookup is a context and the others what it calls.
GposFont fontOf(int lookupType, const Bytes& context, const std::vector<Bytes>& called,
                int flag = 0) {
    GposFont font{.lookups = {lookupTable(lookupType, {context}, flag)}};
    font.lookups.insert(font.lookups.end(), called.begin(), called.end());
    return font;
}

TEST(GposContext, TheFormatsThatMatchPosition) {
    const Records records = {{0, 1}};
    for (const auto& [type, context] :
         {std::pair(7, context2(records)), std::pair(8, chain2(records)),
          std::pair(8, chain3(records))}) {
        const Positioner font(fontOf(type, context, {widen(5)}));
        for (const bool rtl : {false, true}) {
            EXPECT_EQ(font.movesAt({base(10), base(11)}, 0, rtl)[1], 505) << type;
            EXPECT_EQ(font.movesAt({base(10), base(12)}, 0, rtl)[1], 500) << type;
            EXPECT_EQ(font.movesAt({base(12), base(10)}, 1, rtl)[1], 500) << type;
        }
    }
}

TEST(GposContext, TheOtherFormatsNeverMatch) {
    const RuleSetBytes rules = {{{.input = {11}, .records = {{0, 1}}}}};
    for (const auto& [type, context] : {std::pair(7, contextFormat1({10}, rules)),
                                        std::pair(7, contextFormat3({{10}, {11}}, {{0, 1}})),
                                        std::pair(8, chainContextFormat1({10}, rules))}) {
        const Positioner font(fontOf(type, context, {widen(5)}));
        EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 500) << type;
        EXPECT_EQ(font.movesAt(strict({base(10), base(11)}), 0, true)[1], 500) << type;
    }
}

// The sequence index names the second glyph, and the first is moved.
TEST(GposContext, TheSequenceIndexIsIgnored) {
    for (const int index : {0, 1, 7}) {
        const Positioner font(
            fontOf(8, chain3({{static_cast<std::uint16_t>(index), 1}}), {widen(5)}));
        Positions positions = {base(10), base(11)};
        EXPECT_EQ(font.at(positions, 0), 0);
        EXPECT_EQ(moves(positions[0])[1], 505) << index;
        EXPECT_EQ(moves(positions[1])[1], 500) << index;
    }
}

TEST(GposContext, ALookupWorksWhereTheOneBeforeHasMovedTheIndex) {
    // In strict mode a pair with two values moves on to its second glyph.
    const Bytes pair = pairPosFormat1(0x04, 0x04, {{10, {{11, {100}, {200}}}}});
    const Positioner font(
        fontOf(8, chain3({{0, 1}, {0, 2}, {0, 1}}), {lookupTable(2, {pair}), widen(5)}));
    Positions positions = {strict(base(10)), base(11), base(12)};
    EXPECT_EQ(font.at(positions, 0), 1) << "and it stays there";
    EXPECT_EQ(moves(positions[0])[1], 600);
    EXPECT_EQ(moves(positions[1])[1], 705);
    EXPECT_EQ(font.everywhere(positions), 1);
}

TEST(GposContext, AppliesWhenAnyOfItsLookupsDoes) {
    const Bytes other = lookupTable(1, {singlePosFormat1({12}, 0x04, {7})});
    const Positioner some(fontOf(8, chain3({{0, 1}, {0, 2}, {0, 9}}), {other, widen(5)}));
    EXPECT_EQ(some.movesAt({base(10), base(11)}, 0)[1], 505) << "9 does not exist";
    const Positioner none(fontOf(8, chain3({{0, 1}, {0, 1}, {0, 9}}), {other}));
    Positions positions = {base(10), base(11)};
    EXPECT_EQ(none.at(positions, 0), Positioner::kMiss);
}

TEST(GposContext, OfALookupTheFirstSubtableThatAppliesDecides) {
    const Bytes twice =
        lookupTable(1, {singlePosFormat1({12}, 0x04, {1}), singlePosFormat1({10}, 0x10, {0}),
                        singlePosFormat1({10}, 0x04, {2}), singlePosFormat1({10}, 0x04, {4})});
    const Positioner font(fontOf(8, chain3({{0, 1}}), {twice}));
    EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 502);
}

TEST(GposContext, AMatchWithoutRecordsLeavesTheNextSubtableItsTurn) {
    for (const auto& [type, first] :
         {std::pair(8, chain3({})), std::pair(8, chain2({})), std::pair(7, context2({}))}) {
        const Bytes second = type == 8 ? chain3({{0, 1}}) : context2({{0, 1}});
        const Positioner font({.lookups = {lookupTable(type, {first, second}), widen(5)}});
        EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 505) << type;
    }
}

TEST(GposContext, AnExtensionMayBeCalledAndMayCall) {
    const Bytes wrapped = extension(1, singlePosFormat1({10}, 0x04, {5}));
    const Positioner font(fontOf(9, extension(8, chain3({{0, 1}})), {lookupTable(9, {wrapped})}));
    EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 505);
}

TEST(GposContext, TheDirectionGoesOnToTheLookups) {
    const Bytes accent = markBasePos({{.glyph = 11, .anchor = anchorTable(0, 0)}},
                                     {{.glyph = 10, .anchors = {anchorTable(30, 0)}}}, 1);
    const Positioner font(
        {.lookups = {lookupTable(8, {chainContextFormat3({{10}}, {{11}}, {}, {{0, 1}})}),
                     lookupTable(4, {accent})}});
    EXPECT_EQ(font.movesAt({base(10), mark(11)}, 1, true)[0], 30);
    EXPECT_EQ(font.movesAt({base(10), mark(11)}, 1, false)[0], 30 - 500);
}

// --- what is passed over ------------------------------------------------------------------------

TEST(GposContext, TheLookupFlagCountsFromRightToLeftWhenTheFirstGlyphOfAllIsStrict) {
    const Records records = {{0, 1}};
    for (const auto& [type, context] :
         {std::pair(7, context2(records)), std::pair(8, chain2(records)),
          std::pair(8, chain3(records))}) {
        const Positioner font(fontOf(type, context, {widen(5)}, kIgnoreMarkGlyphs));
        const Positions plain = {base(19), base(10), mark(30), base(11)};
        Positions firstStrict = plain;
        firstStrict[0] = strict(plain[0]);
        Positions othersStrict = strict(plain);
        othersStrict[0] = plain[0];
        EXPECT_EQ(font.movesAt(firstStrict, 1, true)[1], 505) << type;
        EXPECT_EQ(font.movesAt(firstStrict, 1, false)[1], 500) << type;
        EXPECT_EQ(font.movesAt(othersStrict, 1, true)[1], 500) << type;
        EXPECT_EQ(font.movesAt(plain, 1, true)[1], 500) << type;
    }
}

TEST(GposContext, NoEntryIsDroppedFromTheRun) {
    const Positioner font(fontOf(8, chain3({{0, 1}}), {widen(5)}));
    GlyphIDPosition ignored;
    ignored.ignoreGlyph();
    for (const GlyphIDPosition& empty : {GlyphIDPosition(), ignored}) {
        EXPECT_EQ(font.movesAt({base(10), empty, base(11)}, 0)[1], 500) << "it stands between";
        EXPECT_EQ(font.movesAt({empty, base(10), base(11)}, 1)[1], 505) << "indices agree";
    }
}

TEST(GposContext, LooksBehindAndAhead) {
    const Positioner font(
        {.lookups = {lookupTable(8, {chainContextFormat3({{12}}, {{10}}, {{11}}, {{0, 1}})}),
                     widen(5)}});
    EXPECT_EQ(font.movesAt({base(12), base(10), base(11)}, 1)[1], 505);
    EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 500);
    EXPECT_EQ(font.movesAt({base(12), base(10)}, 1)[1], 500);
}

// --- contexts that call each other --------------------------------------------------------------

/// Contexts in a row that each call the next, and a single positioning at the end.
GposFont contextsInARow(int count) {
    GposFont font;
    for (int i = 1; i <= count; ++i)
        font.lookups.push_back(lookupTable(8, {chain3({{0, static_cast<std::uint16_t>(i)}})}));
    font.lookups.push_back(widen(5));
    return font;
}

TEST(GposContext, ContextsNestAsDeepAsTheLimit) {
    const Positioner deepest(contextsInARow(KWCommonNS::kMaxLayoutNesting));
    EXPECT_EQ(deepest.movesAt({base(10), base(11)}, 0)[1], 505);
    const Positioner tooDeep(contextsInARow(KWCommonNS::kMaxLayoutNesting + 1));
    EXPECT_EQ(tooDeep.movesAt({base(10), base(11)}, 0)[1], 500);
}

TEST(GposContext, AContextThatCallsItselfEnds) {
    const Positioner font(fontOf(8, chain3({{0, 0}, {0, 1}}), {widen(1)}));
    EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 500 + KWCommonNS::kMaxLayoutNesting)
        << "each level adds its own";
}

TEST(GposContext, ContextsThatCallEachOtherWithoutEndAreEndedByTheBudget) {
    // Two calls at each of 64 levels.
    const Positioner font(
        fontOf(8, chain3({{0, 1}, {0, 1}}), {lookupTable(7, {context2({{0, 0}, {0, 0}})})}));
    Positions positions = {base(10), base(11)};
    EXPECT_EQ(font.everywhere(positions), -1);
    EXPECT_EQ(positions, (Positions{base(10), base(11)}));
}

} // namespace
} // namespace KWFontService_NS
