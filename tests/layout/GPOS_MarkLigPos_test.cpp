#include "layout/GPOS_MarkLigPos.h"

#include "layout/GposFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

// Mark 30 is held at (10, 20); ligature 20 takes it at (100, 700), (200, 710) and (300, 720).
Bytes components() {
    return markLigPos({{.glyph = 30, .anchor = anchorTable(10, 20)}},
                      {{.glyph = 20,
                        .components = {{anchorTable(100, 700)},
                                       {anchorTable(200, 710)},
                                       {anchorTable(300, 720)}}}},
                      1);
}

/// A ligature at X1 7, X2 893, Y 11, and the mark of a component.
Positions markedLigature(int component, unsigned short ligatureFlag = 0) {
    Positions run = {flagged(moved(ligature(20), 7, 893, 11), ligatureFlag), mark(30)};
    run[1].setSkipInfo(component);
    return run;
}

TEST(MarkToLigature, WithoutComponentInfoTheFirstComponentTakesAllMarks) {
    const Positioner font(5, components());
    for (const int component : {0, 1, 2, 3}) {
        EXPECT_EQ(font.movesAt(markedLigature(component), 1, true),
                  (Moves{100 - 10, -90, 20 - 700, 0}));
        EXPECT_EQ(font.movesAt(markedLigature(component), 1),
                  (Moves{100 - 893 - 10, 803, 700 - 20, 0}))
            << "from left to right";
    }
}

TEST(MarkToLigature, WithComponentInfoTheMarkNamesItsComponent) {
    const Positioner font(5, components());
    for (const int component : {1, 2, 3}) {
        const int lx = 100 * component;
        const int ly = 690 + 10 * component;
        const Positions run = markedLigature(component, GLYPH_FLAG_COMPONENT_INFO);
        EXPECT_EQ(font.movesAt(run, 1, true), (Moves{lx + 7 - 10, -(lx - 3), 20 - ly, 0}));
        const int x = lx - 893 - 10;
        EXPECT_EQ(font.movesAt(run, 1), (Moves{x, -x, ly - 20, 0})) << "from left to right";
    }
}

// In mark to base, and from right to left, it is the mark's less the other's.
TEST(MarkToLigature, FromLeftToRightTheSignOfYIsTheReverse) {
    const Positioner font(5, components());
    EXPECT_EQ(font.movesAt(markedLigature(1), 1)[2], 680);
    EXPECT_EQ(font.movesAt(markedLigature(1), 1, true)[2], -680);
}

TEST(MarkToLigature, AComponentThatDoesNotExistIsTheLast) {
    const Positioner font(5, components());
    const Moves last = font.movesAt(markedLigature(3, GLYPH_FLAG_COMPONENT_INFO), 1);
    for (const int component : {0, 4, -1, 32767})
        EXPECT_EQ(font.movesAt(markedLigature(component, GLYPH_FLAG_COMPONENT_INFO), 1), last)
            << component;
}

TEST(MarkToLigature, StrictModeDoesNotChangeTheFormulas) {
    const Positioner font(5, components());
    for (const unsigned short info : {std::uint16_t{0}, std::uint16_t{GLYPH_FLAG_COMPONENT_INFO}}) {
        for (const bool rtl : {false, true}) {
            const Positions plain = markedLigature(2, info);
            EXPECT_EQ(font.movesAt(strict(plain), 1, rtl), font.movesAt(plain, 1, rtl));
        }
    }
}

TEST(MarkToLigature, AStrictMarkIsReplacedAndAPlainOneAddedTo) {
    const Positioner font(5, components());
    Positions run = markedLigature(1);
    run[1] = moved(run[1], 1, 2, 3);
    EXPECT_EQ(font.movesAt(run, 1, true), (Moves{91, -88, -677, 0}));
    EXPECT_EQ(font.movesAt(strict(run), 1, true), (Moves{90, 2 - 89, -680, 0}));
    run[1].setFlag(GLYPH_FLAG_OUTSIDE_GPOS);
    EXPECT_EQ(font.movesAt(run, 1, true), (Moves{90, -90, -680, 0}));
}

