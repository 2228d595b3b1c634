// What the tables of marks on base glyphs, on ligatures and on other marks hold.

#include "layout/GPOS_MarkBasePos.h"
#include "layout/GPOS_MarkLigPos.h"
#include "layout/GPOS_MarkMarkPos.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const std::vector<MarkBytes> kMarks = {{.glyph = 30, .markClass = 0, .anchor = anchorTable(1, 2)},
                                       {.glyph = 31, .markClass = 1, .anchor = anchorTable(3, 4)},
                                       {.glyph = 32, .markClass = 1}};
const std::vector<BaseBytes> kBases = {{.glyph = 10, .anchors = {anchorTable(100, 101), {}}},
                                       {.glyph = 11, .anchors = {{}, anchorTable(110, 111)}}};

template <class SubTable>
void expectMarks(const SubTable& table) {
    EXPECT_EQ(table.mark(30)->markClass, 0);
    EXPECT_EQ(table.mark(30)->anchor.x(), 1);
    EXPECT_EQ(table.mark(31)->markClass, 1);
    EXPECT_EQ(table.mark(31)->anchor.y(), 4);
    EXPECT_FALSE(table.mark(32)) << "a mark without an anchor";
    EXPECT_FALSE(table.mark(10));
    EXPECT_TRUE(table.mayApply(31));
    EXPECT_FALSE(table.mayApply(10)) << "the mark is what is positioned";
}

TEST(MarkBasePos, HasMarksAndBases) {
    const auto one = OneSubTable::gpos(4, markBasePos(kMarks, kBases, 2));
    const auto* table = one.as<GPOS_MarkBasePosFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 4);
    expectMarks(*table);
    EXPECT_EQ(table->base(10, 0)->x(), 100);
    EXPECT_FALSE(table->base(10, 1)) << "a null anchor";
    EXPECT_EQ(table->base(11, 1)->y(), 111);
    EXPECT_FALSE(table->base(10, 2)) << "past the classes";
    EXPECT_FALSE(table->base(12, 0));
    EXPECT_FALSE(table->base(30, 0));
}

TEST(MarkMarkPos, HasMarksAndTheMarksTheyGoOn) {
    const auto one = OneSubTable::gpos(6, markBasePos(kMarks, kBases, 2));
    const auto* table = one.as<GPOS_MarkMarkPosFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 6);
    expectMarks(*table);
    EXPECT_EQ(table->mark2(10, 0)->x(), 100);
    EXPECT_FALSE(table->mark2(10, 1));
    EXPECT_EQ(table->mark2(11, 1)->y(), 111);
    EXPECT_FALSE(table->mark2(12, 0));
}

TEST(MarkLigPos, HasMarksAndTheComponentsOfLigatures) {
    const auto one = OneSubTable::gpos(
        5, markLigPos(
               kMarks,
               {{.glyph = 10,
                 .components = {{anchorTable(1, 0), anchorTable(1, 1)}, {{}, anchorTable(2, 1)}}},
                {.glyph = 11, .components = {}}},
               2));
    const auto* table = one.as<GPOS_MarkLigPosFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 5);
    expectMarks(*table);
    const auto ligature = table->ligature(10);
    ASSERT_TRUE(ligature);
    EXPECT_EQ(ligature->rows(), 2U);
    EXPECT_EQ(ligature->anchor(0, 1)->y(), 1);
    EXPECT_FALSE(ligature->anchor(1, 0));
    EXPECT_EQ(ligature->anchor(1, 1)->x(), 2);
    EXPECT_FALSE(ligature->anchor(2, 0));
    EXPECT_EQ(table->ligature(11)->rows(), 0U);
    EXPECT_FALSE(table->ligature(12));
}

TEST(MarkPos, ABadCoverageOfEitherSideIsNoSubtable) {
    for (const int type : {4, 5, 6}) {
        for (const std::size_t field : {2U, 4U}) {
            Bytes bytes = markBasePos(kMarks, kBases, 2);
            bytes.patchU16At(field, 0xFFFF);
            EXPECT_EQ(OneSubTable::gpos(type, bytes).get(), nullptr) << type << ' ' << field;
        }
    }
}

TEST(MarkPos, IndicesBeyondTheArraysHaveNoAnchor) {
    for (const int type : {4, 6}) {
        Bytes bytes = markBasePos(kMarks, kBases, 2);
        const std::size_t marks = bytes.u16At(8);
        const std::size_t bases = bytes.u16At(10);
        bytes.patchU16At(marks, 0).patchU16At(bases, 0); // the counts
        const auto one = OneSubTable::gpos(type, bytes);
        const auto* base = one.as<GPOS_MarkBasePosFormat1>();
        const auto* mark = one.as<GPOS_MarkMarkPosFormat1>();
        EXPECT_FALSE(base ? base->mark(30) : mark->mark(30)) << type;
        EXPECT_FALSE(base ? base->base(10, 0) : mark->mark2(10, 0)) << type;
    }
}

} // namespace
} // namespace KWFontService_NS
