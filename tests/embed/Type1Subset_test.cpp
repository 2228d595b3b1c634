#include "embed/Type1Subset.h"

#include "support/Type1Font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace KWFontService_NS {
namespace {

using KWTest::Type1CharString;
using KWTest::Type1Font;

/// The section that comes out, nothing when the selection says no.
std::optional<std::string> subset(std::string_view section, std::string_view codes,
                                  const Type1CodeNames& names = {}) {
    KWMemStream output;
    if (!subsetEexecSection(section, codes, names, output))
        return std::nullopt;
    return std::string(output.data(), output.size());
}

std::string sectionOf(const Type1Font& font) {
    return "lead" + font.privateText().str();
}
std::optional<std::string> subset(const Type1Font& font, std::string_view codes,
                                  const Type1CodeNames& names = {}) {
    return subset(sectionOf(font), codes, names);
}

/// The section of a font with these glyphs alone.
std::string only(Type1Font font, const std::vector<std::string>& names) {
    std::erase_if(font.glyphs, [&names](const Type1Font::Glyph& glyph) {
        return std::ranges::find(names, glyph.name) == names.end();
    });
    return sectionOf(font);
}

/// A section whose entries hold no charstrings to speak of.
std::string handMade(std::string_view charStrings) {
    return "lead/Private 1 dict dup begin /CharStrings " + std::string(charStrings);
}

// --- what is selected ---------------------------------------------------------------------------

TEST(Type1Subset, TheGlyphsOfCodesAndNotdefStayAndAllElseIsCopied) {
    const Type1Font font = Type1Font::latin();
    EXPECT_EQ(subset(font, "B"), only(font, {".notdef", "B"}));
    EXPECT_EQ(subset(font, "A "), only(font, {".notdef", "A", "space"}));
}

TEST(Type1Subset, EntriesStayInTheOrderOfTheFile) {
    const Type1Font font = Type1Font::latin();
    EXPECT_EQ(subset(font, " BA"), subset(font, "AB "));
    EXPECT_EQ(subset(font, "BBBB"), subset(font, "B"));
}

TEST(Type1Subset, WithoutCodesNotdefIsLeft) {
    const Type1Font font = Type1Font::latin();
    EXPECT_EQ(subset(font, ""), only(font, {".notdef"}));
}

TEST(Type1Subset, ACodeWithNoGlyphSelectsNothing) {
    const Type1Font font = Type1Font::latin();
    EXPECT_EQ(subset(font, std::string_view("\0Z\xFF", 3)), only(font, {".notdef"}));
}

TEST(Type1Subset, SubrsStayWhole) {
    Type1Font font = Type1Font::latin();
    font.subrs = {Type1CharString().op({}, 11), Type1CharString().op({1, 2}, 11)};
    EXPECT_EQ(subset(font, "A"), only(font, {".notdef", "A"}));
}

TEST(Type1Subset, OfEntriesOfOneNameTheFirstIsSelected) {
    Type1Font font = Type1Font::latin();
    font.glyphs.push_back({"B", Type1CharString::rectangle(1, 2, 3, 4, 5)});
    Type1Font expected = Type1Font::latin();
    expected.glyphs = {expected.glyphs[0], expected.glyphs[2]};
    EXPECT_EQ(subset(font, "B"), sectionOf(expected));
}

// --- accented glyphs ----------------------------------------------------------------------------

class Seac : public testing::Test {
protected:
    Seac() { codes.addCMapEntry(0, 0x80, "Aacute"); }

    std::optional<std::string> subsetAacute(const Type1Font& source) const {
        return subset(source, "\x80", {.codes = &codes});
    }

