#include "cff/CffFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// Glyphs .notdef, A (1), foo (2), bar (3), exclamdown (4), and one whose name is not there (5).
CffSections names() {
    CffSections table;
    table.strings = {Bytes::ofText("foo"), Bytes::ofText("bar")};
    table.charset = Bytes{0}.u16s({34, 391, 392, 96, 999});
    table.charStrings = std::vector<Bytes>(6, Bytes{14});
    table.privateDict = CffPrivate{};
    return table;
}

CffSections namesWithEncoding(const Bytes& codes) {
    CffSections table = names();
    table.encoding = Bytes{0}.u8(codes.size()).bytes(codes.vector());
    return table;
}

std::string nameOf(const Type1CMap& cff, int code) {
    std::string name;
    cff.getType1GlyphName(static_cast<unsigned char>(code >> 8),
                          static_cast<unsigned char>(code & 0xFF), name);
    return name;
}

TEST(Type1CMapCodes, ACharacterOfStandardEncodingIsItsOwnCodeAndNotListed) {
    LoadedCff cff(names());
    EXPECT_EQ(cff.giveCharCode('A', 1), 'A');
    EXPECT_EQ(cff.glyphOfCode('A'), 1);
    EXPECT_EQ(cff.getType1CMapArray(0), nullptr);
}

TEST(Type1CMapCodes, OtherGlyphsGetTheCodesThatStandardEncodingLeaves) {
    LoadedCff cff(names());
    EXPECT_EQ(cff.giveCharCode('A', 2), 1) << "the character is not what its glyph is called";
    EXPECT_EQ(nameOf(cff, 1), "foo");
    EXPECT_EQ(cff.giveCharCode(0x3B1, 3), 2);
    EXPECT_EQ(nameOf(cff, 2), "bar");
    EXPECT_EQ(cff.glyphOfCode(2), 3);
}

TEST(Type1CMapCodes, ACharacterKeepsItsCode) {
    LoadedCff cff(names());
    EXPECT_EQ(cff.giveCharCode(0x3B1, 2), 1);
    EXPECT_EQ(cff.giveCharCode(0x3B1, 3), 1) << "whatever glyph it is asked with";
    EXPECT_EQ(cff.glyphCode(3), 0);
}

TEST(Type1CMapCodes, CharactersOfOneGlyphShareItsCode) {
    LoadedCff cff(names());
    EXPECT_EQ(cff.giveCharCode(0x391, 1), 1);
    EXPECT_EQ(cff.giveCharCode('A', 1), 1) << "the glyph holds a code already";
    EXPECT_EQ(cff.giveGlyphCode(1), 1);
}

TEST(Type1CMapCodes, AGlyphWithoutACharacterIsHandedOutACode) {
    LoadedCff cff(names());
    EXPECT_EQ(cff.giveGlyphCode(1), 1);
    EXPECT_EQ(nameOf(cff, 1), "A");
    EXPECT_EQ(cff.giveGlyphCode(1), 1);
    EXPECT_EQ(cff.giveGlyphCode(0), 2);
    EXPECT_EQ(nameOf(cff, 2), ".notdef");
}

TEST(Type1CMapCodes, CodesOfStandardEncodingAreSteppedOverInFontProgram0) {
    LoadedCff cff(names());
    cff.nextCode = 159;
    EXPECT_EQ(cff.giveGlyphCode(2), 160);
    EXPECT_EQ(cff.giveGlyphCode(3), 176) << "161 to 175 are exclamdown to fl";
    EXPECT_EQ(cff.giveCharCode(161, 4), 161);
}

TEST(Type1CMapCodes, ThereIsNoStandardEncodingPastFontProgram0) {
    LoadedCff cff(names());
    cff.nextCode = 253;
    EXPECT_EQ(cff.giveGlyphCode(2), 0x0101);
    cff.nextCode = 254 + 'A' - 1;
    EXPECT_EQ(cff.giveGlyphCode(3), 0x0100 + 'A');
}

TEST(Type1CMapCodes, AnEncodingOfTheFontsOwnGivesItsCodesAndNamesThem) {
    LoadedCff cff(namesWithEncoding({0x41, 0x90}));
    EXPECT_EQ(cff.giveCharCode(0x3B1, 2), 0x90);
    EXPECT_EQ(nameOf(cff, 0x90), "foo");
    EXPECT_EQ(cff.glyphOfCode(0x90), 2);
    EXPECT_EQ(cff.giveGlyphCode(3), 1) << "it has no code there";
}

TEST(Type1CMapCodes, AStandardCharacterComesBeforeTheFontsEncoding) {
    LoadedCff cff(namesWithEncoding({0x90}));
    EXPECT_EQ(cff.giveCharCode('A', 1), 'A');
}

TEST(Type1CMapCodes, ACodeThatAnotherGlyphHoldsIsNotGivenTwice) {
    LoadedCff encoded(namesWithEncoding({0x90, 0x41, 0x90}));
    EXPECT_EQ(encoded.giveCharCode('A', 1), 'A');
    EXPECT_EQ(encoded.giveGlyphCode(2), 1) << "0x41 is taken";
    EXPECT_EQ(encoded.giveGlyphCode(3), 0x90);

    LoadedCff standard(namesWithEncoding({0x90, 0x41}));
    EXPECT_EQ(standard.giveGlyphCode(2), 0x41);
    EXPECT_EQ(standard.giveCharCode('A', 1), 0x90) << "its own value is taken";
}

TEST(Type1CMapCodes, CodeZeroOfAnEncodingIsNone) {
    LoadedCff cff(namesWithEncoding({0, 0}));
    EXPECT_EQ(cff.giveGlyphCode(2), 1);
}

TEST(Type1CMapCodes, AGlyphWithoutANameHasNoCode) {
    LoadedCff cff(names());
    EXPECT_EQ(cff.giveGlyphCode(5), 0);
    EXPECT_EQ(cff.giveGlyphCode(6), 0);
    EXPECT_EQ(cff.giveGlyphCode(FS_NO_GLYPH), 0);
    EXPECT_EQ(cff.giveCharCode(0x80, FS_NO_GLYPH), 0);
    EXPECT_EQ(cff.unicodeCode(0x80), 0);
    EXPECT_EQ(cff.nextCode, 0);
}

TEST(Type1CMapCodes, CIDKeyedFontsHaveNone) {
    CffCID font;
    font.glyphs = {{0, 0, {14}}, {34, 0, {14}}};
    LoadedCff cff(font.sections());
    ASSERT_TRUE(cff.isCID);
    EXPECT_EQ(cff.giveCharCode('A', 1), 0);
    EXPECT_EQ(cff.giveGlyphCode(1), 0);
}

TEST(Type1CMapCodes, WhenAllFontProgramsAreFullThereIsNone) {
    LoadedCff cff(names());
    cff.nextCode = Type1CodeMap::kAllCodes - 1;
    EXPECT_EQ(cff.giveCharCode(0x3B1, 2), 0);
    EXPECT_EQ(cff.unicodeCode(0x3B1), 0);
}

} // namespace
} // namespace KWFontService_NS
