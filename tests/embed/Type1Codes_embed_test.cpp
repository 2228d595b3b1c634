// Type 1 codes of fonts with `CFF ` outlines, and the subset that they make.

#include "CffOutput.h"
#include "fonts/FaceFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

class Type1Codes : public testing::Test {
protected:
    Bytes embed(const Glyphs& codes) {
        KWMemStream out;
        return font.font().getType1EmbedFont(codes, out, &font.stream(), 0) ? bytesOf(out)
                                                                            : Bytes();
    }

    TestFont source = TestFont::openType();
    EmbeddableFont font{source.build()};
};

TEST_F(Type1Codes, CharactersOfStandardEncodingAreTheirOwn) {
    EXPECT_EQ(font.font().getType1CharCode('A', 0), 'A');
    EXPECT_EQ(font.font().getType1CharCode(' ', 0), ' ');
    EXPECT_EQ(font.font().getType1CMapArray(0, 0), nullptr);
}

TEST_F(Type1Codes, WhatTheFontLacksHasNone) {
    EXPECT_EQ(font.font().getType1CharCode('C', 0), 0);
    EXPECT_EQ(font.font().getType1GlyphIDCode(99, 0), 0);
}

TEST_F(Type1Codes, GlyphsAreHandedOutCodesWithTheirNames) {
    EXPECT_EQ(font.font().getType1GlyphIDCode(TestFont::kB, 0), 1);
    EXPECT_EQ(font.font().getType1CharCode('B', 0), 1);
    std::string name;
    EXPECT_TRUE(font.font().getType1GlyphName(0, 1, name, 0));
    EXPECT_EQ(name, "B");
    unsigned char code = 0;
    EXPECT_TRUE(font.font().getType1CMapPair(0, 0, code, name, 0));
    EXPECT_EQ(code, 1);
    EXPECT_FALSE(font.font().getType1CMapPair(0, 1, code, name, 0));
    ASSERT_NE(font.font().getType1CMapArray(0, 0), nullptr);
    EXPECT_EQ(font.font().getType1CMapArray(0, 0)->size(), 1U);
}

TEST_F(Type1Codes, TheSubsetHasTheGlyphsBehindThem) {
    const unsigned short a = font.font().getType1CharCode('A', 0);
    const unsigned short b = font.font().getType1GlyphIDCode(TestFont::kB, 0);
    const Bytes table = source.extras.get("CFF ");
    EXPECT_EQ(embed({a}), renumbered(table, {TestFont::kA}));
    EXPECT_EQ(embed({b, a}), renumbered(table, {TestFont::kB, TestFont::kA}));
}

TEST_F(Type1Codes, CodesThatWereNotGivenOutArePassedOver) {
    const unsigned short a = font.font().getType1CharCode('A', 0);
    EXPECT_EQ(embed({0, 'B', a, 0x0141}), renumbered(source.extras.get("CFF "), {TestFont::kA}));
    EXPECT_TRUE(embed({'B'}).empty());
    EXPECT_TRUE(embed({}).empty());
}

TEST(Type1CodesOf, FontsWithoutGlyphNamesHaveNone) {
    TestFont cid = TestFont::openType();
    CffCID table;
    for (int i = 0; i < 4; ++i)
        table.glyphs.push_back({static_cast<std::uint16_t>(i), 0, Bytes{14}});
    table.fontDicts[0].privateDict = CffPrivate{.dict = Bytes{140, 20}};
    for (const TestFont& source : {cid.with("CFF ", table), TestFont::latin()}) {
        EmbeddableFont font(source.build());
        EXPECT_EQ(font.font().getType1CharCode('A', 0), 0);
        EXPECT_EQ(font.font().getType1GlyphIDCode(1, 0), 0);
        KWMemStream out;
        EXPECT_FALSE(font.font().getType1EmbedFont({'A'}, out, &font.stream(), 0));
    }
}

TEST(Type1CodesOf, AFaceThatIsNotLoadedHasNone) {
    std::istringstream stream(TestFont::openType().build().str());
    const KWCommonNS::KWPtr<FS_OpenType> font(new FS_OpenType(KWCommonNS::KWUri()));
    KWCommonNS::KWError error;
    ASSERT_TRUE(font->scanFont(error, stream));
    EXPECT_EQ(font->getType1CharCode('A', 0), 0);
    EXPECT_EQ(font->getType1GlyphIDCode(1, 0), 0);
}

TEST(Type1CodesOf, FontProgram0IsLeftToAnEncodingOfTheFontsOwn) {
    TestFont source = TestFont::openType();
    CffSections table;
    table.encoding = Bytes{0, 1, 0x90};
    table.charset = Bytes{0}.u16s({1, 34, 35}); // space, A, B
    table.charStrings = std::vector<Bytes>(TestFont::kOpenTypeGlyphs, Bytes{14});
    table.privateDict = CffPrivate{};
    EmbeddableFont font(source.with("CFF ", table).build());
    EXPECT_EQ(font.font().getType1GlyphIDCode(1, 0), 0x90);
    EXPECT_EQ(font.font().getType1GlyphIDCode(TestFont::kB, 0), 0x0101);
}

TEST(Type1CodesOf, MembersOfACollectionHaveCodesOfTheirOwn) {
    const TestFont source = TestFont::openType();
    std::istringstream stream(collectionOf({source, source}).build().str());
    const KWCommonNS::KWPtr<FS_TrueTypeCollection> font(
        new FS_TrueTypeCollection(KWCommonNS::KWUri()));
    KWCommonNS::KWError error;
    ASSERT_TRUE(font->scanFont(error, stream));
    for (const int face : {0, 1})
        ASSERT_TRUE(font->loadFont(error, face, &stream));
    EXPECT_EQ(font->getType1GlyphIDCode(TestFont::kA, 0), 1);
    EXPECT_EQ(font->getType1GlyphIDCode(TestFont::kB, 1), 1);
    std::string name;
    EXPECT_TRUE(font->getType1GlyphName(0, 1, name, 1));
    EXPECT_EQ(name, "B");
    KWMemStream out;
    ASSERT_TRUE(font->getType1EmbedFont({1}, out, &stream, 1));
    EXPECT_EQ(bytesOf(out), renumbered(source.extras.get("CFF "), {TestFont::kB}));
}

} // namespace
} // namespace KWFontService_NS