    Type1Font font = Type1Font::latin();
    Type1CodeMap codes;
};

TEST_F(Seac, PartsComeAlongAndCount) {
    const auto result = subsetAacute(font);
    EXPECT_EQ(result, only(font, {".notdef", "A", "acute", "Aacute"}));
    EXPECT_NE(result->find("/CharStrings 4 dict dup begin\n"), std::string::npos);
}

TEST_F(Seac, APartThatIsTheFirstEntryComesAlong) {
    font.glyphs.erase(font.glyphs.begin());
    ASSERT_EQ(font.glyphs.front().name, "A");
    EXPECT_EQ(subsetAacute(font), only(font, {"A", "acute", "Aacute"}));
}

TEST_F(Seac, ThePartsOfPartsDoNot) {
    font.glyphs[4].charString = Type1CharString().hsbw(0, 300).seac(0, 0, 0, 'B', ' ');
    EXPECT_EQ(subsetAacute(font), only(font, {".notdef", "A", "acute", "Aacute"}));
}

TEST_F(Seac, PartsThatTheFontDoesNotHaveAreNone) {
    font.glyphs[5].charString = Type1CharString().hsbw(0, 300).seac(0, 0, 0, 'C', 0);
    EXPECT_EQ(subsetAacute(font), only(font, {".notdef", "Aacute"}));
    font.glyphs[5].charString = Type1CharString().hsbw(0, 300).seac(0, 0, 0, 100000, -1);
    EXPECT_EQ(subsetAacute(font), only(font, {".notdef", "Aacute"}));
}

TEST_F(Seac, AGlyphMadeOfItselfEnds) {
    font.glyphs[1].charString = Type1CharString().hsbw(0, 300).seac(0, 0, 0, 'A', 'A');
    EXPECT_EQ(subset(font, "A"), only(font, {".notdef", "A"}));
}

TEST_F(Seac, LeadBytesAreAsManyAsTheFontSays) {
    for (const int lenIV : {-1, 0, 1, 4, 7}) {
        font.lenIV = lenIV;
        EXPECT_EQ(subsetAacute(font), only(font, {".notdef", "A", "acute", "Aacute"})) << lenIV;
    }
}

TEST_F(Seac, LeadBytesThatLieHaveNoParts) {
    const auto withLenIV = [](std::string section, const char* lenIV) {
        return section.insert(section.find("/BlueValues"), lenIV);
    };
    for (const char* lenIV : {"/lenIV 2147483648 def ", "/lenIV 60 def "}) {
        EXPECT_EQ(subset(withLenIV(sectionOf(font), lenIV), "\x80", {.codes = &codes}),
                  withLenIV(only(font, {".notdef", "Aacute"}), lenIV));
    }
}

// --- names of codes -----------------------------------------------------------------------------

class CodeNames : public testing::Test {
protected:
    CodeNames() : metrics({{.code = 'A', .name = "metric"}, {.code = 'B', .name = "onlyMetric"}}) {
        metrics.addAll();
        for (unsigned char fontNumber = 0; fontNumber < 2; ++fontNumber)
            codes.addCMapEntry(fontNumber, 'A', "given");
        codes.addCMapEntry(0, 'D', "onlyGiven");
    }
    Type1CodeNames all(unsigned char fontNumber) const {
        return {.fontNumber = fontNumber,
                .builtInNames = &builtIn,
                .codes = &codes,
                .metrics = &metrics};
    }

