#include <KWFontService17/FS_Types.h>

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;

TEST(FontFileType, TheNumbersAreFixed) {
    EXPECT_EQ(FS_FILETYPE_UNKNOWN, 0);
    EXPECT_EQ(FS_FILETYPE_PFA, 1);
    EXPECT_EQ(FS_FILETYPE_PFB, 2);
    EXPECT_EQ(FS_FILETYPE_AFM, 3);
    EXPECT_EQ(FS_FILETYPE_PFM, 4);
    EXPECT_EQ(FS_FILETYPE_TRUETYPE, 5);
    EXPECT_EQ(FS_FILETYPE_COLLECTION, 6);
    EXPECT_EQ(FS_FILETYPE_OPENTYPE, 7);
    EXPECT_EQ(FS_FILETYPE_OPENTYPE_CID, 8);
    EXPECT_EQ(FS_FILETYPE_DFONT, 9);
    EXPECT_EQ(FS_FILETYPE_WOFF, 10);
    EXPECT_EQ(FS_FILETYPE_EXTRA, 12);
    EXPECT_EQ(FS_FILETYPE_LOCAL, 13);
    EXPECT_EQ(FS_FILETYPE_REQUEST_SFNT, 14);
    EXPECT_EQ(FS_FILETYPE_REQUEST_OPENTYPE, 15);
    EXPECT_EQ(FS_FILETYPE_REQUEST_TYPE1, 16);
    EXPECT_EQ(FS_FILETYPE_REQUEST_TRUETYPE, 17);
    EXPECT_EQ(sizeof(FS_FontFileType), 4U);
}

TEST(EmbedStatus, TheNumbersAreFixed) {
    EXPECT_EQ(FS_EMBED_OUTLINES, 0);
    EXPECT_EQ(FS_EMBED_BITMAP_ONLY, 1);
    EXPECT_EQ(FS_EMBED_RESTRICTED, 2);
}

TEST(EncodingScheme, TheNumbersAreFixed) {
    EXPECT_EQ(FS_ENCODING_NONE, 0);
    EXPECT_EQ(FS_ENCODING_STANDARD, 1);
    EXPECT_EQ(FS_ENCODING_WINANSI, 2);
    EXPECT_EQ(FS_ENCODING_MACROMAN, 3);
    EXPECT_EQ(FS_ENCODING_MACEXPERT, 4);
    EXPECT_EQ(FS_ENCODING_FONT, 5);
}

TEST(CodePageRange, RangesOfTheSameBitsAreEqual) {
    EXPECT_EQ(FS_CodePageRange(), (FS_CodePageRange{0, 0}));
    EXPECT_NE(FS_CodePageRange(), (FS_CodePageRange{1, 0}));
    EXPECT_NE(FS_CodePageRange(), (FS_CodePageRange{0, 1}));
}

TEST(FontRef, WithoutAFontIsFalseAndDiffersByItsFace) {
    const FS_FontRef none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none, (FS_FontRef{nullptr, 0}));
    EXPECT_NE(none, (FS_FontRef{nullptr, 1}));
}

} // namespace
