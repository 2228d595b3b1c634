#include "layout/GPOS_PairPos.h"

#include "layout/GposFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(PairPos, Format1HasPairsOfGlyphs) {
    const auto one = OneSubTable::gpos(
        2, pairPosFormat1(0x04, 0x01, {{10, {{20, {-50}, {3}}, {22, {-60}, {4}}}}, {11, {}}}));
    const auto* table = one.as<GPOS_PairPosFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 2);
    EXPECT_EQ(table->valueFormat1(), 4U);
    EXPECT_EQ(table->valueFormat2(), 1U);
    EXPECT_TRUE(table->covers(11));
    EXPECT_FALSE(table->covers(12));
    const auto pair = table->pair(10, 22);
    ASSERT_TRUE(pair);
    EXPECT_EQ(pair->first.xAdvance(), -60);
    EXPECT_EQ(pair->second.xPlacement(), 4);
    EXPECT_EQ(table->pair(10, 20)->first.xAdvance(), -50);
    EXPECT_FALSE(table->pair(10, 21));
    EXPECT_FALSE(table->pair(11, 20));
    EXPECT_FALSE(table->pair(12, 20));
}

TEST(PairPos, Format1TakesTheFirstPairInTheOrderOfTheFile) {
    const auto one = OneSubTable::gpos(
        2, pairPosFormat1(0x04, 0,
                          {{10, {{22, {1}}, {20, {2}}, {22, {3}}, {21, {4}}}}, {11, {{5, {6}}}}}));
    const auto* table = one.as<GPOS_PairPosFormat1>();
    EXPECT_EQ(table->pair(10, 22)->first.xAdvance(), 1);
    EXPECT_EQ(table->pair(10, 20)->first.xAdvance(), 2);
    EXPECT_EQ(table->pair(10, 21)->first.xAdvance(), 4);
    EXPECT_EQ(table->pair(11, 5)->first.xAdvance(), 6);
    EXPECT_FALSE(table->pair(10, 23));
    const auto equal =
        OneSubTable::gpos(2, pairPosFormat1(0x04, 0, {{10, {{22, {1}}, {22, {2}}}}}));
    EXPECT_EQ(equal.as<GPOS_PairPosFormat1>()->pair(10, 22)->first.xAdvance(), 1);
}

TEST(PairPos, Format1FindsEveryPairOfALongSet) {
    std::vector<PairBytes> pairs;
    pairs.reserve(200);
    for (int i = 0; i < 200; ++i)
        pairs.push_back({.second = static_cast<std::uint16_t>(3 * i), .value1 = {i}});
    const auto one = OneSubTable::gpos(2, pairPosFormat1(0x04, 0, {{10, pairs}}));
    const auto* table = one.as<GPOS_PairPosFormat1>();
    for (int i = 0; i < 610; ++i) {
        const auto pair = table->pair(10, static_cast<unsigned short>(i));
        ASSERT_EQ(pair.has_value(), i % 3 == 0 && i < 600) << i;
        if (pair) {
            EXPECT_EQ(pair->first.xAdvance(), i / 3);
        }
    }
}

TEST(PairPos, DevicesOfAPairCountFromItsPairSet) {
    const Bytes device = deviceTable(8, 8, 3, {0x0900});
    const Bytes set = OffsetTable().u16(1).u16(20).offset(device).build();
    const auto one = OneSubTable::gpos(
        2,
        OffsetTable().u16(1).offset(coverageTable({10})).u16(0x40).u16(0).counted({set}).build());
    const auto pair = one.as<GPOS_PairPosFormat1>()->pair(10, 20);
    ASSERT_TRUE(pair);
    EXPECT_FALSE(pair->first.applies());
    EXPECT_EQ(pair->first.device(GPOS_ValueRecord::kXAdvanceDevice).deltas,
              (std::vector<std::int8_t>{9}));
}

