#include "type1/Type1CharCode.h"

#include <gtest/gtest.h>

#include <string>

namespace KWFontService_NS {
namespace {

/// A font of some glyphs, as its metrics file and its program describe it.
class CharCode : public testing::Test {
protected:
    CharCode() { codes.nextCode = Type1CodeMap::kLastOwnCode; }

    void setMetrics(std::vector<Type1CharMetric> records) {
        metrics = Type1Metrics(std::move(records));
        metrics.addAll();
        font.metrics = &metrics;
    }
    void setGlyphList(Type1GlyphList entries) {
        glyphList = std::move(entries);
        font.glyphList = &glyphList;
    }
    void setBuiltInNames(Type1BuiltInNames names) {
        builtInNames = std::move(names);
        font.builtInNames = &builtInNames;
    }
    int code(int ch) { return findType1CharCode(codes, font, ch); }
    std::string nameOf(int fontNumber, int byte) {
        std::string name;
        codes.getType1GlyphName(static_cast<unsigned char>(fontNumber),
                                static_cast<unsigned char>(byte), name);
        return name;
    }

    Type1CodeMap codes;
    Type1CodeSource font;

private:
    Type1Metrics metrics;
    Type1GlyphList glyphList;
    Type1BuiltInNames builtInNames;
};

Type1CharMetric glyph(int code, const char* name) {
    return {.code = code, .name = name};
}

TEST_F(CharCode, OfAFontThatNothingIsKnownOfIsZero) {
    EXPECT_EQ(code('A'), 0);
    EXPECT_EQ(code(-1), 0);
    EXPECT_EQ(code(0), 0);
}

TEST_F(CharCode, ACharacterTwiceHasTheFirstCode) {
    setMetrics({glyph(-1, "Amacron"), glyph(-1, "Abreve")});
    EXPECT_EQ(code(0x100), 128);
    EXPECT_EQ(code(0x102), 129);
    EXPECT_EQ(code(0x100), 128);
}

// --- by glyph name ------------------------------------------------------------------------------

TEST_F(CharCode, AStandardCharacterIsItsOwnCodeWithoutAName) {
    setMetrics({glyph('A', "A")});
    EXPECT_EQ(code('A'), 'A');
    EXPECT_EQ(codes.unicodeCode('A'), 'A');
    EXPECT_EQ(codes.getType1CMapArray(0), nullptr);
}

TEST_F(CharCode, OnlyARecordWithTheCharactersCodeKeepsIt) {
    setMetrics({glyph(66, "A"), glyph(39, "quoteright")});
    EXPECT_EQ(code('A'), 128);
    EXPECT_EQ(code(0x2019), 129);
    EXPECT_EQ(nameOf(0, 129), "quoteright");
}

TEST_F(CharCode, AnotherEncodingTakesTheStandardCodeOfTheName) {
    setMetrics({glyph(0xB7, "periodcentered")});
    EXPECT_EQ(code(0xB7), 180);
    EXPECT_EQ(codes.getType1CMapArray(0), nullptr);
}

TEST_F(CharCode, ANamedEncodingNamesTheStandardCode) {
    font.scheme = FS_ENCODING_WINANSI;
    setMetrics({glyph(0xB7, "periodcentered")});
    EXPECT_EQ(code(0xB7), 180);
    EXPECT_EQ(nameOf(0, 180), "periodcentered");
}

TEST_F(CharCode, ANameOutsideStandardEncodingGetsANewCode) {
    setMetrics({glyph(0xE4, "adieresis")});
    EXPECT_EQ(code(0xE4), 128);
    EXPECT_EQ(nameOf(0, 128), "adieresis");
}

TEST_F(CharCode, AGlyphListLeavesByteCodesAlone) {
    setMetrics({glyph(0xE4, "adieresis")});
    setGlyphList({{0x41, "A"}});
    EXPECT_EQ(code(0xE4), 0xE4);
    EXPECT_EQ(codes.getType1CMapArray(0), nullptr);
}

TEST_F(CharCode, NewCodesPassByThoseOfTheFont) {
    setMetrics({glyph(128, "one"), glyph(129, "two"), glyph(-1, "Amacron"), glyph(131, "three"),
                glyph(-1, "Abreve")});
    EXPECT_EQ(code(0x100), 130);
    EXPECT_EQ(code(0x102), 132);
}

TEST_F(CharCode, NewCodesPassByThoseThatStandForAnother) {
    font.scheme = FS_ENCODING_WINANSI;
    setMetrics({glyph(0xB7, "periodcentered"), glyph(-1, "Amacron")});
    EXPECT_EQ(code(0xB7), 180);
    codes.nextCode = 179;
    EXPECT_EQ(code(0x100), 181);
}

TEST_F(CharCode, NewCodesPassByThoseThatACharacterKeepsWithoutAName) {
    setMetrics({glyph(0xB7, "periodcentered"), glyph(-1, "Amacron")});
    EXPECT_EQ(code(0xB7), 180);
    EXPECT_EQ(nameOf(0, 180), "");
    codes.nextCode = 179;
    EXPECT_EQ(code(0x100), 181);
}

TEST_F(CharCode, NewCodesGoOnInFontOne) {
    setMetrics({glyph(-1, "Amacron"), glyph(-1, "Abreve")});
    codes.nextCode = 252;
    EXPECT_EQ(code(0x100), 253);
    EXPECT_EQ(code(0x102), 0x0101);
    EXPECT_EQ(nameOf(1, 1), "Abreve");
}

TEST_F(CharCode, TheNoBreakSpaceIsTheSpace) {
    setMetrics({glyph(32, "space")});
    EXPECT_EQ(code(0xA0), 128);
    EXPECT_EQ(nameOf(0, 128), "space");
}

TEST_F(CharCode, GreekOmegaIsTheGlyphThatIsCalledOmega) {
    setMetrics({glyph(-1, "Omega")});
    EXPECT_EQ(code(0x03A9), 128);
    EXPECT_EQ(nameOf(0, 128), "Omega");
}

// --- by the glyph list --------------------------------------------------------------------------

TEST_F(CharCode, AListedNameGivesTheLowByteOfItsCode) {
    setMetrics({glyph(0x41, "alpha"), glyph(0x142, "beta")});
    setGlyphList({{0x03B1, "alpha"}, {0x03B2, "beta"}});
    EXPECT_EQ(code(0x03B1), 0x41);
    EXPECT_EQ(code(0x03B2), 0x42);
    EXPECT_EQ(codes.getType1CMapArray(0), nullptr);
}

TEST_F(CharCode, AListedNameOfAFontSpecificEncodingIsNamed) {
    font.scheme = FS_ENCODING_FONT;
    setMetrics({glyph(0x41, "alpha")});
    setGlyphList({{0x03B1, "alpha"}});
    EXPECT_EQ(code(0x03B1), 0x41);
    EXPECT_EQ(nameOf(0, 0x41), "alpha");
    EXPECT_EQ(codes.unicodeCode(0x03B1), 0x41);
}

TEST_F(CharCode, AListedGlyphWithoutACodeGetsANewOne) {
    setMetrics({glyph(-1, "alpha.alt")});
    setGlyphList({{0x03B1, "alpha.alt"}});
    EXPECT_EQ(code(0x03B1), 128);
    EXPECT_EQ(nameOf(0, 128), "alpha.alt");
}

TEST_F(CharCode, AListedNameOutranksTheCharactersOwn) {
    setMetrics({glyph('A', "A"), glyph('B', "B")});
    setGlyphList({{'A', "B"}, {'B', "missing"}});
    EXPECT_EQ(code('A'), 'B');
    EXPECT_EQ(code('B'), 0);
}

TEST_F(CharCode, AListedCodeOfZeroIsNone) {
    setMetrics({glyph(0x100, "alpha")});
    setGlyphList({{0x03B1, "alpha"}});
    EXPECT_EQ(code(0x03B1), 0);
    EXPECT_EQ(codes.unicodeCode(0x03B1), 0);
}

// --- symbolic fonts -----------------------------------------------------------------------------

TEST_F(CharCode, ASymbolIsItsCodeFromEitherRange) {
    font.isSymbolic = true;
    setMetrics({glyph('A', "A")});
    EXPECT_EQ(code(0xF041), 0x41);
    EXPECT_EQ(nameOf(0, 0x41), "A");
    EXPECT_EQ(code(0x41), 0x41);
}

TEST_F(CharCode, SymbolsHaveNoSubstitutes) {
    font.isSymbolic = true;
    setMetrics({glyph(32, "space")});
    EXPECT_EQ(code(0xA0), 0);
    EXPECT_EQ(code(32), 32);
}

TEST_F(CharCode, ASymbolPastAByteGetsANewCode) {
    font.isSymbolic = true;
    setMetrics({glyph(0x100, "Amacron")});
    EXPECT_EQ(code(0x100), 128);
}

TEST_F(CharCode, ASymbolWithoutANameIsACodeThatTheFontHas) {
    font.isSymbolic = true;
    setMetrics({glyph(0x80, "a1"), glyph(31, "a2")});
    EXPECT_EQ(code(0xF080), 0x80);
    EXPECT_EQ(code(0x81), 0);
    EXPECT_EQ(code(31), 0);
    EXPECT_EQ(codes.getType1CMapArray(0), nullptr);
}

TEST_F(CharCode, OnlySymbolsLoseTheirHighBits) {
    setMetrics({glyph('A', "A")});
    EXPECT_EQ(code(0xF041), 0);
}

// --- names of the font program ------------------------------------------------------------------

TEST_F(CharCode, ABuiltInNameKeepsItsCode) {
    setBuiltInNames({{0x80, "foo"}});
    EXPECT_EQ(code(0x80), 0x80);
    EXPECT_EQ(codes.getType1CMapArray(0), nullptr);
    EXPECT_EQ(code(0x81), 0);
}

TEST_F(CharCode, ABuiltInNameOfAFontSpecificEncodingIsNamed) {
    font.scheme = FS_ENCODING_FONT;
    setBuiltInNames({{0x80, "foo"}});
    EXPECT_EQ(code(0x80), 0x80);
    EXPECT_EQ(nameOf(0, 0x80), "foo");
}

TEST_F(CharCode, BuiltInNamesFrom254OnGoToFontOne) {
    setBuiltInNames({{254, "foo"}, {255, "bar"}, {253, "last"}});
    EXPECT_EQ(code(254), 0x0101);
    EXPECT_EQ(code(255), 0x0102);
    EXPECT_EQ(code(253), 253);
    EXPECT_EQ(nameOf(1, 1), "foo");
}

TEST_F(CharCode, ABuiltInNameOfCodeZeroHasNone) {
    font.scheme = FS_ENCODING_FONT;
    setBuiltInNames({{0, "foo"}});
    EXPECT_EQ(code(0), 0);
    EXPECT_EQ(codes.getType1CMapArray(0), nullptr);
}

// --- without names ------------------------------------------------------------------------------

TEST_F(CharCode, WithoutNamesCharactersArePlainCodes) {
    font.skipGlyphNameMapping = true;
    setMetrics({glyph('B', "A")});
    EXPECT_EQ(code('A'), 'A');
    EXPECT_EQ(code(32), 32);
    EXPECT_EQ(code(255), 255);
    EXPECT_EQ(code(31), 0);
    EXPECT_EQ(code(0x100), 0);
    EXPECT_EQ(codes.unicodeCode('A'), 0);
}

TEST_F(CharCode, WithoutNamesAFontProgramHasToHaveTheCode) {
    font.skipGlyphNameMapping = true;
    setBuiltInNames({{0x41, "foo"}, {0x100, "bar"}});
    EXPECT_EQ(code(0x41), 0x41);
    EXPECT_EQ(nameOf(0, 0x41), "foo");
    EXPECT_EQ(code(0x42), 0);
    EXPECT_EQ(code(0x100), 0);
}

TEST(EncodingSchemeOf, NamesAreComparedLetterForLetter) {
    EXPECT_EQ(encodingSchemeOf(u"WinAnsiEncoding"), 2);
    EXPECT_EQ(encodingSchemeOf(u"MacRomanEncoding"), 3);
    EXPECT_EQ(encodingSchemeOf(u"MacExpertEncoding"), 4);
    EXPECT_EQ(encodingSchemeOf(u"FontSpecific"), 5);
    for (const char16_t* other :
         {u"StandardEncoding", u"AdobeStandardEncoding", u"fontspecific", u""})
        EXPECT_EQ(encodingSchemeOf(other), 1);
}

} // namespace
} // namespace KWFontService_NS
