#include "fonts/FS_OpenType.h"

#include "cff/Type1CMap.h"
#include "fonts/SfntFixture.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// The sound OpenType font with a CID-keyed table: glyphs 1 to 3 are CIDs 7, 9 and 8.
TestFont cidKeyed() {
    CffCID cff;
    cff.glyphs = {{0, 0, {14}}, {7, 0, {14}}, {9, 0, {14}}, {8, 0, {14}}};
    TestFont font = TestFont::openType();
    font.with("CFF ", cff);
    return font;
}

TEST(OpenType, OfNamesIsTypeSevenAndNoCID) {
    MemoryFont<FS_OpenType> font(TestFont::openType().build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_EQ(font->getFontFileType(0), 7);
    EXPECT_TRUE(font->isTrueTypeFont(0));
    EXPECT_TRUE(font->isType1OrNoCID(0));
    EXPECT_FALSE(font->isTrueTypeOrCID(0));
    EXPECT_TRUE(font->isOpenType());
}

TEST(OpenType, OfCIDsIsTypeEight) {
    MemoryFont<FS_OpenType> font(cidKeyed().build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getFontFileType(0), 7);
    ASSERT_TRUE(font.load()) << font.complaint();
    EXPECT_EQ(font->getFontFileType(0), 8);
    EXPECT_FALSE(font->isType1OrNoCID(0));
    EXPECT_TRUE(font->isTrueTypeOrCID(0));
}

TEST(OpenType, StringIDsAreThoseOfTheGlyphNames) {
    MemoryFont<FS_OpenType> font(TestFont::openType().build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_EQ(font->getStringID(TestFont::kNotdef, 0), 0);
    EXPECT_EQ(font->getStringID(TestFont::kSpace, 0), 391);
    EXPECT_EQ(font->getStringID(TestFont::kB, 0), 393);
    EXPECT_EQ(font->getStringID(4, 0), 0);
    EXPECT_EQ(font->getCFFInfo(0)->getStringOfSID(393), "B");
}

TEST(OpenType, TheEncodingSchemeIsOfTheTopDict) {
    MemoryFont<FS_OpenType> standard(TestFont::openType().build());
    ASSERT_TRUE(standard.scanAndLoad()) << standard.complaint();
    EXPECT_EQ(standard->getEncodingScheme(0), FS_ENCODING_STANDARD);
    CffSections cff;
    cff.encoding = Bytes{0, 1, 65};
    cff.charStrings = std::vector<Bytes>(4, Bytes{14});
    TestFont file = TestFont::openType();
    MemoryFont<FS_OpenType> own(file.with("CFF ", cff).build());
    ASSERT_TRUE(own.scanAndLoad()) << own.complaint();
    EXPECT_EQ(own->getEncodingScheme(0), FS_ENCODING_FONT);
}

TEST(OpenType, ACIDKeyedFontHasACollection) {
    MemoryFont<FS_OpenType> font(cidKeyed().build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    FS_CIDSystemInfo info;
    ASSERT_TRUE(font->getCIDSystemInfo(info, 0));
    EXPECT_EQ(info.Registry, "Adobe");
    EXPECT_EQ(info.Ordering, "Identity");
    EXPECT_EQ(info.Supplement, 0);
}

TEST(OpenType, ANameKeyedFontHasNoCollection) {
    MemoryFont<FS_OpenType> font(TestFont::openType().build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    FS_CIDSystemInfo info{"r", "o", 3};
    EXPECT_FALSE(font->getCIDSystemInfo(info, 0));
    EXPECT_EQ(info.Registry, "r");
    EXPECT_EQ(info.Ordering, "o");
    EXPECT_EQ(info.Supplement, 3);
}

TEST(OpenType, BeforeTheLoadItAnswersNothing) {
    MemoryFont<FS_OpenType> font(cidKeyed().build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getCFFInfo(0), nullptr);
    EXPECT_EQ(font->getStringID(1, 0), 0);
    EXPECT_EQ(font->getEncodingScheme(0), FS_ENCODING_NONE);
    FS_CIDSystemInfo info;
    EXPECT_FALSE(font->getCIDSystemInfo(info, 0));
}

TEST(OpenType, EverySfntHasAHolder) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    ASSERT_NE(font->getCFFInfo(0), nullptr);
    EXPECT_EQ(font->getCFFInfo(0)->getGlyphOfCID(1), 0xFFFF);
    EXPECT_EQ(font->getStringID(1, 0), 0);
    EXPECT_EQ(font->getEncodingScheme(0), FS_ENCODING_NONE);
}

TEST(OpenType, TheFacadeFindsGlyphsByTheirCID) {
    const TempDir dir;
    dir.write("cid.otf", cidKeyed().build());
    dir.write("names.otf", TestFont::openType().build());
    dir.write("plain.ttf", TestFont::latin().build());
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(dir.uri("cid.otf"))) << complaintOf(info.getError());
    EXPECT_EQ(info.getGlyphIDfromCID(8), 3);
    EXPECT_EQ(info.getGlyphIDfromCID(6), 0xFFFF);
    EXPECT_EQ(info.getGlyphIDfromCID(0), 0xFFFF);
    ASSERT_TRUE(info.createFont(dir.uri("names.otf"))) << complaintOf(info.getError());
    EXPECT_EQ(info.getGlyphIDfromCID(392), 2);
    EXPECT_EQ(info.getStringID(2), 392);
    ASSERT_TRUE(info.createFont(dir.uri("plain.ttf"))) << complaintOf(info.getError());
    EXPECT_EQ(info.getGlyphIDfromCID(1), 0xFFFF);
}

TEST(OpenType, ACharsetAtOffsetOneSpoilsTheLoad) {
    CffSections cff;
    cff.topDict = Bytes{140, 15};
    cff.charStrings = std::vector<Bytes>(4, Bytes{14});
    cff.header = Bytes{1, 9, 4, 4};
    TestFont file = TestFont::openType();
    EXPECT_EQ(loadComplaint<FS_OpenType>(file.with("CFF ", cff).build()),
              readError("'CFF' table read error"));
}

} // namespace
} // namespace KWFontService_NS
