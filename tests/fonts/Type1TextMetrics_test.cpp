// Text metrics as Type 1 fonts fill them, by their metrics files.

#include "fonts/MetricsMode.h"
#include "fonts/Type1Fixture.h"

#include <KWCommon15/KWParser.h>

#include <cmath>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using Type1TextMetrics = Type1Test;

template <class Font>
FS_NewTextMetricEx metricsOf(const Font& font, int size) {
    FS_NewTextMetricEx metric;
    EXPECT_TRUE(font->getOutlineTextMetrics(metric, size, 0));
    return metric;
}
constexpr int kEm = -1000;

/// A box of 1030, of which 780 are above the baseline.
AfmFile tellingAFM() {
    AfmFile file = AfmFile::latin();
    file.fontBBox = "-50 -250 1050 780";
    file.italicAngle = "-12.5";
    file.extraLines = {"CapHeight 705", "Ascender 752", "Descender -231"};
    file.charMetrics = {"C 32 ; WX 250 ; N space ; B 0 0 0 0 ;",
                        "C 65 ; WX 701 ; N A ; B 0 0 700 700 ;"};
    return file;
}

TEST_F(Type1TextMetrics, AnAfmFileTellsExtentsWidthsAndTheAngle) {
    const auto font = scannedAFM(tellingAFM());
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 0)) << "without a load";
    EXPECT_EQ(metric.getAscent(), 780);
    EXPECT_EQ(metric.getDescent(), 250);
    EXPECT_EQ(metric.getCapHeight(), 705);
    EXPECT_EQ(metric.getTypoAscender(), 752);
    EXPECT_EQ(metric.getTypoDescender(), -231);
    EXPECT_EQ(metric.getTypoLineGap(), 0);
    EXPECT_FALSE(metric.hasVertTypoInfo());
    EXPECT_EQ(metric.getExternalLeading(), 30);
    EXPECT_FLOAT_EQ(metric.getAveCharWidth(), (250 + 701) / 2.0F);
    EXPECT_EQ(metric.getMaxCharWidth(), 701);
    EXPECT_EQ(metric.getItalicAngle(), -12.5F);
    EXPECT_TRUE(metric.isItalic());
    EXPECT_FALSE(metric.isFixedPitch());
    EXPECT_EQ(metric.getFontBBox(), (std::array<float, 4>{-50, -250, 1050, 780}));
    EXPECT_EQ(metricFields(metric), metricFields(metricsOf(font, kEm)));
}

TEST_F(Type1TextMetrics, TheLeadingOfAnAfmFileIsSharedAsInOtherFonts) {
    // The box of 752 and 231 leaves 17 of the em; below it lie 19, of which 8.5 belong to the em.
    const auto font = scannedAFM(tellingAFM());
    EXPECT_EQ(metricsOf(font, kEm).getInternalLeadingD(), 19 - 8.5F);
    EXPECT_EQ(metricsOf(font, kEm).getInternalLeadingA(), 780 - 752 - 17 + 8.5F);
    const MetricsMode windows(true);
    EXPECT_EQ(metricsOf(font, kEm).getInternalLeadingA(), 15);
    EXPECT_EQ(metricsOf(font, kEm).getInternalLeadingD(), 15);
    EXPECT_FALSE(metricsOf(font, kEm).hasTypoInfo());
}

TEST_F(Type1TextMetrics, SizesOfAnAfmFileCountAsForItsWidths) {
    const auto font = loadedAFM(tellingAFM());
    EXPECT_FLOAT_EQ(metricsOf(font, -500).getAscent(), 390);
    const FS_NewTextMetricEx metric = metricsOf(font, 103);
    EXPECT_FLOAT_EQ(metric.getAscent() + metric.getDescent(), 103);
    EXPECT_FLOAT_EQ(metric.getMaxCharWidth(), font->getTextWidth(u"A", 103, false, nullptr, 0));
    EXPECT_FALSE(metricsOf(font, 0).hasValue());
    EXPECT_EQ(metricsOf(font, 0).getItalicAngle(), -12.5F);
}