TEST(MarkToLigature, WithComponentInfoAllMarksAreSteppedOver) {
    const Positioner font(5, components());
    // The glyph right before the mark says so, here another mark.
    Positions run = {ligature(20), mark(31), flagged(mark(32), GLYPH_FLAG_COMPONENT_INFO),
                     mark(30)};
    run[3].setSkipInfo(2);
    EXPECT_EQ(font.movesAt(run, 3, true)[0], 200 - 10);
    run[2] = mark(32);
    EXPECT_EQ(font.movesAt(run, 3, true)[0], 0) << "32 is what it would go on";
}

TEST(MarkToLigature, WithoutComponentInfoTheLookupFlagSaysWhatIsPassedOver) {
    const Positions run = {flagged(ligature(20), GLYPH_FLAG_COMPONENT_INFO), mark(31), mark(30)};
    const Positioner passing(5, components(), 0x08);
    EXPECT_EQ(passing.movesAt(run, 2, true)[0], 90) << "also without strict mode";
    const Positioner plain(5, components());
    EXPECT_EQ(plain.movesAt(run, 2, true)[0], 0);
}

TEST(MarkToLigature, WithComponentInfoTheLookupFlagDoesNotMatter) {
    const Positioner font(5, components(), 0x04);
    EXPECT_EQ(font.movesAt(markedLigature(1, GLYPH_FLAG_COMPONENT_INFO), 1, true)[0], 97);
    EXPECT_EQ(font.movesAt(markedLigature(1), 1, true)[0], 0) << "the ligature is passed over";
}

TEST(MarkToLigature, MissesWithoutALigature) {
    const Positioner font(5, components(), 0x08);
    const std::vector<Positions> misses = {
        {mark(30)},                                                         // nothing before it
        {mark(31), mark(30)},                                               // marks alone
        {mark(31), flagged(mark(31), GLYPH_FLAG_COMPONENT_INFO), mark(30)}, // marks alone
        {ligature(20), ligature(21), mark(30)},                             // not covered
        {ligature(20), ligature(20)},                                       // no mark
    };
    for (const Positions& run : misses) {
        for (const bool rtl : {false, true}) {
            Positions positions = run;
            EXPECT_EQ(font.at(positions, static_cast<int>(run.size()) - 1, rtl), Positioner::kMiss);
            EXPECT_EQ(positions, run);
        }
    }
}

TEST(MarkToLigature, ANullAnchorIsNoAttachment) {
    const std::vector<MarkBytes> marks = {
        {.glyph = 30, .anchor = anchorTable(1, 2)},
        {.glyph = 31, .markClass = 1, .anchor = anchorTable(1, 2)},
        {.glyph = 32, .markClass = 2, .anchor = anchorTable(1, 2)},
        {.glyph = 33}};
    const Positioner font(
        5,
        markLigPos(
            marks,
            {{.glyph = 20, .components = {{anchorTable(3, 4), {}}, {{}, {}}}}, {.glyph = 21}}, 2));
    const auto applies = [&](int ligatureGid, int markGid, int component) {
        Positions positions = {flagged(ligature(ligatureGid), GLYPH_FLAG_COMPONENT_INFO),
                               mark(markGid)};
        positions[1].setSkipInfo(component);
        const Positions before = positions;
        const bool applied = font.at(positions, 1) == 1;
        EXPECT_EQ(positions == before, !applied);
        return applied;
    };
    EXPECT_TRUE(applies(20, 30, 1));
    EXPECT_FALSE(applies(20, 30, 2)) << "the component has none";
    EXPECT_FALSE(applies(20, 31, 1)) << "none for this class";
    EXPECT_FALSE(applies(20, 32, 1)) << "no such class";
    EXPECT_FALSE(applies(20, 33, 1)) << "the mark has none";
    EXPECT_FALSE(applies(21, 30, 0)) << "a ligature without components";
    Positions plain = {ligature(21), mark(30)};
    EXPECT_EQ(font.at(plain, 1), Positioner::kMiss);
}

} // namespace
} // namespace KWFontService_NS
