// Positioning that is told lies, or far too much to do.

#include "layout/GposFixture.h"

#include "common/KWLimits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const std::vector<MarkBytes> kMarks = {{.glyph = 30, .anchor = anchorTable(1, 2)}};

struct Sample {
    int lookupType;
    Bytes subtable;
    int flag = 0;
};
/// One of every class, for bases 10, ligature 20 and mark 30.
std::vector<Sample> samples() {
    const Bytes classes = classDefFormat2({{10, 10, 1}, {20, 20, 1}});
    const Records records = {{0, 0}};
    return {
        {1, singlePosFormat1({10, 20, 30}, 0x0F, {1, 2, 3, 4})},
        {2, pairPosFormat1(4, 4, {{10, {{10, {1}, {2}}}}})},
        {2, pairPosFormat2({10}, 4, 4, classes, classes, 2, 2, {1, 2, 3, 4, 5, 6, 7, 8})},
        {3, cursivePos({{.glyph = 10, .entry = anchorTable(1, 2), .exit = anchorTable(3, 4)}})},
        {4, markBasePos(kMarks, {{.glyph = 10, .anchors = {anchorTable(3, 4)}}}, 1)},
        {5, markLigPos(kMarks, {{.glyph = 20, .components = {{anchorTable(3, 4)}}}}, 1)},
        {6, markBasePos(kMarks, {{.glyph = 30, .anchors = {anchorTable(3, 4)}}}, 1)},
        {7, contextFormat2({10}, classes, {{}, {{.input = {1}, .records = records}}})},
        {8, chainContextFormat3({}, {{10}, {10}}, {}, records)},
    };
}

TEST(HostilePositioning, EveryClassTakesEveryIndexOfEveryLength) {
    for (const Sample& sample : samples()) {
        const Positioner font(sample.lookupType, sample.subtable);
        for (std::size_t length = 0; length < 4; ++length) {
            for (const GlyphIDPosition& glyph : {base(10), ligature(20), mark(30)}) {
                Positions positions(length, glyph);
                for (int index = -2; index < 6; ++index) {
                    const bool inside = index >= 0 && static_cast<std::size_t>(index) < length;
                    for (const bool rtl : {false, true}) {
                        Positions strictOnes = strict(positions);
                        EXPECT_LT(font.at(positions, index, rtl), static_cast<int>(length));
                        EXPECT_LT(font.at(strictOnes, index, rtl), static_cast<int>(length));
                        if (!inside) {
                            EXPECT_EQ(font.at(positions, index, rtl), Positioner::kMiss);
                            EXPECT_FALSE(font.byFeature(positions, index, rtl));
                        }
                    }
                }
            }
        }
    }
}

TEST(HostilePositioning, NullAnchorsEverywhereAttachNothing) {
    const std::vector<MarkBytes> marks = {{.glyph = 30}};
    const std::vector<Sample> all = {
        {3, cursivePos({{.glyph = 10}})},
        {4, markBasePos(marks, {{.glyph = 10, .anchors = {{}}}}, 1)},
        {4, markBasePos(kMarks, {{.glyph = 10, .anchors = {{}}}}, 1)},
        {5, markLigPos(marks, {{.glyph = 10, .components = {{{}}}}}, 1)},
        {5, markLigPos(kMarks, {{.glyph = 10, .components = {{{}}}}}, 1)},
        {6, markBasePos(marks, {{.glyph = 30, .anchors = {{}}}}, 1)},
        {6, markBasePos(kMarks, {{.glyph = 30, .anchors = {{}}}}, 1)},
    };
    const Positions run = {base(10), mark(30), base(10), mark(30), mark(30), base(10)};
    for (const Sample& sample : all) {
        const Positioner font(sample.lookupType, sample.subtable);
        for (const bool rtl : {false, true}) {
            Positions positions = run;
            EXPECT_EQ(font.everywhere(positions, rtl), -1);
            EXPECT_EQ(positions, run);
            positions = strict(run);
            EXPECT_EQ(font.everywhere(positions, rtl), -1);
            EXPECT_EQ(positions, strict(run));
        }
    }
}

TEST(HostilePositioning, ALookupIndexOutsideTheListIsPassedBy) {
    for (const int lookup : {1, 2, 0x7FFF, 0xFFFF}) {
        const Positioner font(
            8, chainContextFormat3({}, {{10}}, {}, {{0, static_cast<std::uint16_t>(lookup)}}));
        Positions positions = {base(10)};
        EXPECT_EQ(font.everywhere(positions), -1) << lookup;
        EXPECT_EQ(positions, Positions{base(10)});
    }
}

// --- a million glyphs ---------------------------------------------------------------------------

constexpr std::size_t kMillion = 1000000;

TEST(HostilePositioning, AMillionMarksGoOnTheBasesBeforeThem) {
    const std::vector<Sample> all = samples();
    const Positioner font(all[4].lookupType, all[4].subtable);
    Positions positions(kMillion, mark(30));
    for (std::size_t i = 0; i < kMillion; i += 4)
        positions[i] = base(10);
    EXPECT_EQ(font.everywhere(positions, true), 1);
    EXPECT_EQ(moves(positions[kMillion - 1]), (Moves{2, -2, -2, 0}));
}