TEST_F(Type1TextMetrics, AFontBoxWithinTheEmLeavesNoExternalLeading) {
    AfmFile file = tellingAFM();
    file.fontBBox = "0 -200 1000 800";
    EXPECT_EQ(metricsOf(scannedAFM(file), kEm).getExternalLeading(), 0);
}

TEST_F(Type1TextMetrics, AnAfmFileWhoseBoxStandsAboveTheBaselineHasNoDescent) {
    AfmFile file = tellingAFM();
    file.fontBBox = "0 100 500 700";
    EXPECT_EQ(metricsOf(scannedAFM(file), kEm).getDescent(), 0);
}

TEST_F(Type1TextMetrics, AnAfmFileWithAnEmptyFontBoxHasNoLengthsFromAscentToDescent) {
    AfmFile file = tellingAFM();
    file.fontBBox = "0 0 0 0";
    const FS_NewTextMetricEx metric = metricsOf(scannedAFM(file), 1000);
    EXPECT_FALSE(metric.hasValue());
    EXPECT_EQ(metric.getMaxCharWidth(), 0);
}

TEST_F(Type1TextMetrics, LengthsBeyondWhatARecordHoldsStopAtItsLimits) {
    AfmFile file = tellingAFM();
    file.fontBBox = "0 -1e38 1e38 1e38";
    const FS_NewTextMetricEx metric = metricsOf(scannedAFM(file), -2000000000);
    EXPECT_TRUE(std::isfinite(metric.getAscent()));
    EXPECT_GT(metric.getAscent(), 1e38F);
    EXPECT_LT(metric.getFontBBox()[1], -1e38F);
}

TEST_F(Type1TextMetrics, AnAfmFileTellsAFixedPitchAndNoScripts) {
    AfmFile file = tellingAFM();
    file.extraLines.push_back("IsFixedPitch true");
    const FS_NewTextMetricEx metric = metricsOf(scannedAFM(file), kEm);
    EXPECT_TRUE(metric.isFixedPitch());
    EXPECT_FALSE(metric.isSerifLike());
    EXPECT_FALSE(metric.isLatin1());
    EXPECT_EQ(metric.getCodePageBits0(), 0U);
}

TEST_F(Type1TextMetrics, AreSymbolicWhenThePrinterFontIs) {
    EXPECT_FALSE(metricsOf(scannedAFM(), kEm).isSymbolFont());
    Type1Font symbols = Type1Font::symbols();
    symbols.fontName = "Symbol";
    writePrinterFont(symbols);
    const auto font = scannedAFM();
    EXPECT_EQ(metricsOf(font, kEm).isSymbolFont(), font->isSymbolicFont(0));
    EXPECT_TRUE(metricsOf(font, kEm).isSymbolFont());
}

TEST_F(Type1TextMetrics, TheUnicodeRangeIsThatOfTheFontsEntry) {
    options.unicodeRange = std::make_unique<KWCommonNS::KWUnicodeRange>();
    ASSERT_TRUE(options.unicodeRange->parseUnicodeRange(
        KWCommonNS::KWParser::parse(UnicodeString("U+61-7A"))));
    EXPECT_TRUE(metricsOf(scannedAFM(), kEm).isInUnicodeRange('a'));
    EXPECT_FALSE(metricsOf(scannedPFM(), kEm).isInUnicodeRange('A'));
}

PfmFile tellingPFM() {
    PfmFile file = PfmFile::latin();
    file.ascent = 790;
    file.pixHeight = 1035;
    file.internalLeading = 35;
    file.avgWidth = 512;
    file.maxWidth = 1111;
    file.pitchAndFamily = 0x11;
    return file;
}

