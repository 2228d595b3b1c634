#include "fonts/SfntFixture.h"
#include "support/MathTable.h"

#include <gtest/gtest.h>

#include <cmath>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A grows into B upwards and into C along the line; its italics correction is 30 units.
Math mathOfA() {
    return {
        .constants = MathConstants{{FS_MATHConstants::scriptPercentScaleDown, 70},
                                   {FS_MATHConstants::displayOperatorMinHeight, 900},
                                   {FS_MATHConstants::axisHeight, 250}},
        .glyphInfo = MathGlyphInfo{.italicsCorrections = {{TestFont::kA, 30}}},
        .variants =
            MathVariants{
                .vertical = {{TestFont::kA, {{TestFont::kA, 700}, {TestFont::kB, 1000}}}},
                .horizontal = {{TestFont::kA, {{TestFont::kA, 600}, {TestFont::kC, 650}}}},
            },
    };
}

TestFont fontWithMath(std::uint16_t unitsPerEm = 1000) {
    return TestFont::latin(unitsPerEm).with("MATH", mathOfA());
}

void expectNoMath(const FS_TrueType& font) {
    EXPECT_FALSE(font.hasMATHInfo(0));
    EXPECT_TRUE(std::isnan(font.getMATHConstant(FS_MATHConstants::axisHeight, 0)));
    EXPECT_TRUE(std::isnan(font.getMATHConstant(FS_MATHConstants::scriptPercentScaleDown, 0)));
    EXPECT_TRUE(std::isnan(font.getItalicsCorrection(TestFont::kA, 0)));
    for (const int size : {0, 1, -1000}) {
        EXPECT_EQ(font.getMATHVariantV(TestFont::kA, size, 0), 0xFFFF);
        EXPECT_EQ(font.getMATHVariantH(TestFont::kA, size, 0), 0xFFFF);
    }
}

