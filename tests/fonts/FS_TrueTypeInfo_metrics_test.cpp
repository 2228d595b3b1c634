#include "fonts/SfntFixture.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <climits>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A font with a 2048-unit em and win metrics that add up to 2000.
TestFont oddEm() {
    TestFont file = TestFont::latin();
    file.head.unitsPerEm = 2048;
    file.os2.usWinAscent = 1500;
    file.os2.usWinDescent = 500;
    return file;
}

class MetricsTest : public testing::Test {
protected:
    FS_TrueType& load(const TestFont& file) {
        font_ = std::make_unique<MemoryFont<>>(file.build());
        EXPECT_TRUE(font_->scanAndLoad()) << font_->complaint();
        return **font_;
    }

private:
    std::unique_ptr<MemoryFont<>> font_;
};

TEST_F(MetricsTest, SizesFollowTheSizeRule) {
    FS_TrueType& font = load(oddEm());
    EXPECT_FLOAT_EQ(font.getGlyphWidth(TestFont::kA, 0, false, 0), 600.0F);
    EXPECT_FLOAT_EQ(font.getGlyphWidth(TestFont::kA, -100, false, 0), 600.0F * 100 / 2048);
    EXPECT_FLOAT_EQ(font.getGlyphWidth(TestFont::kA, 100, false, 0), 600.0F * 100 / 2000);
    EXPECT_FLOAT_EQ(font.getGlyphWidth(TestFont::kA, -2048, false, 0), 600.0F);
    EXPECT_FLOAT_EQ(font.getGlyphWidth(TestFont::kA, INT_MIN, false, 0), 600.0F * 1048576);
}

TEST_F(MetricsTest, AGlyphPastTheMetricsHasTheLastAdvance) {
    FS_TrueType& font = load(TestFont::latin());
    EXPECT_EQ(font.getGlyphWidth(TestFont::kAcute, 0, false, 0), 300.0F);
    EXPECT_EQ(font.getGlyphWidth(TestFont::kAacute, 0, false, 0), 300.0F);
    EXPECT_EQ(font.getGlyphWidth(0xFFFE, 0, false, 0), 300.0F);
}

TEST_F(MetricsTest, NoGlyphHasNoWidth) {
    FS_TrueType& font = load(TestFont::vertical());
    EXPECT_EQ(font.getGlyphWidth(0xFFFF, 0, false, 0), 0.0F);
    EXPECT_EQ(font.getGlyphWidth(0xFFFF, -1000, true, 0), 0.0F);
}

TEST_F(MetricsTest, BeforeTheLoadEveryWidthIsZero) {
    MemoryFont<> font(TestFont::vertical().build());
    ASSERT_TRUE(font.scan());
    EXPECT_EQ(font->getGlyphWidth(2, 0, false, 0), 0.0F);
    EXPECT_EQ(font->getGlyphWidth(2, 0, true, 0), 0.0F);
    EXPECT_EQ(font->getDefaultCharWidth(0, 0), 0.0F);
    EXPECT_EQ(font->getPairKerningValue(2, 3, 0, false, 0), 0.0F);
    EXPECT_EQ(font->getTextWidth("A", -1000, false, nullptr, 0), 0.0F);
    EXPECT_EQ(font->getGlyphVertOriginY(2, 0, 0), 0.0F);
    EXPECT_FALSE(font->hasVerticalMetrics(0));
}

TEST_F(MetricsTest, VerticalAdvancesComeFromVmtx) {
    TestFont file = TestFont::vertical();
    file.with("vmtx", Vmtx{.metrics = {{1100, 0}, {700, 0}}})
        .with("vhea", Vhea{.numOfLongVerMetrics = 2});
    FS_TrueType& font = load(file);
    EXPECT_TRUE(font.hasVerticalMetrics(0));
    EXPECT_EQ(font.getGlyphWidth(0, 0, true, 0), 1100.0F);
    EXPECT_EQ(font.getGlyphWidth(1, 0, true, 0), 700.0F);
    EXPECT_EQ(font.getGlyphWidth(4, 0, true, 0), 700.0F);
    EXPECT_EQ(font.getGlyphWidth(1, 0, false, 0), 500.0F);
}

