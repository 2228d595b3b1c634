#include "layout/GPOS_Anchor.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(Anchor, AllFormatsAnswerTheDesignCoordinates) {
    const Bytes device = deviceTable(8, 9, 3, {0x0102});
    const Bytes tables[] = {anchorTable(100, -200), anchorFormat2(100, -200, 7),
                            anchorFormat3(100, -200, device, {})};
    for (const Bytes& table : tables) {
        const auto anchor = GPOS_Anchor::read(viewOf(table));
        ASSERT_TRUE(anchor) << table.hex();
        EXPECT_EQ(anchor->x(), 100);
        EXPECT_EQ(anchor->y(), -200);
    }
}

TEST(Anchor, Format2KeepsItsPoint) {
    const Bytes table = anchorFormat2(1, 2, 7);
    EXPECT_EQ(GPOS_AnchorFormat2::read(viewOf(table))->anchorPoint(), 7);
    const Bytes other = anchorTable(1, 2);
    EXPECT_FALSE(GPOS_AnchorFormat2::read(viewOf(other)));
}

TEST(Anchor, Format3KeepsItsDevices) {
    const Bytes table = anchorFormat3(1, 2, deviceTable(8, 9, 3, {0x0102}), {});
    const auto anchor = GPOS_AnchorFormat3::read(viewOf(table));
    ASSERT_TRUE(anchor);
    EXPECT_EQ(anchor->xDevice().deltas, (std::vector<std::int8_t>{1, 2}));
    EXPECT_TRUE(anchor->yDevice().deltas.empty());
    const Bytes other = anchorTable(1, 2);
    EXPECT_FALSE(GPOS_AnchorFormat3::read(viewOf(other)));
}

TEST(Anchor, AnUnknownFormatOrHalfAnAnchorIsNone) {
    for (const int format : {0, 4, 0xFFFF}) {
        const Bytes table = Bytes().u16(format).u16(1).u16(2);
        EXPECT_FALSE(GPOS_Anchor::read(viewOf(table))) << format;
    }
    const Bytes whole = anchorTable(1, 2);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut = whole.slice(0, size);
        EXPECT_FALSE(GPOS_Anchor::read(viewOf(cut))) << size;
    }
}

TEST(AnchorMatrix, HasARowForEachGlyphAndAColumnForEachClass) {
    const Bytes bytes =
        OffsetTable()
            .u16(2)
            .offsets({anchorTable(0, 0), anchorTable(0, 1), Bytes(), anchorTable(1, 1)})
            .build();
    const GPOS_AnchorMatrix matrix(viewOf(bytes), 2);
    EXPECT_EQ(matrix.rows(), 2U);
    EXPECT_EQ(matrix.anchor(0, 1)->y(), 1);
    EXPECT_FALSE(matrix.anchor(1, 0)) << "null";
    EXPECT_EQ(matrix.anchor(1, 1)->x(), 1);
    EXPECT_FALSE(matrix.anchor(0, 2)) << "no such class, and not the next row";
    EXPECT_FALSE(matrix.anchor(2, 0));
    EXPECT_FALSE(GPOS_AnchorMatrix().anchor(0, 0));
}

} // namespace
} // namespace KWFontService_NS
