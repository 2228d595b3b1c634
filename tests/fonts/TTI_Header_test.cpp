#include "fonts/SfntFixture.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// The header tables of a font after scan and load.
class HeaderTest : public testing::Test {
protected:
    TestFont file = TestFont::latin();

    const TTI_Header& header() {
        font_ = std::make_unique<MemoryFont<>>(file.build());
        EXPECT_TRUE(font_->scanAndLoad()) << font_->complaint();
        return font_->info().header();
    }
    FS_TrueType& font() {
        header();
        return **font_;
    }

private:
    std::unique_ptr<MemoryFont<>> font_;
};

TEST_F(HeaderTest, ReadsHead) {
    file.head = {.unitsPerEm = 2048,
                 .xMin = -5,
                 .yMin = -6,
                 .xMax = 7,
                 .yMax = 8,
                 .macStyle = 3,
                 .indexToLocFormat = 0};
    const TTI_Header& h = header();
    EXPECT_EQ(h.unitsPerEm, 2048);
    EXPECT_EQ(h.xMin, -5);
    EXPECT_EQ(h.yMin, -6);
    EXPECT_EQ(h.xMax, 7);
    EXPECT_EQ(h.yMax, 8);
    EXPECT_EQ(h.macStyle, 3);
    EXPECT_EQ(h.indexToLocFormat, 0);
}

TEST_F(HeaderTest, UnitsPerEmIsSigned) {
    file.head.unitsPerEm = 0x8000;
    EXPECT_EQ(header().unitsPerEm, -32768);
}

TEST_F(HeaderTest, ReadsHhea) {
    file.hhea.ascender = 901;
    file.hhea.descender = -202;
    file.hhea.lineGap = 33;
    const TTI_Header& h = header();
    EXPECT_EQ(h.ascender, 901);
    EXPECT_EQ(h.descender, -202);
    EXPECT_EQ(h.lineGap, 33);
    EXPECT_EQ(h.numberOfHMetrics, 6);
}

TEST_F(HeaderTest, ReadsOS2) {
    file.os2 = {.version = 4,
                .xAvgCharWidth = -441,
                .usWeightClass = 650,
                .usWidthClass = 3,
                .fsType = 8,
                .sFamilyClass = 0x0805,
                .panose = {2, 11, 6, 9, 3, 8, 4, 7, 1, 5},
                .ulUnicodeRange1 = 0x11,
                .ulUnicodeRange2 = 0x22,
                .ulUnicodeRange3 = 0x33,
                .ulUnicodeRange4 = 0x44,
                .fsSelection = 0x81,
                .usFirstCharIndex = 0x21,
                .usLastCharIndex = 0xFB02,
                .sTypoAscender = 760,
                .sTypoDescender = -240,
                .sTypoLineGap = 90,
                .usWinAscent = 928,
                .usWinDescent = 236,
                .ulCodePageRange1 = 0x55,
                .ulCodePageRange2 = 0x66,
                .sxHeight = 547,
                .sCapHeight = 729};
    const TTI_Header& h = header();
    EXPECT_TRUE(h.hasOS2);
    EXPECT_EQ(h.os2Version, 4);
    EXPECT_EQ(h.xAvgCharWidth, -441);
    EXPECT_EQ(h.usWeightClass, 650);
    EXPECT_EQ(h.usWidthClass, 3);
    EXPECT_EQ(h.fsType, 8);
    EXPECT_EQ(h.familyClass, 8);
    EXPECT_EQ(h.familySubclass, 5);
    EXPECT_EQ(h.panose[TTI_Header::SerifStyle], 11);
    EXPECT_EQ(h.panose.back(), 5);
    EXPECT_EQ(h.ulUnicodeRange, (std::array<std::uint32_t, 4>{0x11, 0x22, 0x33, 0x44}));
    EXPECT_EQ(h.fsSelection, 0x81);
    EXPECT_EQ(h.usFirstCharIndex, 0x21);
    EXPECT_EQ(h.usLastCharIndex, 0xFB02);
    EXPECT_EQ(h.sTypoAscender, 760);
    EXPECT_EQ(h.sTypoDescender, -240);
    EXPECT_EQ(h.sTypoLineGap, 90);
    EXPECT_EQ(h.usWinAscent, 928);
    EXPECT_EQ(h.usWinDescent, 236);
    EXPECT_EQ(h.ulCodePageRange1, 0x55U);
    EXPECT_EQ(h.ulCodePageRange2, 0x66U);
    EXPECT_EQ(h.sxHeight, 547);
    EXPECT_EQ(h.sCapHeight, 729);
}

