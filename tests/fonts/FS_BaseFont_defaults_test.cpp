#include "fonts/OperationSamples.h"

#include <KWFontService17/FS_FontInfo.h>

#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

// The answers of a font without data, and of a facade without a font, written out: the list that
// the operations are made from cannot vouch for its own last column.

namespace KWFontService_NS {
namespace {

using namespace KWTest;

class FontWithoutData : public FS_BaseFont {
public:
    FontWithoutData() : FS_BaseFont(KWUri()) {}
    FS_FontFileType getFontFileType(int) const override { return FS_FILETYPE_PFM; }
    bool isType1Font(int) const override { return true; }
    bool isTrueTypeFont(int) const override { return false; }
    bool isType1OrNoCID(int) const override { return true; }
    bool isTrueTypeOrCID(int) const override { return false; }
    bool scanFont(KWError&, std::istream&) override { return true; }
};

class BaseFontDefaults : public testing::Test {
protected:
    const KWCommonNS::KWPtr<FontWithoutData> font{new FontWithoutData};
};

TEST_F(BaseFontDefaults, NamesAreEmpty) {
    for (const KWLang::LanguageID language : {KWLang::LanguageID{0}, KWLang::LanguageID{1033}}) {
        EXPECT_TRUE(font->getFamilyName(language, 0).isEmpty());
        EXPECT_TRUE(font->getSubFamilyName(language, 0).isEmpty());
        EXPECT_TRUE(font->getFullFontName(language, 0).isEmpty());
        EXPECT_TRUE(font->getPostScriptName(language, 0).isEmpty());
        EXPECT_TRUE(font->getPreferredFamily(language, 0).isEmpty());
        EXPECT_TRUE(font->getPreferredSubFamily(language, 0).isEmpty());
        EXPECT_TRUE(font->getPostScriptCIDFindfontName(language, 0).isEmpty());
        EXPECT_TRUE(font->getCopyright(language, 0).isEmpty());
        EXPECT_TRUE(font->getManufacturer(language, 0).isEmpty());
        EXPECT_TRUE(font->getLicenseDescription(language, 0).isEmpty());
    }
    font->setPostScriptName("Given", 0);
    EXPECT_TRUE(font->getPostScriptName(0, 0).isEmpty());
}

TEST_F(BaseFontDefaults, StyleIsUnknownUprightNormal) {
    EXPECT_EQ(font->getWeight(0), 0);
    EXPECT_FALSE(font->isItalic(0));
    EXPECT_EQ(font->getWidth(0), 5);
    EXPECT_EQ(font->getFamilyClass(0), 0);
    EXPECT_EQ(font->getFamilySubclass(0), 0);
    EXPECT_EQ(font->getPanose(0), nullptr);
    EXPECT_FALSE(font->isSymbolicFont(0));
    EXPECT_FALSE(font->isFixedWidthFont(0));
    EXPECT_FALSE(font->isSerifLikeFont(0));
    EXPECT_FALSE(font->isScriptLikeFont(0));
    EXPECT_EQ(font->getCodePageRangeBitFields(0).codePageRange1, 0U);
    EXPECT_EQ(font->getCodePageRangeBitFields(0).codePageRange2, 0U);
    FS_EnumLogFontEx record;
    EXPECT_FALSE(font->getLogFont(record, 0));
    FS_NewTextMetricEx metric;
    EXPECT_FALSE(font->getNewTextMetricEx(metric, 0));
    EXPECT_FALSE(font->getOutlineTextMetrics(metric, 10, 0));
    EXPECT_FALSE(metric.hasValue());
}

TEST_F(BaseFontDefaults, GlyphsAreMissingAndMeasuresAre0) {
    EXPECT_EQ(font->getGlyphID('A', false, 0), 0xFFFF);
    unsigned short glyphs[1] = {};
    int count = 0;
    EXPECT_FALSE(font->getGlyphIDs("A", glyphs, count, false, nullptr, 0));
    EXPECT_EQ(static_cast<int>(font->getGlyphClassDef(1, 0)), -1);
    EXPECT_EQ(font->getStringID(1, 0), 0);
    EXPECT_EQ(font->getCFFInfo(0), nullptr);
    EXPECT_EQ(font->getGSUBGPOSInfo(0, 0, 0), nullptr);
    EXPECT_EQ(font->getTextWidth("A", -1000, false, nullptr, 0), 0.0F);
    EXPECT_EQ(font->getXHeight(0), 0.0F);
    EXPECT_EQ(font->getCapHeight(0), 0.0F);
    EXPECT_EQ(font->getTypoAscender(0), 0.0F);
    EXPECT_EQ(font->getTypoDescender(0), 0.0F);
    EXPECT_EQ(font->getGlyphWidth(1, 0, false, 0), 0.0F);
    EXPECT_EQ(font->getUnitsPerEm(0), 0);
    EXPECT_EQ(font->getDefaultCharWidth(0, 0), 0.0F);
    EXPECT_FALSE(font->hasPairKerningInfo(false, 0));
    EXPECT_EQ(font->getPairKerningValue(1, 2, 0, false, 0), 0.0F);
    EXPECT_FALSE(font->hasVerticalMetrics(0));
    EXPECT_EQ(font->getDefaultVertOriginY(0, 0), 0.0F);
    EXPECT_EQ(font->getGlyphVertOriginY(1, 0, 0), 0.0F);
    font->setHasVerticalGlyph(0);
    EXPECT_FALSE(font->hasVerticalGlyph(0));
    EXPECT_FALSE(font->hasVariationSelector(0));
    EXPECT_EQ(font->variationSequence('A', 0xFE00, 0), 0xFFFF);
}

TEST_F(BaseFontDefaults, MathIsNotANumberAndNoVariant) {
    EXPECT_FALSE(font->hasMATHInfo(0));
    EXPECT_TRUE(std::isnan(font->getMATHConstant(FS_MATHConstants::axisHeight, 0)));
    EXPECT_TRUE(std::isnan(font->getItalicsCorrection(1, 0)));
    EXPECT_EQ(font->getMATHVariantV(1, 0, 0), 0xFFFF);
    EXPECT_EQ(font->getMATHVariantH(1, 0, 0), 0xFFFF);
}

TEST_F(BaseFontDefaults, NothingIsEmbeddedAndTheStatusIsBitmapOnly) {
    KWMemStream output;
    FS_TTGlyphMap& glyphMap = Sample<FS_TTGlyphMap>::get();
    const unsigned int tags[] = {0};
    EXPECT_EQ(font->getEmbedableCharCount(0), 0U);
    EXPECT_FALSE(font->getEmbedFont({1}, output, tags, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFont({1}, output, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFontWithCmap({1}, output, nullptr, 0));
    EXPECT_FALSE(font->getEmbedFontStream(output, nullptr, 0));
    EXPECT_FALSE(font->getPSEmbedFont({1}, output, glyphMap, nullptr, 0));
    EXPECT_FALSE(font->makeWebFont({1}, output, nullptr, 0));
    EXPECT_FALSE(font->makeSubsetFont({1}, output, nullptr, 0));
    EXPECT_FALSE(font->isEmbeddable(0));
    EXPECT_EQ(font->getEmbedStatus(0), 1);
    EXPECT_EQ(font->getFontEmbeddingLicence(0), 0);
    EXPECT_EQ(font->getEncodingScheme(0), 0);
    FS_CIDSystemInfo info;
    EXPECT_FALSE(font->getCIDSystemInfo(info, 0));
    UnicodeString name;
    EXPECT_FALSE(font->makePostScriptCIDFontType0({1}, output, name, info, 0));
    EXPECT_EQ(output.length(), 0);
}

TEST_F(BaseFontDefaults, ThereAreNoType1CodesAndNoEudcLink) {
    KWMemStream output;
    unsigned char code = 0;
    std::string name;
    int length = 0;
    EXPECT_EQ(font->getType1CharCode('A', 0), 0);
    EXPECT_EQ(font->getType1GlyphIDCode(1, 0), 0);
    EXPECT_EQ(font->getType1CMapArray(0, 0), nullptr);
    EXPECT_FALSE(font->getType1CMapPair(0, 0, code, name, 0));
    EXPECT_FALSE(font->getType1GlyphName(0, 0, name, 0));
    EXPECT_FALSE(font->getType1EmbedFont({1}, output, nullptr, 0));
    EXPECT_FALSE(font->getType1EmbedFont(0, "F", 0, output, length, length, length, 0));
    EXPECT_FALSE(font->getType1FontStream(output, length, length, length, 0));
    font->setEudcFont({font.get(), 1}, 0);
    EXPECT_EQ(font->getEudcFont(0), FS_FontRef());
    EXPECT_EQ(font->getEudcGlyphID(0xE000, 0), 0xFFFF);
}

TEST(FontInfoDefaults, AFacadeWithoutAFontAnswersWhatItMust) {
    const FS_FontInfo info;
    EXPECT_TRUE(info.getFamilyName(0).isEmpty());
    EXPECT_TRUE(info.getLicenseDescription(1033).isEmpty());
    EXPECT_EQ(info.getFamilyClass(), 0);
    EXPECT_EQ(info.getFamilySubclass(), 0);
    EXPECT_EQ(info.getPanose(), nullptr);
    EXPECT_FALSE(info.isFixedWidthFont());
    EXPECT_FALSE(info.isSerifLikeFont());
    EXPECT_FALSE(info.isScriptLikeFont());
    EXPECT_FALSE(info.isSymbolicFont());
    EXPECT_EQ(info.getGlyphID('A', false), 0xFFFF);
    unsigned short glyphs[1] = {};
    int count = 0;
    EXPECT_FALSE(info.getGlyphIDs("A", glyphs, count, false, nullptr));
    EXPECT_EQ(static_cast<int>(info.getGlyphClassDef(1)), -1);
    EXPECT_EQ(info.variationSequence('A', 0xFE00), 0xFFFF);
    EXPECT_FALSE(info.hasVerticalGlyph());
    EXPECT_EQ(info.getUnitsPerEm(), 0);
    EXPECT_EQ(info.getGlyphWidth(1, 0, false), 0.0F);
    EXPECT_EQ(info.getDefaultCharWidth(0), 0.0F);
    EXPECT_FALSE(info.hasPairKerningInfo(false));
    EXPECT_EQ(info.getPairKerningValue(1, 2, 0, false), 0.0F);
    EXPECT_EQ(info.getXHeight(), 0.0F);
    EXPECT_EQ(info.getCapHeight(), 0.0F);
    EXPECT_EQ(info.getTypoAscender(), 0.0F);
    EXPECT_EQ(info.getTypoDescender(), 0.0F);
    EXPECT_EQ(info.getDefaultVertOriginY(0), 0.0F);
    EXPECT_FALSE(info.hasVerticalMetrics());
    FS_NewTextMetricEx metric;
    EXPECT_FALSE(info.getOutlineTextMetrics(metric, 10));
    EXPECT_FALSE(metric.hasValue());
    EXPECT_FALSE(info.hasMATHInfo());
    EXPECT_TRUE(std::isnan(info.getMATHConstant(FS_MATHConstants::axisHeight)));
    EXPECT_TRUE(std::isnan(info.getItalicsCorrection(1)));
    EXPECT_EQ(info.getFontEmbeddingLicence(), 0);
    EXPECT_EQ(info.getEmbedableCharCount(), 0U);
    EXPECT_EQ(info.getEncodingScheme(), 0);
    FS_CIDSystemInfo cid;
    EXPECT_FALSE(info.getCIDSystemInfo(cid));
    EXPECT_EQ(info.getType1CharCode('A'), 0);
    EXPECT_EQ(info.getType1GlyphIDCode(1), 0);
    EXPECT_EQ(info.getType1CMapArray(0), nullptr);
}

} // namespace
} // namespace KWFontService_NS