TEST_F(Type1TextMetrics, APfmFileTellsExtentsWidthsAndItsFamily) {
    const auto font = scannedPFM(tellingPFM());
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 0)) << "without a load";
    EXPECT_EQ(metric.getAscent(), 790);
    EXPECT_EQ(metric.getDescent(), 1035 - 790);
    EXPECT_EQ(metric.getInternalLeadingA(), 17.5F);
    EXPECT_EQ(metric.getInternalLeadingD(), 17.5F);
    EXPECT_EQ(metric.getAveCharWidth(), 512);
    EXPECT_EQ(metric.getMaxCharWidth(), 1111);
    EXPECT_FALSE(metric.isFixedPitch());
    EXPECT_TRUE(metric.isSerifLike());
    EXPECT_FALSE(metric.isScriptLike());
    EXPECT_FALSE(metric.hasTypoInfo());
    EXPECT_EQ(metric.getCapHeight(), 0);
    EXPECT_EQ(metric.getExternalLeading(), 0);
    EXPECT_EQ(metric.getItalicAngle(), 0) << "the file has no angle";
    EXPECT_EQ(metric.getFontBBox(), (std::array<float, 4>{})) << "and no box";
    EXPECT_EQ(metricFields(metric), metricFields(metricsOf(font, kEm)));
}

TEST_F(Type1TextMetrics, TheStatedLeadingOfAPfmFileIsHalvedInEitherMode) {
    const auto font = scannedPFM(tellingPFM());
    const MetricsMode windows(true);
    EXPECT_EQ(metricsOf(font, kEm).getInternalLeadingA(), 17.5F);
    EXPECT_EQ(metricsOf(font, -2000).getInternalLeadingD(), 35);
}

TEST_F(Type1TextMetrics, TheFamilyOfAPfmFileIsTakenAsItIs) {
    PfmFile file = tellingPFM();
    file.pitchAndFamily = 0x40;
    const FS_NewTextMetricEx metric = metricsOf(scannedPFM(file), kEm);
    EXPECT_TRUE(metric.isFixedPitch());
    EXPECT_TRUE(metric.isScriptLike());
    EXPECT_FALSE(metric.isSerifLike());
}

TEST_F(Type1TextMetrics, APfmFileLowerThanItsAscentHasNoDescent) {
    PfmFile file = tellingPFM();
    file.pixHeight = 700;
    EXPECT_EQ(metricsOf(scannedPFM(file), kEm).getDescent(), 0);
}

TEST_F(Type1TextMetrics, SizesOfAPfmFileCountAsForItsWidths) {
    PfmFile file = tellingPFM();
    file.extents.clear();
    file.pixWidth = 600;
    const auto font = loadedPFM(file);
    const FS_NewTextMetricEx metric = metricsOf(font, 79);
    EXPECT_FLOAT_EQ(metric.getAscent(), 79) << "its ascent is what widths are measured by";
    EXPECT_FLOAT_EQ(font->getTextWidth(u"A", 79, false, nullptr, 0), 60);
    EXPECT_FLOAT_EQ(metric.getAveCharWidth(), 51.2F);
}

TEST_F(Type1TextMetrics, ThePrinterFontOfAPfmFileAddsTheBoxAndTheAngle) {
    Type1Font program = Type1Font::latin();
    program.italicAngle = "-9";
    writePrinterFont(program);
    const FS_NewTextMetricEx metric = metricsOf(scannedPFM(tellingPFM()), kEm);
    EXPECT_EQ(metric.getItalicAngle(), -9);
    EXPECT_EQ(metric.getFontBBox(), (std::array<float, 4>{-50, -250, 1050, 750}));
    EXPECT_EQ(metric.getAscent(), 790) << "the extents are those of the metrics file";
}

TEST_F(Type1TextMetrics, TheCharacterSetOfAPfmFileIsItsCodePage) {
    PfmFile file = tellingPFM();
    file.charSet = 204;
    const FS_NewTextMetricEx metric = metricsOf(scannedPFM(file), kEm);
    EXPECT_EQ(metric.getCodePageBits0(), 4U);
    EXPECT_TRUE(metric.isCyrillic());
    EXPECT_FALSE(metric.isLatin1());
}

} // namespace
} // namespace KWFontService_NS