TEST_F(HeaderTest, WeightClassesOneToNineOfEarlyFontsAreHundreds) {
    for (const std::uint16_t version : std::initializer_list<std::uint16_t>{0, 1, 2}) {
        file.os2.version = version;
        file.os2.usWeightClass = 5;
        EXPECT_EQ(font().getWeight(0), 500) << version;
        file.os2.usWeightClass = 9;
        EXPECT_EQ(font().getWeight(0), 900) << version;
        file.os2.usWeightClass = 10;
        EXPECT_EQ(font().getWeight(0), 10) << version;
    }
    file.os2.version = 3;
    file.os2.usWeightClass = 5;
    EXPECT_EQ(font().getWeight(0), 5);
}

TEST_F(HeaderTest, VersionZeroLeavesTheCodePagesAtLatin1) {
    file.os2.version = 0;
    EXPECT_EQ(font().getCodePageRangeBitFields(0).codePageRange1, 1U);
    EXPECT_EQ(font().getCodePageRangeBitFields(0).codePageRange2, 0U);
}

TEST_F(HeaderTest, HeightsAreReadFromVersionTwoOn) {
    file.os2.version = 1;
    file.os2.ulCodePageRange1 = 0x20000;
    EXPECT_EQ(header().sxHeight, 0);
    EXPECT_EQ(header().sCapHeight, 0);
    EXPECT_EQ(header().ulCodePageRange1, 0x20000U);
    file.os2.version = 2;
    EXPECT_EQ(header().sxHeight, 500);
    EXPECT_EQ(header().sCapHeight, 700);
}

TEST_F(HeaderTest, AShortOS2IsReadAsFarAsItGoes) {
    file.with("OS/2", OS2{.version = 1, .usWinAscent = 700}.build().truncate(78));
    EXPECT_EQ(header().usWinAscent, 700);
    EXPECT_EQ(header().ulCodePageRange1, 0U) << "read as zeros, not left at its start value";
}

TEST_F(HeaderTest, WithoutWinAscentTheExtentsComeFromHhea) {
    file.os2.usWinAscent = 0;
    file.os2.usWinDescent = 77;
    file.hhea.ascender = 810;
    file.hhea.descender = -190;
    EXPECT_EQ(header().usWinAscent, 810);
    EXPECT_EQ(header().usWinDescent, 190);
}

TEST_F(HeaderTest, AMissingOS2IsBuiltFromHeadAndHhea) {
    file.without("OS/2");
    file.head.macStyle = 3;
    file.hhea.lineGap = 55;
    const TTI_Header& h = header();
    EXPECT_FALSE(h.hasOS2);
    EXPECT_EQ(h.usWeightClass, 700);
    EXPECT_EQ(h.usWidthClass, 5);
    EXPECT_EQ(h.fsType, 0);
    EXPECT_EQ(h.ulUnicodeRange, (std::array<std::uint32_t, 4>{3, 0, 0, 0}));
    EXPECT_EQ(h.fsSelection, 0x21);
    EXPECT_EQ(h.usFirstCharIndex, 0);
    EXPECT_EQ(h.usLastCharIndex, 0);
    EXPECT_EQ(h.sTypoAscender, 800);
    EXPECT_EQ(h.sTypoDescender, -200);
    EXPECT_EQ(h.sTypoLineGap, 55);
    EXPECT_EQ(h.usWinAscent, 800) << "0 at first, then completed from hhea";
    EXPECT_EQ(h.usWinDescent, 200);
    EXPECT_EQ(h.ulCodePageRange1, 1U);
    EXPECT_EQ(h.ulCodePageRange2, 0U);
    EXPECT_EQ(font().getPanose(0), nullptr);
    EXPECT_EQ(font().getFamilyClass(0), 0);
    EXPECT_TRUE(font().isItalic(0));

    file.head.macStyle = 0;
    EXPECT_EQ(font().getWeight(0), 400);
    EXPECT_FALSE(font().isItalic(0));
}

TEST_F(HeaderTest, ReadsPost) {
    file.post.italicAngle = -12.5;
    file.post.underlinePosition = -133;
    file.post.underlineThickness = 66;
    EXPECT_EQ(header().italicAngle, -12.5F);
    EXPECT_EQ(header().underlinePosition, -133);
    EXPECT_EQ(header().underlineThickness, 66);
}

TEST_F(HeaderTest, AnItalicAngleMakesAFontItalic) {
    EXPECT_FALSE(font().isItalic(0));
    file.post.italicAngle = 0.5;
    EXPECT_TRUE(font().isItalic(0));
    file.post.italicAngle = 0;
    file.os2.fsSelection = 1;
    EXPECT_TRUE(font().isItalic(0));
}

