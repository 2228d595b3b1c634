// Text metrics as sfnt fonts fill them.

#include "fonts/FS_FontFileOptions.h"
#include "fonts/FS_WOFF.h"
#include "fonts/FaceFixture.h"
#include "fonts/MetricsMode.h"
#include "support/FontPackages.h"
#include "support/Paths.h"
#include "support/WoffFile.h"

#include <KWFontService17/FS_FontInfo.h>

#include <KWCommon15/KWParser.h>

#include <gtest/gtest.h>

#include <climits>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A font whose every metric is another number.
TestFont telling() {
    TestFont font = TestFont::vertical();
    font.head.unitsPerEm = 2048;
    font.head.xMin = -100;
    font.head.yMin = -400;
    font.head.xMax = 2300;
    font.head.yMax = 1900;
    font.hhea.lineGap = 67;
    font.post.italicAngle = -12;
    font.os2.xAvgCharWidth = 1031;
    font.os2.usWinAscent = 1850;
    font.os2.usWinDescent = 530;
    font.os2.sTypoAscender = 1600;
    font.os2.sTypoDescender = -410;
    font.os2.sTypoLineGap = 91;
    font.os2.sCapHeight = 1409;
    font.os2.ulUnicodeRange1 = 0x11;
    font.os2.ulUnicodeRange2 = 0x222;
    font.os2.ulUnicodeRange3 = 0x3333;
    font.os2.ulUnicodeRange4 = 0x44444;
    font.os2.ulCodePageRange1 = 0x20000;
    return font.with("vhea", Vhea{.vertTypoAscender = 1024,
                                  .vertTypoDescender = -1020,
                                  .vertTypoLineGap = 77,
                                  .numOfLongVerMetrics = 1});
}

/// The metrics of a font that was only scanned.
FS_NewTextMetricEx metricsOf(const TestFont& file, int size) {
    MemoryFont<> font(file.build());
    EXPECT_TRUE(font.scan()) << font.complaint();
    FS_NewTextMetricEx metric;
    EXPECT_TRUE(font->getOutlineTextMetrics(metric, size, 0));
    return metric;
}
constexpr int kEm = -2048;

TEST(TextMetrics, InFontUnitsAreWhatTheTablesSay) {
    MemoryFont<> font(telling().build());
    ASSERT_TRUE(font.scan());
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 0));
    EXPECT_EQ(metric.getAscent(), 1850);
    EXPECT_EQ(metric.getDescent(), 530);
    EXPECT_EQ(metric.getCapHeight(), 1409);
    EXPECT_EQ(metric.getTypoAscender(), 1600);
    EXPECT_EQ(metric.getTypoDescender(), -410);
    EXPECT_EQ(metric.getTypoLineGap(), 91);
    EXPECT_EQ(metric.getVertTypoAscender(), 1024);
    EXPECT_EQ(metric.getVertTypoDescender(), -1020);
    EXPECT_EQ(metric.getVertTypoLineGap(), 77);
    EXPECT_EQ(metric.getExternalLeading(), 67);
    EXPECT_EQ(metric.getAveCharWidth(), 1031);
    EXPECT_EQ(metric.getMaxCharWidth(), 2400);
    EXPECT_EQ(metric.getItalicAngle(), -12);
    EXPECT_EQ(metric.getFontBBox(), (std::array<float, 4>{-100, -400, 2300, 1900}));
    EXPECT_TRUE(metric.hasValue());
    EXPECT_TRUE(metric.hasTypoInfo());
    EXPECT_TRUE(metric.hasVertTypoInfo());
    EXPECT_TRUE(metric.isItalic());
    EXPECT_FALSE(metric.isSymbolFont());
    EXPECT_EQ(metricFields(metric), metricFields(metricsOf(telling(), kEm)));
}

TEST(TextMetrics, CarryWhatTheFontDeclaresToServe) {
    const FS_NewTextMetricEx metric = metricsOf(telling(), kEm);
    constexpr unsigned int kWords[] = {0x11, 0x222, 0x3333, 0x44444};
    for (unsigned int bit = 0; bit < 128; ++bit) {
        EXPECT_EQ(metric.checkUSB(static_cast<UnicodeSubsetBitFields>(bit)),
                  ((kWords[bit / 32] >> (bit % 32)) & 1) != 0)
            << bit;
    }
    EXPECT_EQ(metric.getCodePageBits0(), 0x20000U);
}

