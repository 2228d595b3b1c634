// What a facade with a font answers: each operation that it hands on, asked of a file.

#include "fonts/OperationSamples.h"
#include "fonts/SfntFixture.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_NewTextMetricEx.h>

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

std::string bytesOf(KWMemStream& stream) {
    return {stream.data(), stream.size()};
}

class FontInfoFace : public testing::Test {
protected:
    void bind(const TestFont& file) {
        folder.write("font", file.build());
        ASSERT_TRUE(info.createFont(folder.uri("font"))) << complaintOf(info.getError());
    }

    TempDir folder;
    FS_FontInfo info;
};

TEST_F(FontInfoFace, HasItsNames) {
    TestFont file = TestFont::latin();
    file.name.records.push_back(windowsName(0, u"Copyright"));
    file.name.records.push_back(windowsName(8, u"Maker"));
    file.name.records.push_back(windowsName(13, u"Licence"));
    file.name.records.push_back(windowsName(16, u"Preferred"));
    file.name.records.push_back(windowsName(17, u"Plain"));
    file.name.records.push_back(windowsName(20, u"Findfont"));
    bind(file);
    EXPECT_EQ(info.getFamilyName(1033), UnicodeString(u"KWTest Latin"));
    EXPECT_EQ(info.getSubFamilyName(1033), UnicodeString(u"Regular"));
    EXPECT_EQ(info.getFullFontName(1033), UnicodeString(u"KWTest Latin Regular"));
    EXPECT_EQ(info.getPostScriptName(1033), UnicodeString(u"KWTestLatin-Regular"));
    EXPECT_EQ(info.getPreferredFamily(1033), UnicodeString(u"Preferred"));
    EXPECT_EQ(info.getPreferredSubFamily(1033), UnicodeString(u"Plain"));
    EXPECT_EQ(info.getPostScriptCIDFindfontName(1033), UnicodeString(u"Findfont"));
    EXPECT_EQ(info.getCopyright(1033), UnicodeString(u"Copyright"));
    EXPECT_EQ(info.getManufacturer(1033), UnicodeString(u"Maker"));
    EXPECT_EQ(info.getLicenseDescription(1033), UnicodeString(u"Licence"));
}

TEST_F(FontInfoFace, HasItsStyleAndTraits) {
    TestFont file = TestFont::latin();
    file.os2.usWeightClass = 700;
    file.os2.usWidthClass = 3;
    file.os2.fsSelection = 1;
    file.os2.fsType = 8;
    file.os2.sFamilyClass = 0x0C03;
    file.os2.panose = {2, 5, 0, 9};
    bind(file);
    int weight = 0;
    bool italic = false;
    int width = 0;
    info.getFontStyle(&weight, &italic, &width);
    EXPECT_EQ(weight, 700);
    EXPECT_TRUE(italic);
    EXPECT_EQ(width, 3);
    EXPECT_EQ(info.getFamilyClass(), 12);
    EXPECT_EQ(info.getFamilySubclass(), 3);
    EXPECT_EQ(info.getPanose(), info.getFont()->getPanose(0));
    EXPECT_NE(info.getPanose(), nullptr);
    EXPECT_TRUE(info.isFixedWidthFont());
    EXPECT_TRUE(info.isSerifLikeFont());
    EXPECT_FALSE(info.isScriptLikeFont());
    EXPECT_TRUE(info.isSymbolicFont());
    EXPECT_EQ(info.getCodePageRangeBitFields(), info.getFont()->getCodePageRangeBitFields(0));
    EXPECT_EQ(info.getFontEmbeddingLicence(), 8);
    EXPECT_EQ(info.getEmbedStatus(), FS_EMBED_OUTLINES);
    EXPECT_EQ(info.getEmbedableCharCount(), info.getFont()->getEmbedableCharCount(0));
    EXPECT_GT(info.getEmbedableCharCount(), 0U);
}

TEST_F(FontInfoFace, HasItsGlyphs) {
    TestFont file = TestFont::vertical();
    file.cmap.records.push_back(
        {.platformID = 0,
         .encodingID = 5,
         .subtable =
             CmapFormat14{.selectors = {{.varSelector = 0xFE00,
                                         .mappings = {{.unicodeValue = 0x3042, .glyphID = 4}}}}}
                 .build()});
    file.with("GDEF",
              Gdef{.glyphClassDef = classDefFormat2({{2, 3, 1}}), .markAttachClassDef = {}});
    bind(file);
    unsigned short glyphs[2] = {};
    int count = 0;
    EXPECT_TRUE(info.getGlyphIDs(u"\u300C\u3042", glyphs, count, true, nullptr));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(glyphs[0], TestFont::kBracketVertical);
    EXPECT_EQ(glyphs[1], TestFont::kHiraganaA);
    EXPECT_EQ(info.getGlyphClassDef(2), GlyphClassDef::Base);
    EXPECT_TRUE(info.hasVariationSelector());
    EXPECT_EQ(info.variationSequence(0x3042, 0xFE00), 4);
    EXPECT_TRUE(info.hasVerticalMetrics());
    EXPECT_FLOAT_EQ(info.getDefaultVertOriginY(0), 880.0F);
}