    Type1BuiltInNames builtIn{{'A', "builtIn"}, {'E', ""}};
    Type1CodeMap codes;
    Type1Metrics metrics;
};

TEST_F(CodeNames, BuiltInNamesOfFontProgram0ComeFirst) {
    EXPECT_EQ(all(0).nameOf('A'), "builtIn");
    EXPECT_EQ(all(0).nameOf('E'), "E") << "a name that is empty is none";
}

TEST_F(CodeNames, ThenNamesThatWereHandedOut) {
    EXPECT_EQ(all(1).nameOf('A'), "given");
    EXPECT_EQ(all(0).nameOf('D'), "onlyGiven");
}

TEST_F(CodeNames, ThenThoseOfTheMetrics) {
    EXPECT_EQ(all(0).nameOf('B'), "onlyMetric");
    EXPECT_EQ(all(1).nameOf('B'), "onlyMetric");
}

TEST_F(CodeNames, AFontNumberThatNothingWasHandedOutForHasTheOtherNames) {
    EXPECT_EQ(all(9).nameOf('A'), "metric");
    EXPECT_EQ(all(9).nameOf('D'), "");
}

TEST_F(CodeNames, AtLastThoseOfStandardEncodingForFontProgram0) {
    EXPECT_EQ(all(0).nameOf('C'), "C");
    EXPECT_EQ(all(1).nameOf('C'), "");
    EXPECT_EQ(Type1CodeNames{}.nameOf(0xE1), "AE");
    EXPECT_EQ(Type1CodeNames{}.nameOf(0), "");
}

// --- the form of the section --------------------------------------------------------------------

TEST(Type1Subset, TheNumberIsWrittenAnewWithWhatBelongsToIt) {
    EXPECT_EQ(subset(handMade("   2   dict dup begin \r\n/A 1 RD x ND\n/B 1 RD y ND\nend"), "B"),
              "lead/Private 1 dict dup begin /CharStrings    1 dict dup begin\n/B 1 RD y ND\nend");
}

TEST(Type1Subset, WhiteSpaceBehindAnEntryTravelsWithIt) {
    EXPECT_EQ(
        subset(handMade("3 dict dup begin\n/A 1 RD x ND\r\n/B 1 -| y |-  /C 1 RD zND\rend"), "AC"),
        handMade("2 dict dup begin\n/A 1 RD x ND\r\n/C 1 RD zND\rend"));
}

TEST(Type1Subset, TheEndOfAnEntryMayBeTwoWords) {
    EXPECT_EQ(
        subset(handMade("2 dict dup begin\n/A 1 RD x noaccess def\n/B 1 RD y readonly def\n"), "B"),
        handMade("1 dict dup begin\n/B 1 RD y readonly def\n"));
    EXPECT_FALSE(subset(handMade("1 dict dup begin\n/A 1 RD x noaccess /B 1 RD y ND"), "B"));
}

TEST(Type1Subset, ACharstringMayHoldAnything) {
    const std::string entry = "/A 22 RD /B 1 RD x ND end /Char ND\n";
    EXPECT_EQ(subset(handMade("2 dict dup begin\n/B 1 RD x ND\n" + entry + "end"), "A"),
              handMade("1 dict dup begin\n" + entry + "end"));
}

TEST(Type1Subset, WithoutCharStringsItSaysNo) {
    EXPECT_FALSE(subset("", "A"));
    EXPECT_FALSE(subset("lead/Private 1 dict /CharString 1 dict dup begin", "A"));
}

TEST(Type1Subset, TheNumberHasToBeOneWithABlankBehindIt) {
    const char* const entries = "dict dup begin\n/A 1 RD x ND\nend";
    EXPECT_TRUE(subset(handMade(std::string("1 ") + entries), "A"));
    for (const char* number : {"", "0 ", "x ", "-1 ", "1", "1\n", "1x "})
        EXPECT_FALSE(subset(handMade(std::string(number) + entries), "A")) << number;
    EXPECT_FALSE(subset(handMade("1 dict begin\n/A 1 RD x ND\nend"), "A"));
}

// --- sections that lie --------------------------------------------------------------------------

TEST(Type1Subset, FewerEntriesThanAnnouncedAreThoseThereAre) {
    Type1Font font = Type1Font::latin();
    font.announcedGlyphs = 300;
    EXPECT_EQ(subset(font, "B"), only(Type1Font::latin(), {".notdef", "B"}));
    EXPECT_TRUE(subset(handMade("99999999999999999999999 dict dup begin\n/A 1 RD x ND\n"), "A"));
}

TEST(Type1Subset, EntriesPastTheNumberStay) {
    Type1Font font = Type1Font::latin();
    font.announcedGlyphs = 2;
    const auto result = subset(font, "B");
    ASSERT_TRUE(result);
    EXPECT_NE(result->find("/CharStrings 1 dict dup begin\n/.notdef "), std::string::npos);
    EXPECT_EQ(result->find("/A "), std::string::npos);
    EXPECT_NE(result->find("/B "), std::string::npos);
    EXPECT_NE(result->find("/Aacute "), std::string::npos);
}

TEST(Type1Subset, WithoutAnEntryItSaysNo) {
    EXPECT_FALSE(subset(handMade("5 dict dup begin\nend"), "A"));
    EXPECT_FALSE(subset(handMade("5 dict dup begin"), "A"));
}

TEST(Type1Subset, AnEntryThatIsCutShortIsRefused) {
    const std::string whole = handMade("1 dict dup begin\n/A 4 RD abcd ND");
    ASSERT_TRUE(subset(whole, "A"));
    const std::size_t entry = whole.find("/A");
    for (std::size_t end = entry + 1; end < whole.size() - 1; ++end)
        EXPECT_FALSE(subset(whole.substr(0, end), "A")) << whole.substr(entry, end - entry);
}

TEST(Type1Subset, LengthsThatLieAreRefused) {
    for (const char* length : {"7", "8", "4294967296", "18446744073709551615",
                               "99999999999999999999999", "-1", "x", ""}) {
        const std::string entry = "/A " + std::string(length) + " RD abcd ND";
        EXPECT_FALSE(subset(handMade("2 dict dup begin\n" + entry), "A")) << length;
    }
    // One that ends early makes another entry of the rest, or none.
    EXPECT_FALSE(subset(handMade("2 dict dup begin\n/A 0 RD /B 9 RD x ND\n"), "A"));
}

TEST(Type1Subset, NamesMayHaveAMegabyte) {
    const std::string name(1 << 20, 'n');
    const std::string entry = "/" + name + " 1 RD x ND\n";
    Type1CodeMap codes;
    codes.addCMapEntry(1, 7, name);
    const std::string section = handMade("2 dict dup begin\n/A 1 RD x ND\n" + entry + "end");
    EXPECT_EQ(subset(section, "\x07", {.fontNumber = 1, .codes = &codes}),
              handMade("1 dict dup begin\n" + entry + "end"));
    EXPECT_EQ(subset(section, "A"), handMade("1 dict dup begin\n/A 1 RD x ND\nend"));
}

TEST(Type1Subset, ManyCodesAreLookedUpOnce) {
    const Type1Font font = Type1Font::latin();
    EXPECT_EQ(subset(font, std::string(1 << 20, 'B')), only(font, {".notdef", "B"}));
}

} // namespace
} // namespace KWFontService_NS