TEST(TextMetrics, ASizeBelowZeroCountsPerEm) {
    const FS_NewTextMetricEx metric = metricsOf(telling(), -1000);
    constexpr double kFactor = 1000.0 / 2048;
    EXPECT_FLOAT_EQ(metric.getAscent(), static_cast<float>(1850 * kFactor));
    EXPECT_FLOAT_EQ(metric.getDescent(), static_cast<float>(530 * kFactor));
    EXPECT_FLOAT_EQ(metric.getFontBBox()[1], static_cast<float>(-400 * kFactor));
    EXPECT_EQ(metric.getItalicAngle(), -12) << "an angle has no size";
}

TEST(TextMetrics, ASizeAboveZeroCountsFromAscentToDescent) {
    const FS_NewTextMetricEx metric = metricsOf(telling(), 1000);
    constexpr double kFactor = 1000.0 / (1850 + 530);
    EXPECT_FLOAT_EQ(metric.getAscent(), static_cast<float>(1850 * kFactor));
    EXPECT_FLOAT_EQ(metric.getAscent() + metric.getDescent(), 1000);
    EXPECT_FLOAT_EQ(metric.getMaxCharWidth(), static_cast<float>(2400 * kFactor));
}

TEST(TextMetrics, TheSizeScalesEveryLengthAlike) {
    const std::vector<double> units = metricFields(metricsOf(telling(), kEm));
    const std::vector<double> doubled = metricFields(metricsOf(telling(), 2 * kEm));
    constexpr std::size_t kAngle = 14;
    constexpr std::size_t kLengths = 19;
    for (std::size_t i = 0; i < kLengths; ++i)
        EXPECT_EQ(doubled[i], (i == kAngle ? 1 : 2) * units[i]) << i;
}

TEST(TextMetrics, SizeZeroMakesEveryLengthZeroAndLeavesTheRest) {
    TestFont font = telling();
    font.os2.panose = {3};
    const FS_NewTextMetricEx metric = metricsOf(font, 0);
    EXPECT_FALSE(metric.hasValue());
    EXPECT_EQ(metric.getTypoDescender(), 0);
    EXPECT_EQ(metric.getMaxCharWidth(), 0);
    EXPECT_EQ(metric.getItalicAngle(), -12);
    EXPECT_TRUE(metric.isScriptLike());
    EXPECT_TRUE(metric.checkUSB(USB_BasicLatin));
    EXPECT_EQ(metric.getCodePageBits0(), 0x20000U);
}

TEST(TextMetrics, TheLowestSizeIsASizeLikeOthers) {
    EXPECT_FLOAT_EQ(metricsOf(telling(), INT_MIN).getAscent(), 1850.0F * 1048576);
}

TEST(TextMetrics, AFontWithoutAMeasureHasNoLengths) {
    TestFont font = telling();
    font.head.unitsPerEm = 0;
    font.os2.usWinAscent = 0;
    font.os2.usWinDescent = 0;
    font.hhea.ascender = 0;
    font.hhea.descender = 0;
    for (const int size : {-1000, 1000}) {
        const FS_NewTextMetricEx metric = metricsOf(font, size);
        EXPECT_FALSE(metric.hasValue());
        EXPECT_EQ(metric.getAveCharWidth(), 0);
    }
}

// --- leadings -----------------------------------------------------------------------------------

TEST(TextMetrics, TheTypographicModeSharesTheLeadingByTheTypographicBox) {
    // Of the em of 2048 the box of 1600 and 410 leaves 38; below the box are 530 - 410 = 120, of
    // which half of those 38 belong to the em.
    const FS_NewTextMetricEx metric = metricsOf(telling(), kEm);
    EXPECT_EQ(metric.getInternalLeadingD(), 120 - 19);
    EXPECT_EQ(metric.getInternalLeadingA(), 1850 - 1600 - 38 + 19);
}

TEST(TextMetrics, TheEmTakesNoMoreThanLiesBelowTheTypographicBox) {
    TestFont font = telling();
    font.os2.usWinDescent = 415; // 5 below the box, less than half of 38
    const FS_NewTextMetricEx metric = metricsOf(font, kEm);
    EXPECT_EQ(metric.getInternalLeadingD(), 0);
    EXPECT_EQ(metric.getInternalLeadingA(), 1850 - 1600 - 38 + 5);
}

TEST(TextMetrics, HalvesOfAnOddLeadingAreKept) {
    TestFont font = telling();
    font.os2.sTypoAscender = 1601; // leaves 37
    EXPECT_EQ(metricsOf(font, kEm).getInternalLeadingD(), 120 - 18.5F);
}

