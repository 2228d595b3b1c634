#include "layout/GPOS_MarkMarkPos.h"

#include "layout/GposFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

// Mark 30 is held at (10, 20); mark 31 takes it at (40, 300).
Bytes tower() {
    return markBasePos({{.glyph = 30, .anchor = anchorTable(10, 20)}},
                       {{.glyph = 31, .anchors = {anchorTable(40, 300)}}}, 1);
}
/// Mark 31 at X1 3, X2 4, Y 5, and mark 30.
Positions towerOf(const GlyphIDPosition& last) {
    return {base(10), moved(mark(31), 3, 4, 5), last};
}

TEST(MarkToMark, OnAPlainMark) {
    const Positioner font(6, tower());
    for (const bool rtl : {false, true})
        EXPECT_EQ(font.movesAt(towerOf(mark(30)), 2, rtl), (Moves{10 - 40, 30, 20 - 300, 0}));
}

// Not the plain formula with terms added: x is the other way round.
TEST(MarkToMark, OnAStrictMarkXIsTheOtherWayRound) {
    const Positioner font(6, tower());
    Positions run = towerOf(mark(30));
    run[1] = strict(run[1]);
    const int x = 40 - 4 - 10;
    for (const bool rtl : {false, true})
        EXPECT_EQ(font.movesAt(run, 2, rtl), (Moves{x, -x, 5 - 300 + 20, 0}));
}

TEST(MarkToMark, TheUpperMarkSaysWhetherItsPositionIsAddedOrReplaced) {
    const Positioner font(6, tower());
    const GlyphIDPosition before = moved(mark(30), 1, 2, 3);
    EXPECT_EQ(font.movesAt(towerOf(before), 2), (Moves{-29, 32, -277, 0}));
    EXPECT_EQ(font.movesAt(towerOf(strict(before)), 2), (Moves{-30, 33, -280, 0}));
    EXPECT_EQ(font.movesAt(towerOf(flagged(before, GLYPH_FLAG_OUTSIDE_GPOS)), 2),
              (Moves{-30, 30, -280, 0}));
}

TEST(MarkToMark, TheLookupFlagSaysWhatIsPassedOverInEveryMode) {
    // Marks 31 and 30 are of attachment class 1, mark 35 of class 2.
    const auto font = [](int flag) {
        return GposFont{
            .lookups = {lookupTable(6, {tower()}, flag)},
            .gdef = {.markAttachClassDef = classDefFormat2({{30, 31, 1}, {35, 35, 2}})}};
    };
    const Positions run = {base(10), mark(31), mark(35), mark(30)};
    const Positioner passing(font(0x0100));
    const Positioner plain(font(0));
    for (const bool rtl : {false, true}) {
        EXPECT_EQ(passing.movesAt(run, 3, rtl)[0], -30);
        EXPECT_EQ(passing.movesAt(strict(run), 3, rtl)[0], 40 - 10);
        EXPECT_EQ(plain.movesAt(run, 3, rtl)[0], 0) << "35 is what it would go on";
    }
}

TEST(MarkToMark, ABaseThatIsPassedOverEndsTheSearch) {
    const Positions run = {mark(31), base(10), mark(30)};
    const Positioner bases(6, tower(), 0x02);
    EXPECT_EQ(bases.movesAt(run, 2)[0], 0);
    Positions others = {mark(31), ligature(20), mark(30)};
    const Positioner ligatures(6, tower(), 0x04);
    EXPECT_EQ(ligatures.movesAt(others, 2)[0], -30) << "a ligature does not";
}

TEST(MarkToMark, OnlyABaseThatIsNotPassedOverMayBeWhatItGoesOn) {
    const Bytes onBase = markBasePos({{.glyph = 30, .anchor = anchorTable(10, 20)}},
                                     {{.glyph = 10, .anchors = {anchorTable(40, 300)}}}, 1);
    Positions positions = {base(10), mark(30)};
    EXPECT_EQ(Positioner(6, onBase, 0x02).at(positions, 1), Positioner::kMiss);
    EXPECT_EQ(Positioner(6, onBase).at(positions, 1), 1);
}

TEST(MarkToMark, MissesWithoutALowerMark) {
    const Positioner font(6, tower(), 0x0200);
    const std::vector<Positions> misses = {
        {mark(30)},           // nothing before it
        {mark(31), mark(30)}, // passed over: no attachment class
        {base(10), mark(30)}, // not passed over, and no mark
        {mark(31), mark(31)}, // not covered
    };
    for (const Positions& run : misses) {
        for (const bool rtl : {false, true}) {
            Positions positions = run;
            EXPECT_EQ(font.at(positions, static_cast<int>(run.size()) - 1, rtl), Positioner::kMiss);
            EXPECT_EQ(positions, run);
        }
    }
    const Positioner plain(6, tower());
    Positions positions = {mark(32), mark(30)};
    EXPECT_EQ(plain.at(positions, 1), Positioner::kMiss) << "the lower mark is not covered";
}

TEST(MarkToMark, MarksOfDifferentComponentsStayApartFromRightToLeftInStrictMode) {
    constexpr unsigned short kBoth = GLYPH_FLAG_COMPONENT_INFO | GLYPH_FLAG_LOOKUP_SKIP;
    const Positioner font(6, tower());
    const auto applies = [&](unsigned short lowerFlag, int upper, bool rtl) {
        Positions positions = {flagged(mark(31), lowerFlag), flagged(mark(30), kBoth)};
        positions[0].setSkipInfo(1);
        positions[1].setSkipInfo(upper);
        return font.at(positions, 1, rtl) == 1;
    };
    EXPECT_FALSE(applies(kBoth, 2, true));
    EXPECT_TRUE(applies(kBoth, 1, true)) << "one component";
    EXPECT_TRUE(applies(kBoth, 2, false)) << "from left to right";
    EXPECT_TRUE(applies(GLYPH_FLAG_COMPONENT_INFO, 2, true)) << "the lower mark is plain";
    EXPECT_TRUE(applies(GLYPH_FLAG_LOOKUP_SKIP, 2, true)) << "no component info";
}

TEST(MarkToMark, ANullAnchorIsNoAttachment) {
    expectNullAnchorsAttachNothing(6, mark(36));
}

} // namespace
} // namespace KWFontService_NS
