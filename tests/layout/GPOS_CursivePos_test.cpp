#include "layout/GPOS_CursivePos.h"

#include "layout/GposFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(CursivePos, AGlyphHasAnEntryAndAnExitEitherOfWhichMayBeNull) {
    const auto one = OneSubTable::gpos(
        3, cursivePos({{.glyph = 10, .entry = anchorTable(1, 2), .exit = anchorTable(3, 4)},
                       {.glyph = 11, .exit = anchorTable(5, 6)},
                       {.glyph = 12, .entry = anchorTable(7, 8)}}));
    const auto* table = one.as<GPOS_CursivePosFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 3);
    EXPECT_EQ(table->entry(10)->x(), 1);
    EXPECT_EQ(table->exit(10)->y(), 4);
    EXPECT_FALSE(table->entry(11));
    EXPECT_EQ(table->exit(11)->x(), 5);
    EXPECT_EQ(table->entry(12)->y(), 8);
    EXPECT_FALSE(table->exit(12));
    EXPECT_FALSE(table->entry(13));
    EXPECT_FALSE(table->mayApply(13));
}

TEST(CursivePos, ACoverageIndexBeyondTheRecordsHasNoAnchors) {
    const auto one = OneSubTable::gpos(3, OffsetTable()
                                              .u16(1)
                                              .offset(coverageTable({10, 11}))
                                              .u16(1)
                                              .offset(anchorTable(1, 2))
                                              .u16(0)
                                              .build());
    EXPECT_TRUE(one.as<GPOS_CursivePosFormat1>()->entry(10));
    EXPECT_FALSE(one.as<GPOS_CursivePosFormat1>()->entry(11));
    EXPECT_FALSE(one.as<GPOS_CursivePosFormat1>()->exit(11));
}

// --- positioning --------------------------------------------------------------------------------

// 10 leaves off at (600, 100), 11 begins at (20, 30): dy is 70, and behind a glyph of width 500 dx
// is -1080.
Bytes joint() {
    return cursivePos({{.glyph = 10, .exit = anchorTable(600, 100)},
                       {.glyph = 11, .entry = anchorTable(20, 30)},
                       {.glyph = 12}});
}
constexpr int kDx = -1080;
constexpr int kDy = 70;

TEST(CursivePositioning, AddsToAPlainGlyphInBothDirections) {
    const Positioner font(3, joint());
    for (const bool rtl : {false, true}) {
        Positions positions = {moved(base(10), 1, 400, 2), moved(base(11), 5, 6, 7)};
        EXPECT_EQ(font.at(positions, 0, rtl), 0);
        EXPECT_EQ(moves(positions[0]), (Moves{1 + kDx, 400 - kDx, 2 + kDy, 0})) << rtl;
        EXPECT_EQ(moves(positions[1]), (Moves{5, 6, 7, 0})) << rtl;
    }
}

TEST(CursivePositioning, ReplacesThePositionOfAStrictGlyphFromLeftToRight) {
    const Positioner font(3, joint());
    const Positions positions = strict({moved(base(10), 1, 400, 2), moved(base(11), 5, 6, 7)});
    EXPECT_EQ(font.movesAt(positions, 0), (Moves{kDx, 400 + 1 - kDx, kDy, 0}));
}

TEST(CursivePositioning, FromRightToLeftBeforeAStrictGlyphStoresXAndFollowsItsY) {
    const Positioner font(3, joint());
    Positions positions = {moved(base(10), 1, 400, 2), strict(moved(base(11), 5, 6, 7))};
    EXPECT_EQ(font.at(positions, 0, true), 0);
    EXPECT_EQ(moves(positions[0]), (Moves{kDx, 400, 7 + kDy, 0})) << "X2 stays";
    EXPECT_EQ(moves(positions[1]), (Moves{5, 6, 7, 0}));
}

