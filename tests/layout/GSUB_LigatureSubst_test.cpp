#include "layout/GSUB_LigatureSubst.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using Subtable = GSUB_LigatureSubstFormat1;

TEST(LigatureSubst, AnswersTheLigaturesOfAFirstGlyphInTheirOrder) {
    const auto one = OneSubTable::gsub(
        4, ligatureSubst({{10, {{.glyph = 50, .components = {11, 12}}, {.glyph = 51}}},
                          {20, {{.glyph = 52, .components = {10}}}}}));
    const auto* table = one.as<Subtable>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 4);
    const GSUB_LigatureSet set = table->ligatures(10);
    ASSERT_EQ(set.size(), 2U);
    EXPECT_EQ(set[0]->glyph, 50);
    EXPECT_EQ(values(set[0]->components), (std::vector<std::uint16_t>{11, 12}));
    EXPECT_EQ(set[1]->glyph, 51) << "of one component";
    EXPECT_TRUE(set[1]->components.empty());
    EXPECT_EQ(table->ligatures(20)[0]->glyph, 52);
    EXPECT_EQ(table->ligatures(11).size(), 0U);
    EXPECT_FALSE(table->mayApply(11));
}

TEST(LigatureSubst, ALigatureThatCountsNoComponentIsNone) {
    const Bytes set = OffsetTable().counted({Bytes().u16s({50, 0}), Bytes().u16s({51, 1})}).build();
    const auto one = OneSubTable::gsub(
        4, OffsetTable().u16(1).offset(coverageTable({10})).counted({set}).build());
    const GSUB_LigatureSet found = one.as<Subtable>()->ligatures(10);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_FALSE(found[0]);
    EXPECT_TRUE(found[1]);
}

TEST(LigatureSubst, ALigatureThatIsNotWholeIsNone) {
    Bytes bytes = ligatureSubst(
        {{10, {{.glyph = 50, .components = {11}}, {.glyph = 51, .components = {12, 13}}}}});
    bytes.truncate(bytes.size() - 1);
    const auto one = OneSubTable::gsub(4, bytes);
    const GSUB_LigatureSet found = one.as<Subtable>()->ligatures(10);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_TRUE(found[0]);
    EXPECT_FALSE(found[1]);
}

TEST(LigatureSubst, ACoverageIndexBeyondTheSetsHasNoLigatures) {
    const auto one = OneSubTable::gsub(
        4, OffsetTable().u16(1).offset(coverageTable({1, 2})).counted({Bytes().u16(0)}).build());
    EXPECT_EQ(one.as<Subtable>()->ligatures(2).size(), 0U);
}

} // namespace
} // namespace KWFontService_NS