TEST_F(MetricsTest, WithoutVerticalFormsVerticalMetricsDoNotCount) {
    FS_TrueType& font = load(TestFont::vertical().without("GSUB"));
    EXPECT_FALSE(font.hasVerticalMetrics(0));
    EXPECT_EQ(font.getGlyphWidth(1, 0, true, 0), 500.0F);
}

TEST_F(MetricsTest, VerticalAdvancesOfAFontWithoutThemAreTheHorizontalOnes) {
    FS_TrueType& font = load(TestFont::latin());
    EXPECT_FALSE(font.hasVerticalMetrics(0));
    EXPECT_EQ(font.getGlyphWidth(TestFont::kA, 0, true, 0), 600.0F);
}

TEST_F(MetricsTest, TheDefaultWidthIsTheMostCommonAdvance) {
    TestFont file = oddEm();
    file.hmtx = {.metrics = {{500, 0}, {500, 0}, {600, 0}, {600, 0}}, .bearings = {0, 0, 0}};
    file.hhea.numberOfHMetrics = 4;
    FS_TrueType& font = load(file);
    EXPECT_FLOAT_EQ(font.getDefaultCharWidth(0, 0), 500.0F);
    EXPECT_FLOAT_EQ(font.getDefaultCharWidth(-10, 0), 5000.0F / 2048);
    EXPECT_FLOAT_EQ(font.getDefaultCharWidth(10, 0), 2.5F);
}

TEST_F(MetricsTest, AFontWithoutMetricsHasNoWidths) {
    TestFont file = TestFont::latin();
    file.hhea.numberOfHMetrics = 0;
    FS_TrueType& font = load(file);
    EXPECT_EQ(font.getGlyphWidth(TestFont::kA, 0, false, 0), 0.0F);
    EXPECT_EQ(font.getDefaultCharWidth(0, 0), 0.0F);
}

TEST_F(MetricsTest, AnEmOfZeroAndNoWinMetricsAnswerZero) {
    TestFont file = TestFont::vertical();
    file.head.unitsPerEm = 0;
    file.hhea.ascender = 0;
    file.hhea.descender = 0;
    file.os2.usWinAscent = 0;
    file.os2.usWinDescent = 0;
    file.with("kern", Kern{.subtables = {{.pairs = {{2, 3, -50}}}}});
    FS_TrueType& font = load(file);
    for (const int size : {-1000, 1000}) {
        EXPECT_EQ(font.getGlyphWidth(2, size, false, 0), 0.0F);
        EXPECT_EQ(font.getDefaultCharWidth(size, 0), 0.0F);
        EXPECT_EQ(font.getTextWidth(u"\u3042", size, false, nullptr, 0), 0.0F);
        EXPECT_EQ(font.getGlyphVertOriginY(2, size, 0), 0.0F);
        EXPECT_EQ(font.getDefaultVertOriginY(size, 0), 0.0F);
    }
    EXPECT_EQ(font.getPairKerningValue(2, 3, -1000, false, 0), 0.0F);
    EXPECT_EQ(font.getXHeight(0), 0.0F);
    EXPECT_EQ(font.getCapHeight(0), 0.0F);
    EXPECT_EQ(font.getTypoAscender(0), 0.0F);
    EXPECT_EQ(font.getTypoDescender(0), 0.0F);
    EXPECT_EQ(font.face(0)->getTypoDescender(), 0.0F);
    EXPECT_EQ(font.getUnitsPerEm(0), 0);
}

// --- vertical origins ---------------------------------------------------------------------------

TEST_F(MetricsTest, OriginsComeFromVorgAndScale) {
    FS_TrueType& font = load(TestFont::vertical());
    const unsigned short own = TestFont::kBracketVertical;
    EXPECT_FLOAT_EQ(font.getGlyphVertOriginY(own, 0, 0), 900.0F);
    EXPECT_FLOAT_EQ(font.getGlyphVertOriginY(own, -500, 0), 450.0F);
    EXPECT_FLOAT_EQ(font.getGlyphVertOriginY(own, 500, 0), 450.0F); // win metrics add up to the em
    EXPECT_FLOAT_EQ(font.getGlyphVertOriginY(TestFont::kBracket, 0, 0), 880.0F);
    EXPECT_FLOAT_EQ(font.getDefaultVertOriginY(0, 0), 880.0F);
    EXPECT_FLOAT_EQ(font.getDefaultVertOriginY(-100, 0), 88.0F);
}

