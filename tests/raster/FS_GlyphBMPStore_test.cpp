#include "raster/DrawFixture.h"

#include <KWFontService17/FS_GlyphBMPStore.h>

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(GlyphBMPStore, KeepsWhatItDrew) {
    CreatedFont font(squares().build());
    FS_GlyphBMPStore store;
    EXPECT_TRUE(store.empty());
    EXPECT_FALSE(store.hasGlyph(1));
    EXPECT_EQ(store.getGlyph(1), nullptr);
    ASSERT_TRUE(store.insertGlyph(1, 8, 72, &font.info, {}));
    EXPECT_FALSE(store.empty());
    EXPECT_TRUE(store.hasGlyph(1));
    EXPECT_FALSE(store.hasGlyph(3));
    EXPECT_EQ(store.getGlyph(1)->getRows(), 4U);
    EXPECT_EQ(store.getError().getCode(), 0);
}

TEST(GlyphBMPStore, ASecondInsertReplaces) {
    CreatedFont font(squares().build());
    FS_GlyphBMPStore store;
    ASSERT_TRUE(store.insertGlyph(1, 8, 72, &font.info, {}));
    ASSERT_TRUE(store.insertGlyph(1, 16, 72, &font.info, {}));
    EXPECT_EQ(store.getGlyph(1)->getRows(), 8U);
}

TEST(GlyphBMPStore, ASecondInsertThatFailsLeavesTheGlyphAbsent) {
    CreatedFont font(squares().build());
    FS_GlyphBMPStore store;
    ASSERT_TRUE(store.insertGlyph(1, 8, 72, &font.info, {}));
    EXPECT_FALSE(store.insertGlyph(1, 0, 72, &font.info, {}));
    EXPECT_FALSE(store.hasGlyph(1));
    EXPECT_TRUE(store.empty());
    EXPECT_EQ(store.getError().getCode(), FS_ERROR_GLYPH_BITMAP);
    EXPECT_EQ(CreatedFont::messageOf(store.getError()),
              "Cannot make raster image of glyph: Amount of pixel is less than 1px.");
    ASSERT_TRUE(store.insertGlyph(1, 8, 72, &font.info, {}));
    EXPECT_EQ(store.getError().getCode(), 0);
}

TEST(GlyphBMPStore, ClearingDeletesEveryGlyph) {
    CreatedFont font(squares().build());
    FS_GlyphBMPStore store;
    ASSERT_TRUE(store.insertGlyph(1, 8, 72, &font.info, {}));
    ASSERT_TRUE(store.insertGlyph(3, 8, 72, &font.info, {}));
    store.clear();
    EXPECT_TRUE(store.empty());
    EXPECT_FALSE(store.hasGlyph(1));
    EXPECT_FALSE(store.hasGlyph(3));
}

TEST(GlyphBMPStore, SpacesSeparatorsControlsAndFormatsAreNotToBeDrawn) {
    for (const int ch : {0x20, 0x3000, 0x2028, 0x2029, 0x09, 0x7F, 0xAD, 0x200D, 0xFEFF})
        EXPECT_FALSE(FS_GlyphBMPStore::isValidCharacter(ch)) << ch;
    // Among them a private one (Co, 17), which follows the formats, and a number (No, 11).
    for (const int ch : {int{'A'}, int{'1'}, int{'-'}, 0x3042, 0x0301, 0xE000, 0xB2, 0x1F600})
        EXPECT_TRUE(FS_GlyphBMPStore::isValidCharacter(ch)) << ch;
}

} // namespace
} // namespace KWFontService_NS
