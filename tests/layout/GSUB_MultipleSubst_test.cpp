#include "layout/GSUB_MultipleSubst.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using Subtable = GSUB_MultipleSubstFormat1;

TEST(MultipleSubst, AnswersTheSequenceOfACoveredGlyph) {
    for (const int coverageFormat : {1, 2}) {
        const auto one =
            OneSubTable::gsub(2, glyphSets({{10, {1, 2, 3}}, {11, {4}}, {20, {}}}, coverageFormat));
        const auto* table = one.as<Subtable>();
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(table->lookupType(), 2);
        EXPECT_EQ(values(table->sequence(10).value()), (std::vector<std::uint16_t>{1, 2, 3}));
        EXPECT_EQ(values(table->sequence(11).value()), (std::vector<std::uint16_t>{4}));
        EXPECT_TRUE(table->sequence(20).value().empty()) << "an empty one is one";
        EXPECT_FALSE(table->sequence(12));
        EXPECT_TRUE(table->mayApply(20));
        EXPECT_FALSE(table->mayApply(12));
    }
}

TEST(MultipleSubst, ASequenceThatIsNotWholeIsNone) {
    Bytes bytes = glyphSets({{10, {1, 2, 3}}, {11, {4, 5}}});
    bytes.truncate(bytes.size() - 1);
    const auto one = OneSubTable::gsub(2, bytes);
    EXPECT_TRUE(one.as<Subtable>()->sequence(10));
    EXPECT_FALSE(one.as<Subtable>()->sequence(11));
    bytes.patchU16At(6, 0xFFFF).patchU16At(8, 0); // the offsets
    const auto outside = OneSubTable::gsub(2, bytes);
    EXPECT_FALSE(outside.as<Subtable>()->sequence(10));
    EXPECT_FALSE(outside.as<Subtable>()->sequence(11)) << "offset 0";
}

TEST(MultipleSubst, ACoverageIndexBeyondTheSequencesIsNone) {
    const Bytes bytes =
        OffsetTable().u16(1).offset(coverageTable({1, 2})).counted({Bytes().u16s({1, 9})}).build();
    const auto one = OneSubTable::gsub(2, bytes);
    EXPECT_TRUE(one.as<Subtable>()->sequence(1));
    EXPECT_FALSE(one.as<Subtable>()->sequence(2));
}

} // namespace
} // namespace KWFontService_NS
