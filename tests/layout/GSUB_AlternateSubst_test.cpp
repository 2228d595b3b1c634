#include "layout/GSUB_AlternateSubst.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(AlternateSubst, AlternatesCountFromOne) {
    for (const int coverageFormat : {1, 2}) {
        const auto one =
            OneSubTable::gsub(3, glyphSets({{10, {100, 101}}, {20, {}}}, coverageFormat));
        const TTI_SubTable* table = one.get();
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(table->lookupType(), 3);
        EXPECT_EQ(table->substituteAlternate(10, 1), 100);
        EXPECT_EQ(table->substituteAlternate(10, 2), 101);
        for (const int none : {0, -1, 3, 0x7FFFFFFF, -0x7FFFFFFF - 1})
            EXPECT_EQ(table->substituteAlternate(10, none), kNoGlyph) << none;
        EXPECT_EQ(table->substituteAlternate(20, 1), kNoGlyph);
        EXPECT_EQ(table->substituteAlternate(11, 1), kNoGlyph);
        EXPECT_EQ(table->substituteSingle(10), kNoGlyph) << "no single substitution";
    }
}

TEST(AlternateSubst, AListThatIsCutOffHasTheGlyphsItHolds) {
    Bytes bytes = glyphSets({{10, {100, 101}}});
    bytes.truncate(bytes.size() - 1);
    // The coverage stands before the set.
    const auto one = OneSubTable::gsub(3, bytes);
    const auto* table = one.as<GSUB_AlternateSubstFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(values(table->alternates(10)), (std::vector<std::uint16_t>{100}));
    EXPECT_TRUE(table->alternates(11).empty());
}

TEST(AlternateSubst, ACoverageIndexBeyondTheSetsIsNoAlternate) {
    const Bytes bytes =
        OffsetTable().u16(1).offset(coverageTable({1, 2})).counted({Bytes().u16s({1, 9})}).build();
    const auto one = OneSubTable::gsub(3, bytes);
    EXPECT_EQ(one.get()->substituteAlternate(1, 1), 9);
    EXPECT_EQ(one.get()->substituteAlternate(2, 1), kNoGlyph);
}

} // namespace
} // namespace KWFontService_NS