// Which glyphs are passed over is for the first glyph to say, and how it is joined for the second.
TEST(CursivePositioning, TheFirstGlyphSaysWhatIsPassedOverAndTheSecondHowItIsJoined) {
    const Positioner font(3, joint(), 0x08);
    // A mark with a width: the lookup flag passes over it, the plain mode does not.
    const Positions strictFirst = {strict(base(10)), mark(30, 50), base(11)};
    EXPECT_EQ(font.movesAt(strictFirst, 0, true), (Moves{kDx, 500 - kDx, kDy, 0}))
        << "attached: the second glyph is plain";
    Positions strictSecond = {base(10), mark(30, 50), strict(base(11))};
    EXPECT_EQ(font.at(strictSecond, 0, true), Positioner::kMiss);
    strictSecond[1] = mark(30);
    EXPECT_EQ(font.movesAt(strictSecond, 0, true), (Moves{kDx, 500, kDy, 0}))
        << "stored: the second glyph is strict";
}

TEST(CursivePositioning, APlainGlyphPassesOverWhatHasNoWidth) {
    const Positioner font(3, joint());
    Positions positions = {base(10), mark(30), base(12, 0), base(11)};
    EXPECT_EQ(font.at(positions, 0), 0) << "whatever its class";
    positions[2] = base(12);
    EXPECT_EQ(font.at(positions, 0), Positioner::kMiss);
}

TEST(CursivePositioning, AStrictGlyphPassesOverWhatTheLookupFlagSays) {
    const Positions run = {strict(base(10)), mark(30), base(11)};
    const Positioner passing(3, joint(), 0x08);
    EXPECT_EQ(passing.movesAt(run, 0)[0], kDx);
    const Positioner plain(3, joint());
    EXPECT_EQ(plain.movesAt(run, 0)[0], 0) << "width 0 does not count here";
    const Positioner all(3, joint(), 0x0A);
    EXPECT_EQ(all.movesAt(run, 0)[0], 0) << "nothing is left";
}

TEST(CursivePositioning, MissesAtTheEndAndWithoutAnAnchor) {
    const Positioner font(3, joint());
    const std::vector<Positions> misses = {
        {base(10)},                     // the last glyph
        {base(10), mark(30), mark(31)}, // nothing but marks behind it
        {base(11), base(11)},           // no exit
        {base(12), base(11)},           // neither
        {base(10), base(10)},           // no entry
        {base(10), base(19)},           // not covered
    };
    for (const Positions& run : misses) {
        Positions positions = run;
        for (const bool rtl : {false, true}) {
            EXPECT_EQ(font.at(positions, 0, rtl), Positioner::kMiss);
            EXPECT_EQ(positions, run);
        }
    }
}

/// A letter of a joined group, by the form that it takes there.
GlyphIDPosition letter(int gid, UDecompositionType form) {
    GlyphIDPosition position = strict(base(gid));
    position.setDecompositionType(form);
    return position;
}

TEST(CursiveRepair, LiftsTheGroupBeforeTheGlyphUpToTheEndOfTheOneBefore) {
    for (const UDecompositionType end : {U_DT_FINAL, U_DT_ISOLATED}) {
        const Positioner font(3, joint());
        Positions positions = {letter(14, U_DT_MEDIAL),  letter(14, end),
                               letter(14, U_DT_INITIAL), letter(14, U_DT_MEDIAL),
                               letter(10, U_DT_MEDIAL),  letter(11, U_DT_FINAL)};
        positions[3].setMoveY(5);
        EXPECT_EQ(font.at(positions, 4, true), 4);
        EXPECT_EQ(positions[0].getMoveY(), 0) << "beyond the end of the group";
        EXPECT_EQ(positions[1].getMoveY(), 0) << "the end itself";
        EXPECT_EQ(positions[2].getMoveY(), kDy);
        EXPECT_EQ(positions[3].getMoveY(), 5 + kDy);
        EXPECT_EQ(positions[4].getMoveY(), kDy);
        EXPECT_EQ(positions[5].getMoveY(), 0);
        EXPECT_EQ(positions[3].getMoveX1(), 0);
    }
}

TEST(CursiveRepair, StepsOverWhatHasNoWidthEvenAtTheEndOfAGroup) {
    const Positioner font(3, joint());
    GlyphIDPosition finalMark = strict(mark(30));
    finalMark.setDecompositionType(U_DT_FINAL);
    Positions positions = {letter(14, U_DT_MEDIAL), finalMark, letter(10, U_DT_MEDIAL),
                           letter(11, U_DT_MEDIAL)};
    EXPECT_EQ(font.at(positions, 2, true), 2);
    EXPECT_EQ(positions[0].getMoveY(), kDy) << "the mark ends nothing";
    EXPECT_EQ(positions[1].getMoveY(), 0) << "and is not lifted";
}

