#include "layout/GPOS_SinglePos.h"

#include "layout/GposFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(ValueRecord, TakesTheFieldsThatItsFormatCallsForInTheirOrder) {
    const Bytes device = deviceTable(8, 8, 3, {0x0500});
    const Bytes bytes = OffsetTable().u16s({1, 2, 3, 4}).offset(device).u16s({0, 0, 0}).build();
    const GPOS_ValueRecord all(viewOf(bytes), 0, 0xFF);
    EXPECT_EQ(all.xPlacement(), 1);
    EXPECT_EQ(all.yPlacement(), 2);
    EXPECT_EQ(all.xAdvance(), 3);
    EXPECT_EQ(all.yAdvance(), 4);
    EXPECT_EQ(all.device(GPOS_ValueRecord::kXPlacementDevice).deltas,
              (std::vector<std::int8_t>{5}));
    EXPECT_TRUE(all.device(GPOS_ValueRecord::kYAdvanceDevice).deltas.empty()) << "offset 0";
    const GPOS_ValueRecord some(viewOf(bytes), 2, 0x0A); // y placement and y advance, from byte 2
    EXPECT_EQ(some.xPlacement(), 0);
    EXPECT_EQ(some.yPlacement(), 2);
    EXPECT_EQ(some.xAdvance(), 0);
    EXPECT_EQ(some.yAdvance(), 3);
    EXPECT_TRUE(some.device(GPOS_ValueRecord::kXPlacementDevice).deltas.empty());
}

TEST(ValueRecord, ItsSizeComesOfTheLowerEightBits) {
    EXPECT_EQ(GPOS_ValueRecord::size(0), 0U);
    EXPECT_EQ(GPOS_ValueRecord::size(0x04), 2U);
    EXPECT_EQ(GPOS_ValueRecord::size(0xFF), 16U);
    EXPECT_EQ(GPOS_ValueRecord::size(0xFF05), 4U);
}

TEST(ValueRecord, DeviceTablesAloneDoNotApply) {
    const Bytes bytes = Bytes().zero(8);
    EXPECT_FALSE(GPOS_ValueRecord(viewOf(bytes), 0, 0xF0).applies());
    EXPECT_FALSE(GPOS_ValueRecord().applies());
    EXPECT_TRUE(GPOS_ValueRecord(viewOf(bytes), 0, 0x18).applies());
}

TEST(SinglePos, Format1HasOneValueForAllCoveredGlyphs) {
    const auto one = OneSubTable::gpos(1, singlePosFormat1({10, 12}, 0x05, {-30, 40}));
    const auto* table = one.as<GPOS_SinglePosFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 1);
    EXPECT_FALSE(table->value(11));
    EXPECT_FALSE(table->mayApply(11));
    for (const unsigned short gid : std::initializer_list<unsigned short>{10, 12}) {
        EXPECT_EQ(table->value(gid)->xPlacement(), -30);
        EXPECT_EQ(table->value(gid)->xAdvance(), 40);
        EXPECT_EQ(table->value(gid)->yPlacement(), 0);
    }
}

TEST(SinglePos, Format2HasAValueForEachCoveredGlyph) {
    const auto one = OneSubTable::gpos(1, singlePosFormat2({10, 12}, 0x0A, {{1, 2}, {3, 4}}));
    const auto* table = one.as<GPOS_SinglePosFormat2>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 1);
    EXPECT_EQ(table->value(10)->yPlacement(), 1);
    EXPECT_EQ(table->value(12)->yPlacement(), 3);
    EXPECT_EQ(table->value(12)->yAdvance(), 4);
    EXPECT_FALSE(table->value(11));
}

TEST(SinglePos, ACoverageIndexBeyondTheValuesHasNone) {
    const auto one = OneSubTable::gpos(1, singlePosFormat2({10, 11}, 0x04, {{1}}));
    EXPECT_TRUE(one.as<GPOS_SinglePosFormat2>()->value(10));
    EXPECT_FALSE(one.as<GPOS_SinglePosFormat2>()->value(11));
    // Two values are counted and one lies in the table.
    const auto cut = OneSubTable::gpos(
        1, Bytes().u16s({2, 10, 4, 2, 7}).bytes(coverageTable({10, 11})).truncate(18));
    EXPECT_TRUE(cut.as<GPOS_SinglePosFormat2>()->value(10));
}

TEST(SinglePos, ATableThatIsNotWholeIsNoSubtable) {
    EXPECT_EQ(OneSubTable::gpos(1, Bytes().u16s({1, 6, 0xFF, 1, 0})).get(), nullptr);
    EXPECT_EQ(OneSubTable::gpos(1, Bytes().u16s({2, 0, 4, 0})).get(), nullptr) << "no coverage";
    EXPECT_EQ(OneSubTable::gpos(1, Bytes().u16s({3, 6, 0, 1, 0})).get(), nullptr) << "its format";
}