TEST(PairPos, Format1OfASetThatIsCutOffTheWholePairsCount) {
    Bytes bytes = pairPosFormat1(0x04, 0, {{10, {{20, {1}}, {21, {2}}}}});
    bytes.truncate(bytes.size() - 1);
    const auto one = OneSubTable::gpos(2, bytes);
    EXPECT_TRUE(one.as<GPOS_PairPosFormat1>()->pair(10, 20));
    EXPECT_FALSE(one.as<GPOS_PairPosFormat1>()->pair(10, 21));
}

TEST(PairPos, Format2HasPairsOfClasses) {
    const auto one =
        OneSubTable::gpos(2, pairPosFormat2({10, 11}, 0x04, 0x02, classDefFormat2({{10, 10, 1}}),
                                            classDefFormat2({{20, 21, 1}, {22, 22, 2}}), 2, 3,
                                            {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    const auto* table = one.as<GPOS_PairPosFormat2>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 2);
    EXPECT_EQ(table->valueFormat1(), 4U);
    EXPECT_EQ(table->valueFormat2(), 2U);
    EXPECT_TRUE(table->covers(11));
    EXPECT_FALSE(table->covers(20));
    EXPECT_EQ(table->class1Of(10), 1);
    EXPECT_EQ(table->class1Of(11), -1) << "not class 0: that is for the caller to say";
    EXPECT_EQ(table->class2Of(22), 2);
    EXPECT_EQ(table->class2Of(10), -1);
    EXPECT_EQ(table->pair(0, 0)->first.xAdvance(), 1);
    EXPECT_EQ(table->pair(0, 0)->second.yPlacement(), 2);
    EXPECT_EQ(table->pair(1, 2)->first.xAdvance(), 11);
    EXPECT_EQ(table->pair(1, 2)->second.yPlacement(), 12);
    EXPECT_FALSE(table->pair(2, 0));
    EXPECT_FALSE(table->pair(0, 3)) << "no such class, and not the next row";
    EXPECT_FALSE(table->pair(-1, 0));
    EXPECT_FALSE(table->pair(0, -1));
}

TEST(PairPos, Format2OfAMatrixThatIsCutOffTheWholePairsCount) {
    const auto one = OneSubTable::gpos(2, Bytes()
                                              .u16s({2, 24, 4, 0, 0, 0, 0xFFFF, 0xFFFF})
                                              .u16s({7, 8, 9, 10})
                                              .bytes(coverageTable({10})));
    const auto* table = one.as<GPOS_PairPosFormat2>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->pair(0, 1)->first.xAdvance(), 8);
    EXPECT_FALSE(table->pair(1, 0));
    EXPECT_FALSE(table->pair(0xFFFE, 0xFFFE));
}

// Only strict glyphs, which take -1 for class 0, meet a value then.
TEST(PairPos, ClassDefinitionsOfFormat1GiveNoGlyphAClass) {
    const auto one =
        OneSubTable::gpos(2, pairPosFormat2({10}, 4, 0, classDefFormat1(10, {1}),
                                            classDefFormat1(20, {1}), 2, 2, {1, 2, 3, 4}));
    EXPECT_EQ(one.as<GPOS_PairPosFormat2>()->class1Of(10), -1);
    EXPECT_EQ(one.as<GPOS_PairPosFormat2>()->class2Of(20), -1);
}

// --- positioning --------------------------------------------------------------------------------

constexpr int kXAdvance = 0x04;
constexpr int kIgnoreMarkGlyphs = 0x08;

/// 10 before 11 comes nearer by 50.
Bytes kernPair() {
    return pairPosFormat1(kXAdvance, 0, {{10, {{11, {-50}, {}}}}});
}
/// The same, and 11 moves down by 7.
Bytes kernPairOfTwoValues() {
    return pairPosFormat1(kXAdvance, 0x02, {{10, {{11, {-50}, {-7}}}}});
}

TEST(PairPositioning, MovesBothGlyphs) {
    const Positioner font(2, kernPairOfTwoValues());
    Positions positions = {base(10), base(11), base(12)};
    EXPECT_EQ(font.at(positions, 0), 0);
    EXPECT_EQ(moves(positions[0]), (Moves{0, 450, 0, 0}));
    EXPECT_EQ(moves(positions[1]), (Moves{0, 500, 7, 0}));
    EXPECT_EQ(moves(positions[2]), (Moves{0, 500, 0, 0}));
}

TEST(PairPositioning, WorksForTheLastTwoGlyphsAndMissesAtTheLast) {
    const Positioner font(2, kernPair());
    EXPECT_EQ(font.movesAt({base(12), base(10), base(11)}, 1)[1], 450);
    Positions last = {base(11), base(10)};
    EXPECT_EQ(font.at(last, 1), Positioner::kMiss);
    EXPECT_EQ(last, (Positions{base(11), base(10)}));
}

TEST(PairPositioning, APairThatIsNotListedMisses) {
    const Positioner font(2, kernPair());
    EXPECT_EQ(font.movesAt({base(10), base(12)}, 0)[1], 500);
    EXPECT_EQ(font.movesAt({base(11), base(11)}, 0)[1], 500);
}

TEST(PairPositioning, WithoutStrictModeTheIndexNeverMoves) {
    const Positioner font(2, kernPairOfTwoValues());
    for (const bool rtl : {false, true}) {
        Positions positions = {base(10), base(11)};
        EXPECT_EQ(font.at(positions, 0, rtl), 0) << rtl;
    }
}

TEST(PairPositioning, WithoutStrictModeAMarkBetweenTheGlyphsBlocksThePair) {
    const Positioner font(2, kernPair(), kIgnoreMarkGlyphs);
    EXPECT_EQ(font.movesAt({base(10), mark(30), base(11)}, 0)[1], 500);
}

TEST(PairPositioning, InStrictModeTheLookupFlagSaysWhatStandsBetween) {
    const Positions run = {strict(base(10)), mark(30), mark(31), base(11)};
    const Positioner passing(2, kernPair(), kIgnoreMarkGlyphs);
    EXPECT_EQ(passing.movesAt(run, 0)[1], 450);
    const Positioner plain(2, kernPair());
    EXPECT_EQ(plain.movesAt(run, 0)[1], 500);
    const Positioner bases(2, kernPair(), 0x02);
    EXPECT_EQ(bases.movesAt(run, 0)[1], 500) << "11 is passed over, and nothing is left";
}

TEST(PairPositioning, InStrictModeTheIndexGoesToTheLastGlyphTaken) {
    Positions positions = {strict(base(10)), mark(30), base(11), base(12)};
    const Positioner one(2, kernPair(), kIgnoreMarkGlyphs);
    EXPECT_EQ(one.at(positions, 0), 1) << "the second glyph may begin another pair";
    const Positioner two(2, kernPairOfTwoValues(), kIgnoreMarkGlyphs);
    EXPECT_EQ(two.at(positions, 0), 2);
}

// Not only the fields that are applied.
TEST(PairPositioning, ValueFormat2IsZeroWhenTheWholeFieldIs) {
    for (const int format : {0x10, 0x0100}) {
        const ValueBytes second = format == 0x10 ? ValueBytes{0} : ValueBytes{};
        const Positioner font(2, pairPosFormat1(kXAdvance, format, {{10, {{11, {-50}, second}}}}));
        Positions positions = {strict(base(10)), base(11)};
        EXPECT_EQ(font.at(positions, 0), 1) << format;
        EXPECT_EQ(moves(positions[0])[1], 450) << format;
    }
}

TEST(PairPositioning, NeedsAValueToApply) {
    const Positioner devices(2, pairPosFormat1(0x10, 0x40, {{10, {{11, {0}, {0}}}}}));
    Positions positions = {strict(base(10)), base(11)};
    EXPECT_EQ(devices.at(positions, 0), Positioner::kMiss);
    const Positioner second(2, pairPosFormat1(0x10, kXAdvance, {{10, {{11, {0}, {9}}}}}));
    EXPECT_EQ(second.at(positions, 0), 1) << "either of the two will do";
    EXPECT_EQ(moves(positions[0]), (Moves{0, 500, 0, 0}));
    EXPECT_EQ(moves(positions[1]), (Moves{0, 509, 0, 0}));
}

TEST(PairPositioning, TakesBackPositionsFromOutside) {
    const Positioner font(2, kernPair());
    EXPECT_EQ(
        font.movesAt({flagged(moved(base(10), 9, 9, 9), GLYPH_FLAG_OUTSIDE_GPOS), base(11)}, 0),
        (Moves{0, 450, 0, 0}));
}

TEST(PairPositioning, AnUnsortedSetCountsInTheOrderOfTheFile) {
    const Positioner font(2,
                          pairPosFormat1(kXAdvance, 0, {{10, {{12, {1}}, {11, {2}}, {11, {3}}}}}));
    EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 502);
}

