#include "support/TestFont.h"

#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace KWTest {
namespace {

TEST(TestFont, FreeTypeReadsAdvancesOfLatin) {
    const FreeTypeFace face(TestFont::latin().build());
    EXPECT_EQ(face->num_glyphs, TestFont::kLatinGlyphs);
    EXPECT_EQ(face->units_per_EM, 1000);
    EXPECT_STREQ(face->family_name, "KWTest Latin");
    const FT_Pos advances[] = {500, 250, 600, 650, 700, 300, 300};
    for (FT_UInt glyph = 0; glyph < TestFont::kLatinGlyphs; ++glyph)
        EXPECT_EQ(face.advance(glyph), advances[glyph]) << glyph;
}

TEST(TestFont, FreeTypeFindsTheCharactersOfLatin) {
    const FreeTypeFace face(TestFont::latin().build());
    EXPECT_EQ(face.glyphOf(' '), TestFont::kSpace);
    EXPECT_EQ(face.glyphOf('A'), TestFont::kA);
    EXPECT_EQ(face.glyphOf('B'), TestFont::kB);
    EXPECT_EQ(face.glyphOf('C'), TestFont::kC);
    EXPECT_EQ(face.glyphOf(0x00B4), TestFont::kAcute);
    EXPECT_EQ(face.glyphOf(0x00C1), TestFont::kAacute);
    EXPECT_EQ(face.glyphOf('D'), 0u);
}

TEST(TestFont, FreeTypeReadsTheOutlinesOfLatin) {
    const FreeTypeFace face(TestFont::latin().build());
    EXPECT_EQ(face.load(TestFont::kSpace)->outline.n_points, 0);
    EXPECT_EQ(face.load(TestFont::kB)->outline.n_contours, 2);
    EXPECT_EQ(face.load(TestFont::kC)->outline.n_points, 10);

    const FT_Outline composite = face.load(TestFont::kAacute)->outline;
    ASSERT_EQ(composite.n_points, 6);
    EXPECT_EQ(composite.points[0].x, 0);
    EXPECT_EQ(composite.points[3].x, 250); // the acute, moved
    EXPECT_EQ(composite.points[4].y, 800);
}

TEST(TestFont, LatinScalesToAnotherEm) {
    const FreeTypeFace face(TestFont::latin(2048).build());
    EXPECT_EQ(face->units_per_EM, 2048);
    EXPECT_EQ(face->descender, -410); // -409.6, rounded down
    EXPECT_EQ(face.advance(TestFont::kA), 1228);
    EXPECT_EQ(face.load(TestFont::kA)->metrics.horiBearingY, 1433);
}

TEST(TestFont, TheTwoFacesOfTheBracketStandInTheVerticalFont) {
    const FreeTypeFace face(TestFont::vertical().build());
    EXPECT_TRUE(FT_HAS_VERTICAL(face.get()));
    EXPECT_EQ(face->num_glyphs, TestFont::kVerticalGlyphs);
    EXPECT_EQ(face.glyphOf(0x300C), TestFont::kBracket);
    EXPECT_EQ(face.load(TestFont::kSpace)->metrics.vertAdvance, 500);
    EXPECT_EQ(face.load(TestFont::kBracketVertical)->metrics.vertBearingY, 700);
}

TEST(TestFont, OpenTypeSanitizerAndFontToolsAcceptEveryFont) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    const TempDir scratch;
    const std::pair<const char*, Bytes> fonts[] = {
        {"latin.ttf", TestFont::latin().build()},
        {"latin2048.ttf", TestFont::latin(2048).build()},
        {"latin16.ttf", TestFont::latin(16).build()},
        {"vertical.ttf", TestFont::vertical().build()},
        {"openType.otf", TestFont::openType().build()},
    };
    for (const auto& [name, bytes] : fonts) {
        const std::string file = scratch.write(name, bytes).string();
        const ProcessResult sanitizer =
            runProgram("ots-sanitize", {file, scratch.path("sanitized").string()});
        EXPECT_TRUE(sanitizer.ok()) << name << ": " << sanitizer.describe();

        const ProcessResult fontTools =
            runPython("import sys\nfrom fontTools.ttLib import TTFont\n"
                      "font = TTFont(sys.argv[1], lazy=False, checkChecksums=2)\n"
                      "font.ensureDecompiled()\n",
                      {file});
        EXPECT_TRUE(fontTools.ok()) << name << ": " << fontTools.describe();
        EXPECT_EQ(fontTools.errors, "") << name;
    }
}

TEST(TestFont, AFieldATableAndAMissingTableCanBeChosen) {
    TestFont font = TestFont::latin();
    font.os2.usWeightClass = 5;
    font.without("post").with("kern", Bytes{1}).with("name", Bytes{2});
    const SfntBuilder sfnt = font.sfnt();
    EXPECT_EQ(sfnt.get("OS/2").u16At(4), 5);
    EXPECT_FALSE(sfnt.has("post"));
    EXPECT_EQ(sfnt.get("kern"), Bytes{1});
    EXPECT_EQ(sfnt.get("name"), Bytes{2});
}

TEST(TestFont, ATableTakenOutCanComeBackAndAnExtraOneCanGo) {
    TestFont font = TestFont::latin();
    font.without("post").with("post", Bytes{3}).with("kern", Bytes{1}).without("kern");
    EXPECT_EQ(font.sfnt().get("post"), Bytes{3});
    EXPECT_FALSE(font.sfnt().has("kern"));
}

TEST(TestFont, IndexToLocFormatMayContradictLoca) {
    TestFont font = TestFont::latin();
    font.head.indexToLocFormat = 1;
    const SfntBuilder sfnt = font.sfnt();
    EXPECT_EQ(sfnt.get("head").i16At(50), 1);
    EXPECT_EQ(sfnt.get("loca").size(), 2u * (TestFont::kLatinGlyphs + 1));
}

} // namespace
} // namespace KWTest
