#include "raster/FTFaceSize.h"

#include "support/FontBuilder.h"
#include "support/FreeTypeFace.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(FTFaceSize, SizesAsFreeTypeDoes) {
    const Bytes file = TestFont::latin().build();
    const FreeTypeFace ours(file);
    const FreeTypeFace theirs(file);
    for (const auto& [height, dpi] : {std::pair{640, 300U}, {64, 72U}, {640, 300U}, {10240, 0U}}) {
        EXPECT_EQ(setFTFaceSize(ours.get(), height, dpi), 0);
        EXPECT_EQ(FT_Set_Char_Size(theirs.get(), 0, height, 0, dpi), 0);
        EXPECT_EQ(ours->size->metrics.x_scale, theirs->size->metrics.x_scale);
        EXPECT_EQ(ours->size->metrics.y_ppem, theirs->size->metrics.y_ppem);
    }
}

TEST(FTFaceSize, ASizeThatSomebodyElseChangedIsSetAgain) {
    const FreeTypeFace face(TestFont::latin().build());
    EXPECT_EQ(setFTFaceSize(face.get(), 640, 300), 0);
    const FT_UShort ppem = face->size->metrics.y_ppem;
    FT_Set_Char_Size(face.get(), 0, 6400, 0, 300);
    EXPECT_EQ(setFTFaceSize(face.get(), 640, 300), 0);
    EXPECT_EQ(face->size->metrics.y_ppem, ppem);
}

TEST(FTFaceSize, ASizeThatFailedFailsAgain) {
    const FreeTypeFace face(TestFont::latin().build());
    EXPECT_EQ(setFTFaceSize(face.get(), 640, 300), 0);
    constexpr FT_F26Dot6 kTooLarge = 64 * 70000;
    EXPECT_NE(setFTFaceSize(face.get(), kTooLarge, 72), 0);
    EXPECT_NE(setFTFaceSize(face.get(), kTooLarge, 72), 0);
    EXPECT_EQ(setFTFaceSize(face.get(), 640, 300), 0);
}

} // namespace
} // namespace KWFontService_NS