TEST_F(MetricsTest, OriginsOfPositiveSizesCountByTheWinMetrics) {
    TestFont file = TestFont::vertical();
    file.os2.usWinAscent = 1500;
    file.os2.usWinDescent = 500;
    FS_TrueType& font = load(file);
    EXPECT_FLOAT_EQ(font.getGlyphVertOriginY(TestFont::kBracketVertical, 500, 0), 225.0F);
    EXPECT_FLOAT_EQ(font.getDefaultVertOriginY(500, 0), 220.0F);
}

TEST_F(MetricsTest, WithoutVorgEveryOriginIsZero) {
    FS_TrueType& font = load(TestFont::latin());
    for (const int size : {0, -1000, 1000}) {
        EXPECT_EQ(font.getGlyphVertOriginY(TestFont::kA, size, 0), 0.0F);
        EXPECT_EQ(font.getDefaultVertOriginY(size, 0), 0.0F);
    }
}

// --- kerning ------------------------------------------------------------------------------------

TestFont kerned(std::uint16_t coverage) {
    TestFont file = oddEm();
    file.with("kern", Kern{.subtables = {{.coverage = coverage,
                                          .pairs = {{TestFont::kA, TestFont::kB, -1000}}}}});
    return file;
}

TEST_F(MetricsTest, KerningScalesForEmSizesOnly) {
    FS_TrueType& font = load(kerned(0x0001));
    EXPECT_TRUE(font.hasPairKerningInfo(false, 0));
    EXPECT_FALSE(font.hasPairKerningInfo(true, 0));
    const auto kerning = [&](int size) {
        return font.getPairKerningValue(TestFont::kA, TestFont::kB, size, false, 0);
    };
    EXPECT_FLOAT_EQ(kerning(0), -1000.0F);
    EXPECT_FLOAT_EQ(kerning(-1000), -1000.0F * 1000 / 2048);
    // Callers take a positive size in font units, unlike every other metric.
    EXPECT_FLOAT_EQ(kerning(1000), -1000.0F);
}

TEST_F(MetricsTest, KerningNeedsThePairAndTheDirection) {
    FS_TrueType& horizontal = load(kerned(0x0001));
    EXPECT_EQ(horizontal.getPairKerningValue(TestFont::kB, TestFont::kA, 0, false, 0), 0.0F);
    EXPECT_EQ(horizontal.getPairKerningValue(TestFont::kA, TestFont::kB, 0, true, 0), 0.0F);
    FS_TrueType& vertical = load(kerned(0x0000));
    EXPECT_TRUE(vertical.hasPairKerningInfo(true, 0));
    EXPECT_EQ(vertical.getPairKerningValue(TestFont::kA, TestFont::kB, 0, true, 0), -1000.0F);
    EXPECT_EQ(vertical.getPairKerningValue(TestFont::kA, TestFont::kB, 0, false, 0), 0.0F);
}

TEST_F(MetricsTest, AFontWithoutKernHasNoKerning) {
    FS_TrueType& font = load(TestFont::latin());
    EXPECT_FALSE(font.hasPairKerningInfo(false, 0));
    EXPECT_FALSE(font.hasPairKerningInfo(true, 0));
    EXPECT_EQ(font.getPairKerningValue(TestFont::kA, TestFont::kB, 0, false, 0), 0.0F);
}

TEST_F(MetricsTest, ABadKernIsReportedAtTheLoad) {
    TestFont file = TestFont::latin();
    file.with("kern", Kern{.subtables = {{.pairs = {{2, 3, 4}}, .length = 15}}});
    EXPECT_EQ(loadComplaint(file.build()), fileError("'kern' subtable 0 invalid pairs size"));
}

// --- text ---------------------------------------------------------------------------------------

TEST_F(MetricsTest, TextWidthIsTheSumOfTheAdvances) {
    FS_TrueType& font = load(oddEm());
    int missing = 7;
    EXPECT_FLOAT_EQ(font.getTextWidth("AB C", -2048, false, &missing, 0), 600 + 650 + 250 + 700);
    EXPECT_EQ(missing, -1);
    EXPECT_FLOAT_EQ(font.getTextWidth("AB", -100, false, nullptr, 0), 1250.0F * 100 / 2048);
    EXPECT_FLOAT_EQ(font.getTextWidth("AB", 100, false, nullptr, 0), 1250.0F * 100 / 2000);
    EXPECT_EQ(font.getTextWidth("", -100, false, &missing, 0), 0.0F);
    EXPECT_EQ(font.getTextWidth("AB", 0, false, nullptr, 0), 0.0F); // no form in font units
}