TEST_F(HeaderTest, FixedPitchOfPostIsIgnoredWhereThereIsOS2) {
    file.post.isFixedPitch = 1;
    EXPECT_FALSE(font().isFixedWidthFont(0)) << "PANOSE decides, all zero as it is";
    file.os2.panose = {2, 0, 0, 9};
    file.post.isFixedPitch = 0;
    EXPECT_TRUE(font().isFixedWidthFont(0));
    file.os2.panose = {3, 0, 0, 9};
    EXPECT_FALSE(font().isFixedWidthFont(0));
    file.without("OS/2");
    EXPECT_FALSE(font().isFixedWidthFont(0));
    file.post.isFixedPitch = 1;
    EXPECT_TRUE(font().isFixedWidthFont(0));
}

TEST_F(HeaderTest, SerifAndScriptTraitsComeFromPanose) {
    for (const std::uint8_t style : std::initializer_list<std::uint8_t>{1, 2, 10, 11}) {
        file.os2.panose = {2, style};
        EXPECT_EQ(font().isSerifLikeFont(0), style >= 2 && style <= 10) << int{style};
    }
    EXPECT_FALSE(font().isScriptLikeFont(0));
    file.os2.panose = {3, 5};
    EXPECT_FALSE(font().isSerifLikeFont(0));
    EXPECT_TRUE(font().isScriptLikeFont(0));
}

TEST_F(HeaderTest, FamilyClassAndLicenceAreAnswered) {
    file.os2.sFamilyClass = 0x0A03;
    file.os2.fsType = 0x0104;
    EXPECT_EQ(font().getFamilyClass(0), 10);
    EXPECT_EQ(font().getFamilySubclass(0), 3);
    EXPECT_EQ(font().getFontEmbeddingLicence(0), 0x0104);
    ASSERT_NE(font().getPanose(0), nullptr);
}

TEST_F(HeaderTest, FamilyClassTwelveIsSymbolic) {
    EXPECT_FALSE(font().isSymbolicFont(0));
    file.os2.sFamilyClass = 0x0C00;
    EXPECT_TRUE(font().isSymbolicFont(0));
}

TEST_F(HeaderTest, SymbolNamesMakeASymbolicFontOnlyWithoutAFamilyClass) {
    file.name = {.records = {windowsName(1, u"Signs", 1033, 0), windowsName(6, u"Signs", 1033, 0)}};
    EXPECT_TRUE(font().isSymbolicFont(0));
    file.os2.sFamilyClass = 0x0800;
    EXPECT_FALSE(font().isSymbolicFont(0));
}

TEST_F(HeaderTest, ReadsVhea) {
    file = TestFont::vertical();
    file.with("vhea", Vhea{.vertTypoAscender = 510,
                           .vertTypoDescender = -490,
                           .vertTypoLineGap = 70,
                           .numOfLongVerMetrics = 1});
    const TTI_Header& h = header();
    EXPECT_EQ(h.vertAscender, 510);
    EXPECT_EQ(h.vertDescender, -490);
    EXPECT_EQ(h.vertLineGap, 70);
    EXPECT_EQ(h.numOfLongVerMetrics, 1);
}

TEST_F(HeaderTest, ReadsTheFourteenNumbersOfMaxp) {
    file.with("maxp", Maxp{.numGlyphs = 7,
                           .maxPoints = 2,
                           .maxContours = 3,
                           .maxCompositePoints = 4,
                           .maxCompositeContours = 5,
                           .maxZones = 6,
                           .maxTwilightPoints = 8,
                           .maxStorage = 9,
                           .maxFunctionDefs = 10,
                           .maxInstructionDefs = 11,
                           .maxStackElements = 12,
                           .maxSizeOfInstructions = 13,
                           .maxComponentElements = 14,
                           .maxComponentDepth = 15});
    const TTI_Header::MaxProfile& m = header().maxp;
    EXPECT_EQ(m.numGlyphs, 7);
    EXPECT_EQ(m.maxPoints, 2);
    EXPECT_EQ(m.maxContours, 3);
    EXPECT_EQ(m.maxCompositePoints, 4);
    EXPECT_EQ(m.maxCompositeContours, 5);
    EXPECT_EQ(m.maxZones, 6);
    EXPECT_EQ(m.maxTwilightPoints, 8);
    EXPECT_EQ(m.maxStorage, 9);
    EXPECT_EQ(m.maxFunctionDefs, 10);
    EXPECT_EQ(m.maxInstructionDefs, 11);
    EXPECT_EQ(m.maxStackElements, 12);
    EXPECT_EQ(m.maxSizeOfInstructions, 13);
    EXPECT_EQ(m.maxComponentElements, 14);
    EXPECT_EQ(m.maxComponentDepth, 15);
}

TEST_F(HeaderTest, AMaxpOfVersionOneHalfCountsNoGlyphsAndReadsNoBearings) {
    file.with("maxp", Maxp{.version = 0x00005000, .numGlyphs = 7});
    EXPECT_EQ(header().maxp.numGlyphs, 0);
    EXPECT_TRUE(font().face(0)->tables().metrics.leftSideBearings.empty());
}

} // namespace
} // namespace KWFontService_NS