/// Class 1 of 10 is 1; class 2 of 11 is 1, of 12 is 2. The value is 10 times class 1 plus class 2.
Bytes kernClasses(const Bytes& classDef1 = classDefFormat2({{10, 10, 1}}),
                  const Bytes& classDef2 = classDefFormat2({{11, 11, 1}, {12, 12, 2}})) {
    return pairPosFormat2({10, 15}, kXAdvance, 0, classDef1, classDef2, 2, 2, {0, 1, 10, 11});
}

TEST(PairPositioning, Format2GoesByTheClassesOfBothGlyphs) {
    const Positioner font(2, kernClasses());
    EXPECT_EQ(font.movesAt({base(10), base(11)}, 0)[1], 511);
    EXPECT_EQ(font.movesAt({base(10), base(12)}, 0)[1], 500) << "no such class 2";
    EXPECT_EQ(font.movesAt({base(11), base(11)}, 0)[1], 500) << "not covered";
    Positions last = {base(10)};
    EXPECT_EQ(font.at(last, 0), Positioner::kMiss);
}

TEST(PairPositioning, Format2TakesNoClassForClass0OnlyInStrictMode) {
    const Positioner font(2, kernClasses());
    Positions positions = {base(10), base(19)};
    EXPECT_EQ(font.at(positions, 0), Positioner::kMiss) << "the second has none";
    positions = {base(15), base(11)};
    EXPECT_EQ(font.at(positions, 0), Positioner::kMiss) << "the first has none";
    EXPECT_EQ(font.movesAt({strict(base(10)), base(19)}, 0)[1], 510);
    EXPECT_EQ(font.movesAt({strict(base(15)), base(11)}, 0)[1], 501);
    positions = {base(15), strict(base(11))};
    EXPECT_EQ(font.at(positions, 0), Positioner::kMiss) << "the first glyph is what counts";
}

TEST(PairPositioning, Format2WithClassesOfFormat1ReachesStrictGlyphsAtClass0) {
    const Positioner font(2, pairPosFormat2({10}, kXAdvance, 0, classDefFormat1(10, {1}),
                                            classDefFormat1(11, {1}), 2, 2, {100, 1, 10, 11}));
    Positions plain = {base(10), base(11)};
    EXPECT_EQ(font.at(plain, 0), Positioner::kMiss);
    EXPECT_EQ(font.movesAt({strict(base(10)), base(11)}, 0)[1], 600);
}

TEST(PairPositioning, Format2PassesOverInStrictModeAndMovesTheIndex) {
    Positions positions = {strict(base(10)), mark(30), base(11)};
    const Positioner font(2, kernClasses(), kIgnoreMarkGlyphs);
    EXPECT_EQ(font.at(positions, 0), 1);
    EXPECT_EQ(moves(positions[0])[1], 511);
}

} // namespace
} // namespace KWFontService_NS
