#include "layout/GPOS_CursivePos.h"

#include "layout/LayoutFixture.h"

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

} // namespace
} // namespace KWFontService_NS
