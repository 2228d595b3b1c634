#include "layout/TTI_ReverseChainingContextSingle.h"

#include "layout/GSUB_ReverseChainingContextSingle.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using Subtable = GSUB_ReverseChainingContextSingleFormat1;

TEST(ReverseChaining, HasASubstituteForEachCoveredGlyphAndTheCoveragesAround) {
    const auto one = OneSubTable::gsub(
        8, reverseChaining({{10, 100}, {12, 102}}, {{1}, {2}}, {{20}, {21, 22}, {23}}));
    const auto* table = one.as<Subtable>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 8);
    EXPECT_TRUE(table->mayApply(10));
    EXPECT_FALSE(table->mayApply(11));
    EXPECT_EQ(table->substituteOf(10), 100);
    EXPECT_EQ(table->substituteOf(11), kNoGlyph);
    EXPECT_EQ(table->substituteOf(12), 102);
    const auto rule = table->rule();
    ASSERT_EQ(rule.backtrack.size(), 2U);
    EXPECT_TRUE(rule.backtrack.covers(1, 2));
    ASSERT_EQ(rule.lookahead.size(), 3U);
    EXPECT_TRUE(rule.lookahead.covers(1, 22));
    EXPECT_EQ(values(rule.substitutes), (std::vector<std::uint16_t>{100, 102}));
}

TEST(ReverseChaining, ACoverageIndexBeyondTheSubstitutesIsNoSubstitution) {
    const Bytes bytes =
        OffsetTable().u16(1).offset(coverageTable({10, 11})).u16s({0, 0, 1, 77}).build();
    const auto one = OneSubTable::gsub(8, bytes);
    ASSERT_NE(one.get(), nullptr);
    EXPECT_EQ(one.as<Subtable>()->substituteOf(10), 77);
    EXPECT_EQ(one.as<Subtable>()->substituteOf(11), kNoGlyph);
}

TEST(ReverseChaining, ATableThatIsNotWholeIsNoSubtable) {
    EXPECT_EQ(OneSubTable::gsub(8, Bytes().u16s({1, 2, 0, 0, 9})).get(), nullptr);
    EXPECT_EQ(OneSubTable::gsub(8, Bytes().u16s({1, 0, 0, 0, 0})).get(), nullptr)
        << "without a coverage";
}

} // namespace
} // namespace KWFontService_NS