TEST_F(MetricsTest, MissingCharactersCountAsGlyphZero) {
    FS_TrueType& font = load(TestFont::latin());
    int missing = 7;
    EXPECT_FLOAT_EQ(font.getTextWidth("xAyz", -1000, false, &missing, 0), 3 * 500 + 600);
    EXPECT_EQ(missing, 0);
}

TEST_F(MetricsTest, FirstMissingCountsUtf16Units) {
    TestFont file = TestFont::latin();
    file.cmap = {.records = {{3, 10, CmapFormat12::of({{'A', 2}, {0x1F600, 3}}).build()}}};
    FS_TrueType& font = load(file);
    int missing = 7;
    EXPECT_FLOAT_EQ(font.getTextWidth(u"\U0001F600A\U0001F600x", -1000, false, &missing, 0),
                    650 + 600 + 650 + 500);
    EXPECT_EQ(missing, 5);
    // A missing supplementary character is one character, told by its first unit.
    EXPECT_FLOAT_EQ(font.getTextWidth(u"A\U0001F601A", -1000, false, &missing, 0), 600 + 500 + 600);
    EXPECT_EQ(missing, 1);
}

TEST_F(MetricsTest, LoneSurrogatesAreMissingCharacters) {
    FS_TrueType& font = load(TestFont::latin());
    int missing = 7;
    const UnicodeString text = UnicodeString("A")
                                   .append(static_cast<char16_t>(0xDC00))
                                   .append(static_cast<char16_t>(0xD800));
    EXPECT_FLOAT_EQ(font.getTextWidth(text, -1000, false, &missing, 0), 600 + 2 * 500);
    EXPECT_EQ(missing, 1);
}

TEST_F(MetricsTest, VerticalTextTakesVerticalFormsAndAdvances) {
    TestFont file = TestFont::vertical();
    file.with("vmtx", Vmtx{.metrics = {{1000, 0}, {500, 0}, {900, 0}, {800, 0}, {700, 0}}})
        .with("vhea", Vhea{.numOfLongVerMetrics = 5});
    FS_TrueType& font = load(file);
    EXPECT_FLOAT_EQ(font.getTextWidth(u"\u3042\u300C", -1000, true, nullptr, 0), 900 + 700);
    EXPECT_FLOAT_EQ(font.getTextWidth(u"\u3042\u300C", -1000, false, nullptr, 0), 2000);
}

/// An end-user-defined character font: U+E000 is kA, 600 of 1000 units; U+E001 has no advance.
TestFont eudcFile() {
    TestFont file = TestFont::latin();
    file.cmap = Cmap::unicode({{0xE000, TestFont::kA}, {0xE001, TestFont::kB}});
    file.hmtx.metrics[TestFont::kB].advance = 0;
    return file;
}

TEST_F(MetricsTest, TextWidthAsksTheEudcFontForPrivateCharacters) {
    MemoryFont<> eudc(eudcFile().build());
    ASSERT_TRUE(eudc.scanAndLoad());
    TestFont file = oddEm();
    FS_TrueType& font = load(file);
    font.setEudcFont({&*eudc, 0}, 0);
    int missing = 7;
    // Each font scales by its own em.
    EXPECT_FLOAT_EQ(font.getTextWidth(u"A\uE000", -1000, false, &missing, 0),
                    600.0F * 1000 / 2048 + 600);
    EXPECT_EQ(missing, -1);
    // Size 0 measures the end-user-defined characters alone, in their font's units.
    EXPECT_FLOAT_EQ(font.getTextWidth(u"A\uE000B", 0, false, &missing, 0), 600);
    // A character without an advance there, or outside the range, is missing.
    EXPECT_FLOAT_EQ(font.getTextWidth(u"\uE000\uE001", -2048, false, &missing, 0),
                    600 * 2.048F + 500);
    EXPECT_EQ(missing, 1);
    EXPECT_FLOAT_EQ(font.getTextWidth(u"\uF900\uE000", -2048, false, &missing, 0),
                    500 + 600 * 2.048F);
    EXPECT_EQ(missing, 0);
}

