#include "support/CffTable.h"

#include "support/FreeTypeFace.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

#include FT_OUTLINE_H

namespace KWTest {
namespace {

TEST(CffIndex, OffsetsCountFromTheByteBeforeTheData) {
    EXPECT_EQ(cffIndex({}), (Bytes{0, 0}));
    EXPECT_EQ(cffIndex({Bytes{7}, Bytes{8, 9}}), (Bytes{0, 2, 1, 1, 2, 4, 7, 8, 9}));
}

TEST(CffIndex, OffsetsGrowWithTheData) {
    const Bytes index = cffIndex({Bytes().zero(300)});
    EXPECT_EQ(index.slice(0, 7), (Bytes{0, 1, 2, 0, 1, 1, 45}));
    EXPECT_EQ(cffIndex({Bytes().zero(70000)}).u8At(2), 4);
}

TEST(Cff, FreeTypeReadsNamesWidthsAndOutlines) {
    const FreeTypeFace face(TestFont::openType().build());
    char name[32] = {};
    ASSERT_EQ(FT_Get_Glyph_Name(face.get(), TestFont::kB, name, sizeof name), 0);
    EXPECT_STREQ(name, "B");
    EXPECT_EQ(face.advance(TestFont::kSpace), 250);
    EXPECT_EQ(face.load(TestFont::kSpace)->outline.n_points, 0);
    FT_BBox box;
    FT_Outline_Get_CBox(&face.load(TestFont::kA)->outline, &box);
    EXPECT_EQ(box.xMin, 50);
    EXPECT_EQ(box.xMax, 550);
    EXPECT_EQ(box.yMax, 700);
}

TEST(Cff, FreeTypeReadsItAsAFontOfItsOwn) {
    const Cff cff{.fontName = "Bare",
                  .glyphs = {{".notdef", rectangleCharstring(0, 0, 0, 0, 0)},
                             {"one", rectangleCharstring(20, 0, 0, 10, 10)}}};
    const FreeTypeFace face(cff.build());
    EXPECT_STREQ(FT_Get_Postscript_Name(face.get()), "Bare");
    EXPECT_EQ(face.advance(1), 520);
}

} // namespace
} // namespace KWTest