TEST(TextMetrics, ATypographicDescenderOfTheWrongSignIsTurnedDown) {
    TestFont font = telling();
    font.os2.sTypoDescender = 410;
    EXPECT_EQ(metricFields(metricsOf(font, kEm)), metricFields(metricsOf(telling(), kEm)));
}

TEST(TextMetrics, AVerticalDescenderOfTheWrongSignIsTurnedDown) {
    TestFont font = telling();
    font.with("vhea", Vhea{.vertTypoDescender = 1020, .numOfLongVerMetrics = 1});
    EXPECT_EQ(metricsOf(font, kEm).getVertTypoDescender(), -1020);
}

TEST(TextMetrics, AFontWithoutVheaHasNoVerticalInfo) {
    const FS_NewTextMetricEx metric = metricsOf(TestFont::latin(), -1000);
    EXPECT_FALSE(metric.hasVertTypoInfo());
    EXPECT_EQ(metric.getVertTypoDescender(), 0);
    EXPECT_TRUE(metric.hasTypoInfo());
}

TEST(TextMetrics, TheWindowsModeHalvesWhatIsBeyondTheEm) {
    const MetricsMode windows(true);
    const FS_NewTextMetricEx metric = metricsOf(telling(), kEm);
    EXPECT_EQ(metric.getInternalLeadingA(), (1850 + 530 - 2048) / 2.0F);
    EXPECT_EQ(metric.getInternalLeadingD(), (1850 + 530 - 2048) / 2.0F);
    EXPECT_EQ(metric.getAscent(), 1850);
    EXPECT_EQ(metric.getExternalLeading(), 67);
    EXPECT_FLOAT_EQ(metricsOf(telling(), 1000).getInternalLeadingA(),
                    static_cast<float>(166 * 1000.0 / 2380));
}

TEST(TextMetrics, TheWindowsModeHasNoTypographicInfo) {
    const MetricsMode windows(true);
    const FS_NewTextMetricEx metric = metricsOf(telling(), kEm);
    EXPECT_FALSE(metric.hasTypoInfo());
    EXPECT_FALSE(metric.hasVertTypoInfo());
    EXPECT_EQ(metric.getTypoLineGap(), 0);
}

TEST(TextMetrics, TheWindowsModeLeavesTypographicFieldsAsTheyWere) {
    MemoryFont<> font(telling().build());
    ASSERT_TRUE(font.scan());
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 0));
    const MetricsMode windows(true);
    ASSERT_TRUE(font->getOutlineTextMetrics(metric, 2 * kEm, 0));
    EXPECT_EQ(metric.getAscent(), 3700);
    EXPECT_EQ(metric.getTypoAscender(), 1600);
    EXPECT_EQ(metric.getTypoDescender(), -410);
    EXPECT_EQ(metric.getTypoLineGap(), 91);
    EXPECT_EQ(metric.getVertTypoAscender(), 1024);
    EXPECT_EQ(metric.getVertTypoDescender(), -1020);
    EXPECT_EQ(metric.getVertTypoLineGap(), 77);
}

TEST(TextMetrics, BothModesLeaveTheSameInAll) {
    const FS_NewTextMetricEx typographic = metricsOf(telling(), kEm);
    const MetricsMode windows(true);
    const FS_NewTextMetricEx inHalves = metricsOf(telling(), kEm);
    EXPECT_EQ(typographic.getInternalLeadingA() + typographic.getInternalLeadingD(),
              inHalves.getInternalLeadingA() + inHalves.getInternalLeadingD());
}

// --- traits -------------------------------------------------------------------------------------

FS_NewTextMetricEx withPanose(std::array<std::uint8_t, 10> panose) {
    TestFont font = TestFont::latin();
    font.os2.panose = panose;
    return metricsOf(font, -1000);
}

TEST(TextMetrics, PitchAndFamilyComeFromPanose) {
    EXPECT_FALSE(withPanose({2, 0, 0, 3}).isFixedPitch());
    EXPECT_TRUE(withPanose({2, 0, 0, 9}).isFixedPitch());
    for (int style = 0; style < 256; ++style) {
        const auto serif = static_cast<std::uint8_t>(style);
        EXPECT_EQ(withPanose({2, serif}).isSerifLike(), style >= 2 && style <= 10) << style;
        EXPECT_FALSE(withPanose({4, serif}).isSerifLike());
    }
    for (int family = 0; family < 8; ++family) {
        EXPECT_EQ(withPanose({static_cast<std::uint8_t>(family), 3}).isScriptLike(), family == 3);
    }
}

