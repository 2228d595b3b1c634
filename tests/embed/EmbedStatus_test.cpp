#include "EmbedFixture.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using KWTest::EmbeddableFont;
using KWTest::TestFont;

struct StatusRow {
    std::uint16_t fsType;
    FS_EMBEDSTATUS status;
};

class EmbedStatus : public testing::TestWithParam<StatusRow> {};

TEST_P(EmbedStatus, FollowsFromTheLicenceBits) {
    TestFont source = TestFont::latin();
    source.os2.fsType = GetParam().fsType;
    EmbeddableFont font(source.build());
    EXPECT_EQ(font.font().getEmbedStatus(0), GetParam().status);
    EXPECT_EQ(font.font().isEmbeddable(0), GetParam().status == FS_EMBED_OUTLINES);
    EXPECT_EQ(font.font().getFontEmbeddingLicence(0), GetParam().fsType);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EmbedStatus,
    testing::Values(StatusRow{0x0000, FS_EMBED_OUTLINES}, StatusRow{0x0002, FS_EMBED_RESTRICTED},
                    StatusRow{0x0004, FS_EMBED_OUTLINES}, StatusRow{0x0008, FS_EMBED_OUTLINES},
                    StatusRow{0x000C, FS_EMBED_OUTLINES}, StatusRow{0x0006, FS_EMBED_OUTLINES},
                    StatusRow{0x000A, FS_EMBED_OUTLINES}, StatusRow{0x0200, FS_EMBED_BITMAP_ONLY},
                    StatusRow{0x0202, FS_EMBED_BITMAP_ONLY}, StatusRow{0x0204, FS_EMBED_OUTLINES},
                    StatusRow{0x0208, FS_EMBED_OUTLINES},
                    // Bits that are no part of the question.
                    StatusRow{0x0100, FS_EMBED_OUTLINES}, StatusRow{0x0102, FS_EMBED_RESTRICTED},
                    StatusRow{0xFDF1, FS_EMBED_OUTLINES}));

TEST(EmbedStatus, IsRestrictedWithoutAFont) {
    const FS_FontInfo none;
    EXPECT_EQ(none.getEmbedStatus(), FS_EMBED_RESTRICTED);
    EXPECT_EQ(none.getFontEmbeddingLicence(), 0);
    EXPECT_EQ(none.getEmbedableCharCount(), 0u);
}

TEST(EmbedStatus, WithoutAFontEveryWriterSaysNo) {
    const FS_FontInfo none;
    KWMemStream out;
    KWTest::KeptGlyphs kept;
    const unsigned int tags[] = {0};
    const std::vector<unsigned short> glyphs{1};
    EXPECT_FALSE(none.getEmbedFont(glyphs, out));
    EXPECT_FALSE(none.getEmbedFont(glyphs, out, tags));
    EXPECT_FALSE(none.getEmbedFontWithCmap(glyphs, out));
    EXPECT_FALSE(none.getEmbedFontStream(out));
    EXPECT_FALSE(none.getPSEmbedFont(glyphs, out, kept));
    EXPECT_FALSE(none.makeSubsetFont(glyphs, out));
    EXPECT_FALSE(none.makeWebFont(glyphs, out));
}

} // namespace
} // namespace KWFontService_NS
