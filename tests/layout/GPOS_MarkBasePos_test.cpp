#include "layout/GPOS_MarkBasePos.h"

#include "layout/GposFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

// Mark 30 is held at (10, 20); base 10 takes it at (250, 700).
Bytes accent() {
    return markBasePos({{.glyph = 30, .anchor = anchorTable(10, 20)}},
                       {{.glyph = 10, .anchors = {anchorTable(250, 700)}}}, 1);
}
constexpr int kPlainY = 20 - 700;

/// A base of width 510 at X1 7, X2 493, Y 11, a mark at X1 3, X2 4, and the mark in question.
Positions stack(const GlyphIDPosition& last) {
    return {moved(base(10, 510), 7, 493, 11), moved(mark(31), 3, 4, 5), last};
}
constexpr int kAdvance = 7 + 493 + 3 + 4;

TEST(MarkToBase, OnAPlainBaseFromLeftToRight) {
    const Positioner font(4, accent());
    EXPECT_EQ(font.movesAt(stack(mark(30)), 2),
              (Moves{250 - 10 - 510, -(250 - 10 - 510), kPlainY, 0}));
}

TEST(MarkToBase, OnAPlainBaseFromRightToLeft) {
    const Positioner font(4, accent());
    EXPECT_EQ(font.movesAt(stack(mark(30)), 2, true), (Moves{240, -240, kPlainY, 0}));
}

TEST(MarkToBase, OnAStrictBaseFromLeftToRight) {
    const Positioner font(4, accent());
    Positions run = stack(mark(30));
    run[0] = strict(run[0]);
    const int x = 7 - 10 - kAdvance + 250;
    EXPECT_EQ(font.movesAt(run, 2), (Moves{x, -x, kPlainY, 0})) << "the base's Y does not count";
}

TEST(MarkToBase, OnAStrictBaseFromRightToLeft) {
    const Positioner font(4, accent());
    Positions run = stack(mark(30));
    run[0] = strict(run[0]);
    const int x = 250 - 493 - 10 + kAdvance;
    EXPECT_EQ(font.movesAt(run, 2, true), (Moves{x, -x, 20 + 11 - 700, 0}));
}

TEST(MarkToBase, TheMarkSaysWhetherItsPositionIsAddedOrReplaced) {
    const Positioner font(4, accent());
    const GlyphIDPosition before = moved(mark(30, 100), 1, 2, 3);
    EXPECT_EQ(font.movesAt(stack(before), 2, true), (Moves{241, -238, kPlainY + 3, 0}));
    EXPECT_EQ(font.movesAt(stack(strict(before)), 2, true),
              (Moves{240, 2 - (240 - 1), kPlainY, 0}));
    const GlyphIDPosition outside = flagged(before, GLYPH_FLAG_OUTSIDE_GPOS);
    EXPECT_EQ(font.movesAt(stack(outside), 2, true), (Moves{240, 100 - 240, kPlainY, 0}));
}

TEST(MarkToBase, TheBaseKeepsPositionsFromOutside) {
    const Positioner font(4, accent());
    Positions run = stack(mark(30));
    run[0] = flagged(strict(run[0]), GLYPH_FLAG_OUTSIDE_GPOS);
    const Moves base = moves(run[0]);
    EXPECT_EQ(font.at(run, 2, true), 2);
    EXPECT_EQ(moves(run[0]), base);
    EXPECT_EQ(moves(run[2])[0], 250 - 493 - 10 + kAdvance);
}

TEST(MarkToBase, MissesWithoutABase) {
    const Positioner font(4, accent());
    const std::vector<Positions> misses = {
        {mark(30)},                        // nothing before it
        {mark(31, 9), mark(31), mark(30)}, // nothing but marks
        {base(10), base(11), mark(30)},    // the next base is not covered
        {base(10), base(10)},              // no mark
    };
    for (const Positions& run : misses) {
        for (const bool rtl : {false, true}) {
            Positions positions = run;
            EXPECT_EQ(font.at(positions, static_cast<int>(run.size()) - 1, rtl), Positioner::kMiss);
            EXPECT_EQ(positions, run);
        }
    }
}