TEST(TextMetrics, AFontWithoutOS2HasThoseThatStandInForIt) {
    TestFont font = TestFont::latin();
    font.hhea.ascender = 750;
    font.hhea.descender = -260;
    font.hhea.lineGap = 40;
    font.post.isFixedPitch = 1;
    font.without("OS/2");
    const FS_NewTextMetricEx metric = metricsOf(font, -1000);
    EXPECT_EQ(metric.getAscent(), 750);
    EXPECT_EQ(metric.getDescent(), 260);
    EXPECT_EQ(metric.getTypoAscender(), 750);
    EXPECT_EQ(metric.getTypoDescender(), -260);
    EXPECT_EQ(metric.getTypoLineGap(), 40);
    EXPECT_EQ(metric.getExternalLeading(), 40);
    EXPECT_EQ(metric.getCapHeight(), 0);
    EXPECT_EQ(metric.getAveCharWidth(), 0);
    EXPECT_TRUE(metric.isFixedPitch());
    EXPECT_TRUE(metric.checkUSB(USB_BasicLatin));
    EXPECT_EQ(metric.getCodePageBits0(), 1U);
}

TEST(TextMetrics, ASymbolicFontIsTold) {
    TestFont font = TestFont::latin();
    font.os2.sFamilyClass = 12 << 8;
    EXPECT_TRUE(metricsOf(font, -1000).isSymbolFont());
}

TEST(TextMetrics, TheUnicodeRangeIsThatOfTheFontsEntry) {
    MemoryFont<> font(TestFont::latin().build());
    ASSERT_TRUE(font.scan());
    FS_FontFileOptions entry;
    font->setFontEntrySettings(&entry);
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 0));
    EXPECT_TRUE(metric.isInUnicodeRange('A')) << "an entry without a range";
    entry.unicodeRange = std::make_unique<KWCommonNS::KWUnicodeRange>();
    ASSERT_TRUE(entry.unicodeRange->parseUnicodeRange(
        KWCommonNS::KWParser::parse(UnicodeString("U+61-7A"))));
    EXPECT_TRUE(metric.isInUnicodeRange('a'));
    EXPECT_FALSE(metric.isInUnicodeRange('A'));
}

// --- the other formats, and real fonts ----------------------------------------------------------

TEST(TextMetrics, EachFaceOfACollectionHasItsOwn) {
    TestFont second = secondFace();
    second.os2.usWinAscent = 901;
    CollectionInMemory font(collectionOf({firstFace(), second}).build());
    ASSERT_TRUE(font.scan());
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 0));
    EXPECT_EQ(metric.getAscent(), 800);
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 1));
    EXPECT_EQ(metric.getAscent(), 901);
    EXPECT_FALSE(font->getNewTextMetricEx(metric, 2));
    EXPECT_FALSE(font->getOutlineTextMetrics(metric, 10, -1));
    EXPECT_EQ(metric.getAscent(), 901) << "left as it was";
}

TEST(TextMetrics, AWrappedFontHasThoseOfTheFontInside) {
    FacesInMemory<FS_WOFF> font(WoffFile::of(telling().build()).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(font->getNewTextMetricEx(metric, 0));
    EXPECT_EQ(metricFields(metric), metricFields(metricsOf(telling(), kEm)));
    ASSERT_TRUE(font->getOutlineTextMetrics(metric, 1000, 0));
    EXPECT_FLOAT_EQ(metric.getAscent() + metric.getDescent(), 1000);
}

TEST(TextMetrics, OfPackagedFontsTellTheScriptsThatTheyServe) {
    const auto of = [](const char* name) {
        FS_FontInfo font;
        EXPECT_TRUE(font.createFont(fileUri(packagedFont(name)))) << name;
        FS_NewTextMetricEx metric;
        EXPECT_TRUE(font.getOutlineTextMetrics(metric, -font.getUnitsPerEm()));
        return metric;
    };
    const FS_NewTextMetricEx sans = of("DejaVuSans");
    EXPECT_TRUE(sans.isLatin1() && sans.isGreek() && sans.isCyrillic() && sans.isArmenian());
    EXPECT_FALSE(sans.isJapanese() || sans.isKorean() || sans.isItalic() || sans.isFixedPitch());
    const FS_NewTextMetricEx mincho = of("IPAMincho");
    EXPECT_TRUE(mincho.isJapanese() && mincho.isHiragana() && mincho.hasVertTypoInfo());
    EXPECT_FALSE(mincho.isChineseSimp() || mincho.isChineseTrad() || mincho.isDevanagari());
}

} // namespace
} // namespace KWFontService_NS