TEST(CursiveRepair, TakesTheMarksBetweenTheTwoAlong) {
    const Positioner font(3, joint(), 0x08);
    Positions positions = strict({base(10), moved(mark(30), 3, -3, 9), mark(31, 40), base(11)});
    EXPECT_EQ(font.at(positions, 0, true), 0);
    EXPECT_EQ(moves(positions[1]), (Moves{3 + kDx, -3 - kDx, 9, 0}));
    EXPECT_EQ(moves(positions[2]), (Moves{0, 40, 0, 0})) << "a mark with a width stays";
}

TEST(CursiveRepair, DoesNotHappenFromLeftToRightOrBeforeAPlainGlyph) {
    const Positioner font(3, joint(), 0x08);
    Positions positions = {strict(base(14)), strict(base(10)), strict(mark(30)), base(11)};
    EXPECT_EQ(font.at(positions, 1, true), 1);
    EXPECT_EQ(moves(positions[0]), (Moves{0, 500, 0, 0}));
    EXPECT_EQ(moves(positions[2]), (Moves{0, 0, 0, 0}));
    positions = strict(positions);
    EXPECT_EQ(font.at(positions, 1, false), 1);
    EXPECT_EQ(moves(positions[0]), (Moves{0, 500, 0, 0}));
    EXPECT_EQ(moves(positions[2]), (Moves{0, 0, 0, 0}));
}

// Attaching takes them back, the direct store does not.
TEST(CursivePositioning, OnlyAttachingTakesBackPositionsFromOutside) {
    const Positioner font(3, joint());
    const GlyphIDPosition outside = flagged(moved(base(10), 9, 8, 7), GLYPH_FLAG_OUTSIDE_GPOS);
    EXPECT_EQ(font.movesAt({outside, base(11)}, 0, true), (Moves{kDx, 500 - kDx, kDy, 0}));
    Positions stored = {outside, strict(base(11))};
    EXPECT_EQ(font.at(stored, 0, true), 0);
    EXPECT_EQ(moves(stored[0]), (Moves{kDx, 8, kDy, 0}));
    EXPECT_EQ(stored[0].getFlag(), GLYPH_FLAG_OUTSIDE_GPOS);
}

TEST(CursivePositioning, SumsKeepTheirLow16Bits) {
    const Positioner font(3, cursivePos({{.glyph = 10,
                                          .entry = anchorTable(-32768, -32768),
                                          .exit = anchorTable(32767, 32767)}}));
    // dx is -32768 - 32767 - 32767, dy 65535.
    Positions positions = {base(10), strict(moved(base(10, 32767), 0, 0, 32767))};
    EXPECT_EQ(font.at(positions, 0, true), 0);
    EXPECT_EQ(moves(positions[0]), (Moves{-32766, 500, 32766, 0}));
    positions = strict({moved(base(10), 0, 0, 32767), base(10), mark(30), base(10, 32767)});
    positions[2].setMoveX1(-32768);
    const Positioner passing(3,
                             cursivePos({{.glyph = 10,
                                          .entry = anchorTable(-32768, -32768),
                                          .exit = anchorTable(32767, 32767)}}),
                             8);
    EXPECT_EQ(passing.at(positions, 1, true), 1);
    EXPECT_EQ(positions[0].getMoveY(), 32766);
    EXPECT_EQ(moves(positions[2]), (Moves{2, 32766, 0, 0}));
}

TEST(CursivePositioning, JoinsAWholeRun) {
    const Bytes joined =
        cursivePos({{.glyph = 10, .entry = anchorTable(0, 0), .exit = anchorTable(500, 40)}});
    Positions positions = strict({base(10), base(10), base(10)});
    EXPECT_EQ(Positioner(3, joined).everywhere(positions, true), 0);
    EXPECT_EQ(positions[0].getMoveY(), 80);
    EXPECT_EQ(positions[1].getMoveY(), 40);
    EXPECT_EQ(positions[2].getMoveY(), 0);
}

} // namespace
} // namespace KWFontService_NS