// --- positioning --------------------------------------------------------------------------------

TEST(SinglePositioning, XPlacementMovesTheGlyphAndNotThePenAfterIt) {
    const Positioner font(1, singlePosFormat1({10}, 0x01, {30}));
    EXPECT_EQ(font.movesAt({base(10)}, 0), (Moves{30, 470, 0, 0}));
}

TEST(SinglePositioning, YGoesDownwardsInAPosition) {
    const Positioner placement(1, singlePosFormat1({10}, 0x02, {50}));
    EXPECT_EQ(placement.movesAt({base(10)}, 0), (Moves{0, 500, -50, 0}));
    const Positioner advance(1, singlePosFormat1({10}, 0x08, {50}));
    EXPECT_EQ(advance.movesAt({base(10)}, 0), (Moves{0, 500, 0, -50}));
}

TEST(SinglePositioning, XAdvanceMovesThePenAfterTheGlyph) {
    const Positioner font(1, singlePosFormat1({10}, 0x04, {-40}));
    EXPECT_EQ(font.movesAt({base(10)}, 0), (Moves{0, 460, 0, 0}));
}

TEST(SinglePositioning, ValuesAddUpAlsoOnAStrictGlyph) {
    const Positioner font(1, singlePosFormat1({10}, 0x0F, {1, 20, 300, 4000}));
    Positions positions = {base(10), strict(base(10))};
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(font.at(positions, 0), 0);
        EXPECT_EQ(font.at(positions, 1, true), 1);
    }
    EXPECT_EQ(moves(positions[0]), (Moves{2, 1098, -40, -8000}));
    EXPECT_EQ(moves(positions[1]), (Moves{2, 1098, -40, -8000}));
}

TEST(SinglePositioning, SumsKeepTheirLow16Bits) {
    const Positioner font(1, singlePosFormat1({10}, 0x0F, {1, -32768, 32767, 32767}));
    EXPECT_EQ(font.movesAt({moved(base(10), 32767, 2, 1)}, 0),
              (Moves{-32768, -32768, -32767, -32767}));
}

TEST(SinglePositioning, ADeviceAloneDoesNotApply) {
    const Positioner font(1, singlePosFormat1({10}, 0x10, {0}));
    Positions positions = {flagged(moved(base(10), 1, 2, 3), GLYPH_FLAG_OUTSIDE_GPOS)};
    const Positions before = positions;
    EXPECT_EQ(font.at(positions, 0), Positioner::kMiss);
    EXPECT_EQ(positions, before) << "not even the positions from outside are taken back";
    const Positioner format2(1, singlePosFormat2({10}, 0xF0, {{0, 0, 0, 0}}));
    EXPECT_EQ(format2.at(positions, 0), Positioner::kMiss);
    EXPECT_EQ(positions, before);
}

TEST(SinglePositioning, ADeviceBesideAPlacementIsNotApplied) {
    const Bytes device = deviceTable(8, 8, 3, {0x0500});
    const Positioner font(
        1,
        OffsetTable().u16(1).offset(coverageTable({10})).u16(0x11).u16(30).offset(device).build());
    EXPECT_EQ(font.movesAt({base(10)}, 0), (Moves{30, 470, 0, 0}));
}

TEST(SinglePositioning, AValueThatChangesNothingApplies) {
    const Positioner font(1, singlePosFormat1({10}, 0x01, {0}));
    Positions positions = {flagged(moved(base(10), 1, 2, 3), GLYPH_FLAG_OUTSIDE_GPOS)};
    EXPECT_EQ(font.at(positions, 0), 0);
    EXPECT_EQ(moves(positions[0]), (Moves{0, 500, 0, 0})) << "it takes back what came from outside";
}

TEST(SinglePositioning, Format2TakesTheValueOfTheGlyph) {
    const Positioner font(1, singlePosFormat2({10, 12, 13}, 0x04, {{1}, {2}}));
    EXPECT_EQ(font.movesAt({base(10)}, 0)[1], 501);
    EXPECT_EQ(font.movesAt({base(12)}, 0)[1], 502);
    Positions others = {base(11), base(13)};
    EXPECT_EQ(font.at(others, 0), Positioner::kMiss) << "not covered";
    EXPECT_EQ(font.at(others, 1), Positioner::kMiss) << "past the values";
    EXPECT_EQ(others, (Positions{base(11), base(13)}));
}

} // namespace
} // namespace KWFontService_NS