TEST(TrueTypeMath, TheQueriesAnswerFromTheTableOfTheFont) {
    MemoryFont font(fontWithMath().build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_TRUE(font->hasMATHInfo(0));
    EXPECT_FLOAT_EQ(font->getMATHConstant(FS_MATHConstants::scriptPercentScaleDown, 0), 0.7F);
    EXPECT_FLOAT_EQ(font->getMATHConstant(FS_MATHConstants::axisHeight, 0), 0.25F);
    EXPECT_FLOAT_EQ(font->getItalicsCorrection(TestFont::kA, 0), 0.03F);
    EXPECT_TRUE(std::isnan(font->getItalicsCorrection(TestFont::kB, 0)));
    EXPECT_EQ(font->getMATHVariantV(TestFont::kA, 0, 0), TestFont::kB);
    EXPECT_EQ(font->getMATHVariantV(TestFont::kA, 700, 0), TestFont::kA);
    EXPECT_EQ(font->getMATHVariantH(TestFont::kA, 601, 0), TestFont::kC);
    EXPECT_EQ(font->getMATHVariantH(TestFont::kA, -601, 0), TestFont::kA);
    EXPECT_EQ(font->getMATHVariantH(TestFont::kB, 1, 0), 0xFFFF);
}

TEST(TrueTypeMath, LengthsCountByTheEmOfTheFont) {
    MemoryFont font(fontWithMath(2000).build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_FLOAT_EQ(font->getMATHConstant(FS_MATHConstants::axisHeight, 0), 0.125F);
    EXPECT_FLOAT_EQ(font->getItalicsCorrection(TestFont::kA, 0), 0.015F);
    EXPECT_EQ(font->getMATHVariantV(TestFont::kA, 700, 0), TestFont::kA) << "sizes do not";
    EXPECT_EQ(font->getMATHVariantV(TestFont::kA, 701, 0), TestFont::kB);
}

TEST(TrueTypeMath, AFontWithoutTheTableHasNone) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    expectNoMath(*font);
}

TEST(TrueTypeMath, BeforeTheLoadThereIsNone) {
    MemoryFont font(fontWithMath().build());
    ASSERT_TRUE(font.scan());
    expectNoMath(*font);
}

TEST(TrueTypeMath, AnEmptyTableIsNoError) {
    TestFont file = TestFont::latin();
    MemoryFont font(file.with("MATH", Bytes()).build());
    EXPECT_TRUE(font.scanAndLoad()) << font.complaint();
    expectNoMath(*font);
}

TEST(TrueTypeMath, ASubsetFromADocumentHasItToo) {
    const Bytes file = fontWithMath().without("name").without("post").build();
    MemoryFont font(file);
    ASSERT_TRUE(font.scanEmbedded()) << font.complaint();
    std::istringstream stream(file.str());
    EXPECT_TRUE(font->loadEmbeddedFont(font.error, &stream)) << font.complaint();
    EXPECT_TRUE(font->hasMATHInfo(0));
}

TEST(TrueTypeMath, OpenTypeFontsHaveItToo) {
    TestFont file = TestFont::openType();
    MemoryFont<FS_OpenType> font(file.with("MATH", mathOfA()).build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_EQ(font->getMATHVariantV(TestFont::kA, 0, 0), TestFont::kB);
}

TEST(TrueTypeMath, AShortTableIsAReadErrorThatLeavesTheOthers) {
    SfntBuilder sfnt = fontWithMath().sfnt();
    const Bytes math = sfnt.get("MATH");
    sfnt.drop("MATH").table("MATH", math).inGivenOrder().unpadded();
    Bytes file = sfnt.build();
    MemoryFont font(file.truncate(file.size() - 1));
    ASSERT_TRUE(font.scan());
    EXPECT_FALSE(font.load());
    EXPECT_EQ(font.complaint(), readError("'MATH' table read error"));
    expectNoMath(*font);
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kA);
}

TEST(TrueTypeMath, ItIsReadAfterVorg) {
    const RecordLie nowhere{.offset = 0xFFFFFF00};
    TestFont file = fontWithMath();
    file.with("VORG", Vorg{});
    EXPECT_EQ(loadComplaint(file.sfnt().lie("VORG", nowhere).build()),
              readError("'VORG' table read error"));
    EXPECT_EQ(loadComplaint(file.sfnt().lie("VORG", nowhere).lie("MATH", nowhere).build()),
              readError("'MATH' table read error"))
        << "the last failure is told";
}

/// What a dfont is: faces behind the operations that it offers.
class FacesOfADfont : public FS_FaceForwarder<FacesOfADfont> {
public:
    explicit FacesOfADfont(const FS_TrueTypeInfo& info) : FS_FaceForwarder(KWUri()), info_(info) {}
    FS_FontFileType getFontFileType(int) const override { return FS_FILETYPE_DFONT; }
    bool isType1Font(int) const override { return false; }
    bool isTrueTypeFont(int) const override { return true; }
    bool isType1OrNoCID(int) const override { return false; }
    bool isTrueTypeOrCID(int) const override { return true; }
    bool scanFont(KWError&, std::istream&) override { return true; }
    FS_TrueTypeInfo* face(int) { return nullptr; }
    const FS_TrueTypeInfo* face(int) const { return &info_; }

private:
    const FS_TrueTypeInfo& info_;
};

TEST(TrueTypeMath, ADfontDoesNotOfferIt) {
    MemoryFont font(fontWithMath().build());
    ASSERT_TRUE(font.scanAndLoad());
    const KWCommonNS::KWPtr<FacesOfADfont> dfont(new FacesOfADfont(font.info()));
    EXPECT_EQ(dfont->getUnitsPerEm(0), 1000);
    EXPECT_FALSE(dfont->hasMATHInfo(0));
    EXPECT_TRUE(std::isnan(dfont->getMATHConstant(FS_MATHConstants::axisHeight, 0)));
    EXPECT_TRUE(std::isnan(dfont->getItalicsCorrection(TestFont::kA, 0)));
    EXPECT_EQ(dfont->getMATHVariantV(TestFont::kA, 0, 0), 0xFFFF);
    EXPECT_EQ(dfont->getMATHVariantH(TestFont::kA, 0, 0), 0xFFFF);
}

} // namespace
} // namespace KWFontService_NS