TEST(HostilePositioning, AMillionGlyphsAreKerned) {
    const Positioner font(2, pairPosFormat1(4, 0, {{10, {{10, {-5}, {}}}}}));
    Positions positions(kMillion, base(10));
    EXPECT_EQ(font.everywhere(positions), 0);
    EXPECT_EQ(std::ranges::count(positions, 495, &GlyphIDPosition::getMoveX2),
              static_cast<std::ptrdiff_t>(kMillion - 1));
}

TEST(HostilePositioning, AMillionGlyphsAreMatchedWithOneRunOfThem) {
    const Positioner font(
        {.lookups = {lookupTable(8, {chainContextFormat3({}, {{10}, {10}}, {}, {{0, 1}})}),
                     lookupTable(1, {singlePosFormat1({10}, 0x04, {1})})}});
    Positions positions(kMillion / 5, base(10));
    EXPECT_EQ(font.everywhere(positions), 0);
    EXPECT_EQ(positions.front().getMoveX2(), 501);
    EXPECT_EQ(positions[positions.size() - 2].getMoveX2(), 501);
    EXPECT_EQ(positions.back().getMoveX2(), 500);
}

/// Applies a lookup to a run that each glyph would walk along to its end or beginning. In the end
/// the budget is used up, and the rest of the lookup misses.
void expectAnEnd(const Sample& sample, const Positions& run, bool rtl) {
    const Positioner font(sample.lookupType, sample.subtable, sample.flag);
    Positions positions = run;
    EXPECT_EQ(font.everywhere(positions, rtl), -1);
    EXPECT_EQ(positions, run);
}

TEST(HostilePositioning, WalksAlongARunOfMarksEnd) {
    constexpr std::size_t kMany = 4000;
    static_assert(kMany * kMany / 2 >
                  KWCommonNS::kLayoutFreeSteps + KWCommonNS::kLayoutStepsOfAGlyph * kMany);
    const std::vector<Sample> all = samples();
    const Positions marks(kMany, mark(30));
    expectAnEnd(all[4], marks, false);
    expectAnEnd(all[4], strict(marks), true);
    expectAnEnd({5, all[5].subtable, 0x08}, marks, true);
    expectAnEnd({5, all[5].subtable},
                Positions(kMany, flagged(mark(30), GLYPH_FLAG_COMPONENT_INFO)), false);
    expectAnEnd({6, all[6].subtable, 0x08}, strict(marks), true);
    const Positions bases(kMany, strict(base(10)));
    expectAnEnd({2, all[1].subtable, 0x02}, bases, false);
    expectAnEnd({2, all[2].subtable, 0x02}, bases, true);
    expectAnEnd({3, all[3].subtable, 0x02}, bases, true);
    expectAnEnd({3, all[3].subtable}, Positions(kMany, base(10, 0)), false);
}

TEST(HostilePositioning, SubtablesThatAGlyphRulesOutArePaidFor) {
    // Every glyph of the run is a new question to all of them, and only the last one is followed by
    // what they want.
    constexpr std::uint16_t kGlyphs = 200;
    std::vector<std::uint16_t> starts(kGlyphs);
    std::iota(starts.begin(), starts.end(), std::uint16_t{1});
    const Positioner font({.lookups = {lookupOfOneContext(8, 1, kGlyphs, 999),
                                       lookupTable(1, {singlePosFormat1({kGlyphs}, 0x04, {1})})}});
    Positions two = {base(kGlyphs), base(999)};
    EXPECT_EQ(font.everywhere(two), 0);
    Positions all;
    for (const std::uint16_t gid : starts)
        all.push_back(base(gid));
    all.push_back(base(999));
    EXPECT_EQ(font.everywhere(all), -1);
}

TEST(HostilePositioning, AJoinedGroupWithoutEndIsLiftedUntilTheBudgetEnds) {
    constexpr std::size_t kMany = 8000;
    const Bytes joint =
        cursivePos({{.glyph = 10, .entry = anchorTable(0, 0), .exit = anchorTable(500, 1)}});
    Positions positions(kMany, strict(base(10)));
    const Positioner font(3, joint);
    EXPECT_EQ(font.everywhere(positions, true), 0);
    // Those that were still joined form a stair down to 0; nothing is lifted in part.
    const int height = positions[0].getMoveY();
    ASSERT_GT(height, 1000);
    ASSERT_LT(height, static_cast<int>(kMany) - 1);
    for (int i = 0; i < static_cast<int>(kMany); ++i)
        ASSERT_EQ(positions[static_cast<std::size_t>(i)].getMoveY(), std::max(height - i, 0)) << i;
}

TEST(HostilePositioning, AnUnsortedPairSetIsPaidForByItsLength) {
    // The last of 20000 pairs, searched from the first for each of 8000 glyphs.
    constexpr int kPairs = 20000;
    std::vector<PairBytes> pairs;
    pairs.reserve(kPairs);
    for (int i = 0; i < kPairs; ++i)
        pairs.push_back({.second = static_cast<std::uint16_t>(kPairs - i + 9), .value1 = {-5}});
    const Positioner font(2, pairPosFormat1(4, 0, {{10, pairs}}));
    Positions positions(8000, base(10));
    EXPECT_EQ(font.everywhere(positions), 0);
    EXPECT_EQ(positions[1000].getMoveX2(), 495);
    EXPECT_EQ(positions[7998].getMoveX2(), 500);
}

} // namespace
} // namespace KWFontService_NS