TEST_F(MetricsTest, VerticalTextTakesTheVerticalAdvanceOfAnEudcFont) {
    TestFont source = TestFont::vertical();
    source.cmap = Cmap::unicode({{0xE000, TestFont::kHiraganaA}});
    source.with("vmtx", Vmtx{.metrics = {{1000, 0}, {500, 0}, {900, 0}, {800, 0}, {700, 0}}});
    MemoryFont<> eudc(source.build());
    ASSERT_TRUE(eudc.scanAndLoad());
    FS_TrueType& font = load(TestFont::latin());
    font.setEudcFont({&*eudc, 0}, 0);
    EXPECT_FLOAT_EQ(font.getTextWidth(u"\uE000", -1000, true, nullptr, 0), 900);
    EXPECT_FLOAT_EQ(font.getTextWidth(u"\uE000", -1000, false, nullptr, 0), 1000);
}

// --- extents ------------------------------------------------------------------------------------

TEST_F(MetricsTest, HeightsAreInEm) {
    TestFont file = TestFont::latin(2048);
    file.os2.sxHeight = 1024;
    file.os2.sCapHeight = 1536;
    file.os2.sTypoAscender = 1600;
    file.os2.sTypoDescender = -512;
    FS_TrueType& font = load(file);
    EXPECT_FLOAT_EQ(font.getXHeight(0), 0.5F);
    EXPECT_FLOAT_EQ(font.getCapHeight(0), 0.75F);
    EXPECT_FLOAT_EQ(font.getTypoAscender(0), 0.78125F);
    EXPECT_FLOAT_EQ(font.face(0)->getTypoDescender(), -0.25F);
    EXPECT_EQ(font.getUnitsPerEm(0), 2048);
}

TEST_F(MetricsTest, TypoDescenderOfASingleFaceIsItsAscender) {
    FS_TrueType& font = load(TestFont::latin());
    EXPECT_FLOAT_EQ(font.getTypoDescender(0), 0.8F);
    EXPECT_EQ(font.getTypoDescender(0), font.getTypoAscender(0));
}

TEST_F(MetricsTest, HeightsThatAreNotPositiveAreZero) {
    TestFont file = TestFont::latin();
    file.os2.sxHeight = -5;
    file.os2.sCapHeight = 0;
    FS_TrueType& font = load(file);
    EXPECT_EQ(font.getXHeight(0), 0.0F);
    EXPECT_EQ(font.getCapHeight(0), 0.0F);
    file.os2 = {.version = 1};
    FS_TrueType& old = load(file);
    EXPECT_EQ(old.getXHeight(0), 0.0F);
}

// --- whole fonts --------------------------------------------------------------------------------

TEST_F(MetricsTest, AdvancesAndKerningOfAPackagedFontEqualFreeTypes) {
    const Bytes file = readFile(packagedFont("DejaVuSans"));
    MemoryFont<> font(file);
    ASSERT_TRUE(font.scanAndLoad());
    const FreeTypeFace face(file);
    for (FT_UInt gid = 0; gid < static_cast<FT_UInt>(face->num_glyphs); gid += 7)
        EXPECT_EQ(font->getGlyphWidth(static_cast<unsigned short>(gid), 0, false, 0),
                  static_cast<float>(face.advance(gid)))
            << gid;
    ASSERT_TRUE(font->hasPairKerningInfo(false, 0));
    int kerned = 0;
    for (FT_ULong left = 'A'; left <= 'z'; ++left)
        for (FT_ULong right = 'A'; right <= 'z'; ++right) {
            const FT_UInt l = face.glyphOf(left);
            const FT_UInt r = face.glyphOf(right);
            FT_Vector kerning{};
            FT_Get_Kerning(face.get(), l, r, FT_KERNING_UNSCALED, &kerning);
            kerned += kerning.x != 0;
            EXPECT_EQ(font->getPairKerningValue(static_cast<unsigned short>(l),
                                                static_cast<unsigned short>(r), 0, false, 0),
                      static_cast<float>(kerning.x));
        }
    EXPECT_GT(kerned, 50);
}

} // namespace
} // namespace KWFontService_NS