TEST(MarkToBase, StepsOverMarksAndTakesEveryOtherClass) {
    for (const GlyphClassDef glyphClass :
         {GlyphClassDef::Ignored, GlyphClassDef::Unknown, GlyphClassDef::None, GlyphClassDef::Base,
          GlyphClassDef::Ligature, GlyphClassDef::Component}) {
        const Positioner font(4, accent());
        Positions positions = {positioned(10, glyphClass, 500), mark(31, 20), mark(30)};
        EXPECT_EQ(font.at(positions, 2), 2) << static_cast<int>(glyphClass);
    }
}

TEST(MarkToBase, AGlyphWithoutWidthIsNoBaseUnlessTheMarkSaysSo) {
    const Positioner font(4, accent());
    const Positions run = {base(11), base(10, 0), mark(30)};
    const auto isBase = [&](const GlyphIDPosition& last, bool rtl) {
        Positions positions = {run[0], run[1], last};
        return font.at(positions, 2, rtl) == 2;
    };
    for (const bool rtl : {false, true}) {
        EXPECT_FALSE(isBase(mark(30), rtl)) << "11 is the base, and not covered";
        EXPECT_TRUE(isBase(flagged(mark(30), GLYPH_FLAG_ZERO_WIDTH_BASE), rtl));
    }
    EXPECT_FALSE(isBase(strict(mark(30)), false));
    EXPECT_TRUE(isBase(strict(mark(30)), true)) << "strict, from right to left";
}

TEST(MarkToBase, AComponentIsNoBaseWhereTheMarkSaysSo) {
    const Positioner font(4, accent());
    const GlyphIDPosition skipping = flagged(mark(30), GLYPH_FLAG_SKIP_COMPONENT_BASE);
    const auto isBase = [&](GlyphClassDef glyphClass, int compInfo, const GlyphIDPosition& last) {
        Positions positions = {base(11), positioned(10, glyphClass, 500), last};
        positions[1].setCompInfo(compInfo);
        return font.at(positions, 2) == 2;
    };
    for (const GlyphClassDef glyphClass :
         {GlyphClassDef::Base, GlyphClassDef::Ligature, GlyphClassDef::Component}) {
        EXPECT_FALSE(isBase(glyphClass, 1, skipping));
        EXPECT_FALSE(isBase(glyphClass, 2, skipping));
        EXPECT_TRUE(isBase(glyphClass, 0, skipping));
        EXPECT_TRUE(isBase(glyphClass, -1, skipping));
        EXPECT_TRUE(isBase(glyphClass, 1, mark(30)));
    }
    EXPECT_TRUE(isBase(GlyphClassDef::None, 1, skipping)) << "only what has a class is asked";
}

// What the lookup flag passes over is not asked here.
TEST(MarkToBase, TheLookupFlagDoesNotMatter) {
    const Positioner font(4, accent(), 0x02);
    Positions positions = strict({base(10), mark(30)});
    EXPECT_EQ(font.at(positions, 1, true), 1);
}

TEST(MarkToBase, ANullAnchorIsNoAttachment) {
    expectNullAnchorsAttachNothing(4, base(10));
}

TEST(MarkToBase, SumsKeepTheirLow16Bits) {
    const Positioner font(4,
                          markBasePos({{.glyph = 30, .anchor = anchorTable(-32768, -32768)}},
                                      {{.glyph = 10, .anchors = {anchorTable(32767, 32767)}}}, 1));
    // 32767 + 32768 - 32767; -32768 - 32767.
    EXPECT_EQ(font.movesAt({base(10, 32767), mark(30)}, 1), (Moves{32768 - 65536, -32768, 1, 0}));
    // Marks that go on by 65535 each, so that their sum leaves 32 bits.
    Positions run(70000, moved(mark(31), 32767, 32767, 0));
    run.front() = strict(moved(base(10), 0, 0, 0));
    run.back() = mark(30);
    const int marks = 69998;
    const auto advance = static_cast<std::int16_t>(static_cast<std::uint16_t>(marks * 65534LL));
    EXPECT_EQ(font.movesAt(run, marks + 1, true)[0],
              static_cast<std::int16_t>(32767 + 32768 + advance));
}

} // namespace
} // namespace KWFontService_NS
