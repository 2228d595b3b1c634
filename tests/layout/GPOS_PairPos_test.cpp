#include "layout/GPOS_PairPos.h"

#include "layout/LayoutFixture.h"

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

} // namespace
} // namespace KWFontService_NS