TEST_F(FontInfoFace, HasItsMeasures) {
    TestFont file = TestFont::latin();
    file.with("kern", Kern{.subtables = {{.pairs = {{TestFont::kA, TestFont::kB, -50}}}}});
    bind(file);
    EXPECT_FLOAT_EQ(info.getXHeight(), 0.5F);
    EXPECT_FLOAT_EQ(info.getCapHeight(), 0.7F);
    EXPECT_FLOAT_EQ(info.getTypoAscender(), 0.8F);
    EXPECT_FLOAT_EQ(info.getTypoDescender(), 0.8F) << "a file with one face answers its ascender";
    EXPECT_EQ(info.getDefaultCharWidth(0), info.getFont()->getDefaultCharWidth(0, 0));
    EXPECT_GT(info.getDefaultCharWidth(0), 0.0F);
    EXPECT_TRUE(info.hasPairKerningInfo(false));
    EXPECT_EQ(info.getPairKerningValue(TestFont::kA, TestFont::kB, 0, false), -50.0F);
    FS_NewTextMetricEx metric;
    FS_NewTextMetricEx own;
    EXPECT_TRUE(info.getOutlineTextMetrics(metric, -1000));
    EXPECT_TRUE(info.getFont()->getOutlineTextMetrics(own, -1000, 0));
    EXPECT_EQ(metric.getAscent(), own.getAscent());
    EXPECT_TRUE(metric.hasValue());
}

TEST_F(FontInfoFace, HasItsMathematics) {
    TestFont file = TestFont::latin();
    file.with("MATH", Math{.constants = MathConstants{{FS_MATHConstants::axisHeight, 250}},
                           .glyphInfo = MathGlyphInfo{.italicsCorrections = {{2, 30}}},
                           .variants = MathVariants{.vertical = {{2, {{3, 200}, {4, 300}}}},
                                                    .horizontal = {{2, {{4, 200}, {3, 300}}}}}});
    bind(file);
    EXPECT_TRUE(info.hasMATHInfo());
    EXPECT_FLOAT_EQ(info.getMATHConstant(FS_MATHConstants::axisHeight), 0.25F);
    EXPECT_FLOAT_EQ(info.getItalicsCorrection(2), 0.03F);
    EXPECT_EQ(info.getMATHVariantV(2, 250), 4);
    EXPECT_EQ(info.getMATHVariantH(2, 250), 3);
}

TEST_F(FontInfoFace, HasItsSubsets) {
    bind(TestFont::latin());
    KWMemStream withCmap;
    KWMemStream own;
    EXPECT_TRUE(info.getEmbedFontWithCmap({TestFont::kA}, withCmap));
    EXPECT_TRUE(info.getFont()->getEmbedFontWithCmap({TestFont::kA}, own, nullptr, 0));
    EXPECT_EQ(bytesOf(withCmap), bytesOf(own));
    KWMemStream postScript;
    KWMemStream ownPostScript;
    Sample<FS_TTGlyphMap>::Sink glyphMap;
    EXPECT_TRUE(info.getPSEmbedFont({TestFont::kA}, postScript, glyphMap));
    EXPECT_TRUE(
        info.getFont()->getPSEmbedFont({TestFont::kA}, ownPostScript, glyphMap, nullptr, 0));
    EXPECT_EQ(bytesOf(postScript), bytesOf(ownPostScript));
}

TEST_F(FontInfoFace, HasItsType1Codes) {
    bind(TestFont::openType());
    EXPECT_EQ(info.getEncodingScheme(), info.getFont()->getEncodingScheme(0));
    EXPECT_NE(info.getEncodingScheme(), FS_ENCODING_NONE);
    EXPECT_EQ(info.getType1CharCode('A'), 'A');
    EXPECT_EQ(info.getType1GlyphIDCode(TestFont::kB), 1);
    ASSERT_NE(info.getType1CMapArray(0), nullptr);
    EXPECT_EQ(info.getType1CMapArray(0)->size(), 1U);
    std::string name;
    EXPECT_TRUE(info.getType1GlyphName(0, 1, name));
    EXPECT_EQ(name, "B");
    unsigned char code = 0;
    EXPECT_TRUE(info.getType1CMapPair(0, 0, code, name));
    EXPECT_EQ(code, 1);
    KWMemStream output;
    EXPECT_TRUE(info.getType1EmbedFont({'A'}, output));
    EXPECT_GT(output.length(), 0);
}

} // namespace
} // namespace KWFontService_NS
