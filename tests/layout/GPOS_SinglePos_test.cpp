#include "layout/GPOS_SinglePos.h"

#include "layout/LayoutFixture.h"

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

} // namespace
} // namespace KWFontService_NS
