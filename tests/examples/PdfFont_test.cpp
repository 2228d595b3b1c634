#include "typeset/PdfFont.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace {

UsedGlyphs glyphsOf(std::initializer_list<std::pair<unsigned short, std::u16string>> list) {
    UsedGlyphs glyphs;
    for (const auto& [gid, text] : list)
        glyphs[gid] = {text, 500};
    return glyphs;
}

PlacedGlyph placed(unsigned short gid, const char16_t* text, float advance, bool joined = false) {
    return {gid, advance, 0, 0, text, joined};
}

Line lineOf(std::size_t font, std::vector<PlacedGlyph> glyphs) {
    return {10, {{font, 10, Writing::horizontal, false, std::move(glyphs)}}};
}

Layout layoutOf(std::vector<PlacedGlyph> glyphs) {
    Layout layout;
    layout.pages.push_back({{lineOf(0, std::move(glyphs))}});
    return layout;
}

} // namespace

TEST(SubsetTag, IsSixCapitalsThatFollowTheGlyphs) {
    const std::string tag = subsetTag(glyphsOf({{0, u""}, {36, u"A"}}));
    EXPECT_THAT(tag, MatchesRegex("[A-Z]{6}"));
    EXPECT_EQ(tag, subsetTag(glyphsOf({{0, u""}, {36, u"B"}})));
    EXPECT_NE(tag, subsetTag(glyphsOf({{0, u""}, {37, u"A"}})));
    EXPECT_NE(tag, subsetTag(glyphsOf({{0, u""}, {36 << 8, u"A"}})));
}

TEST(ToUnicode, SingleGlyphsStandInBfcharAndNeighboursInBfrange) {
    const std::string map =
        toUnicodeCMap(glyphsOf({{3, u" "}, {36, u"A"}, {37, u"B"}, {38, u"C"}}));
    EXPECT_THAT(map, HasSubstr("1 beginbfchar\n<0003> <0020>\nendbfchar\n"));
    EXPECT_THAT(map, HasSubstr("1 beginbfrange\n<0024> <0026> <0041>\nendbfrange\n"));
}

TEST(ToUnicode, NeighboursWhoseCharactersAreNoneStandAlone) {
    const std::string map = toUnicodeCMap(glyphsOf({{36, u"A"}, {37, u"C"}}));
    EXPECT_THAT(map, HasSubstr("2 beginbfchar\n<0024> <0041>\n<0025> <0043>\nendbfchar\n"));
    EXPECT_THAT(map, Not(HasSubstr("bfrange")));
}

TEST(ToUnicode, ARangeEndsWhereALowByteRunsOver) {
    const std::string map = toUnicodeCMap(glyphsOf({{0xFE, u"\u3001"},
                                                    {0xFF, u"\u3002"},
                                                    {0x100, u"\u3003"},
                                                    {0x200, u"\u40FF"},
                                                    {0x201, u"\u4100"}}));
    EXPECT_THAT(map, HasSubstr("3 beginbfchar\n<0100> <3003>\n<0200> <40FF>\n<0201> <4100>\n"));
    EXPECT_THAT(map, HasSubstr("1 beginbfrange\n<00FE> <00FF> <3001>\n"));
}

TEST(ToUnicode, CharactersBeyondTheFirstPlaneAreUtf16Pairs) {
    EXPECT_THAT(toUnicodeCMap(glyphsOf({{7, u"\U0001D538"}})), HasSubstr("<0007> <D835DD38>"));
}

TEST(ToUnicode, ALigatureStandsForSeveralCharactersAndAPartOfOneForNone) {
    const std::string map =
        toUnicodeCMap(glyphsOf({{7, u"ffi"}, {8, u"ffj"}, {9, u""}, {10, u"x"}}));
    EXPECT_THAT(map, HasSubstr("<0007> <0008> <006600660069>\n"));
    EXPECT_THAT(map, HasSubstr("1 beginbfchar\n<000A> <0078>\nendbfchar\n"));
    EXPECT_THAT(map, Not(HasSubstr("<0009>")));
}

TEST(ToUnicode, BlocksHoldAtMostAHundredEntries) {
    UsedGlyphs glyphs;
    for (unsigned short gid = 0; gid < 202; gid = static_cast<unsigned short>(gid + 2))
        glyphs[gid] = {std::u16string(1, static_cast<char16_t>(gid + 0x4E00)), 0};
    const std::string map = toUnicodeCMap(glyphs);
    EXPECT_THAT(map, HasSubstr("100 beginbfchar\n"));
    EXPECT_THAT(map, HasSubstr("endbfchar\n1 beginbfchar\n<00C8> <4EC8>\nendbfchar\n"));
}

TEST(UsedGlyphs, AlwaysHasGlyphZero) {
    const UsedGlyphs glyphs = usedGlyphs(layoutOf({placed(36, u"A", 684)}), 0);
    ASSERT_EQ(glyphs.size(), 2U);
    EXPECT_EQ(glyphs.at(0).text, u"\uFFFD");
    EXPECT_EQ(glyphs.at(36).text, u"A");
    EXPECT_EQ(glyphs.at(36).advance, 684);
}

TEST(UsedGlyphs, GlyphZeroHasItsWidthButNoCharacterOfTheText) {
    const UsedGlyphs glyphs = usedGlyphs(layoutOf({placed(0, u"\u4E00", 600)}), 0);
    EXPECT_EQ(glyphs.at(0).text, u"\uFFFD");
    EXPECT_EQ(glyphs.at(0).advance, 600);
}

TEST(UsedGlyphs, AGlyphStandsForTheFirstCharacterThatUsedItAndANoBreakSpaceForASpace) {
    const UsedGlyphs glyphs = usedGlyphs(
        layoutOf({placed(5, u"\u03BC", 600), placed(5, u"\u00B5", 600), placed(6, u"\u00A0", 300)}),
        0);
    EXPECT_EQ(glyphs.at(5).text, u"\u03BC");
    EXPECT_EQ(glyphs.at(6).text, u" ");
}

TEST(UsedGlyphs, AGlyphThatStandsAloneSomewhereHasItsTextFromThere) {
    // An accented letter as two glyphs, then the letter by itself.
    const UsedGlyphs glyphs = usedGlyphs(
        layoutOf({placed(5, u"\u00E9", 600), placed(9, u"", 0, true), placed(5, u"e", 600)}), 0);
    EXPECT_EQ(glyphs.at(5).text, u"e");
    EXPECT_EQ(glyphs.at(9).text, u"");
}

TEST(UsedGlyphs, AreThoseOfOneFontAndNoneOfAFontThatSetsNoLine) {
    Layout layout = layoutOf({placed(36, u"A", 684)});
    layout.pages[0].lines.push_back(lineOf(1, {placed(37, u"B", 700)}));
    EXPECT_EQ(usedGlyphs(layout, 0).count(36), 1U);
    EXPECT_EQ(usedGlyphs(layout, 0).count(37), 0U);
    EXPECT_EQ(usedGlyphs(layout, 1).count(36), 0U);
    EXPECT_EQ(usedGlyphs(layout, 1).count(37), 1U);
    EXPECT_TRUE(usedGlyphs(layout, 2).empty());
}

TEST(UsedGlyphs, OfHalvesAreThoseOfTheFirstLinesAndOfTheLast) {
    Layout layout = layoutOf({placed(36, u"A", 684)});
    layout.pages[0].lines.push_back(lineOf(0, {placed(37, u"B", 700)}));
    layout.pages.emplace_back().lines.push_back(lineOf(0, {placed(38, u"C", 700)}));
    const std::vector<UsedGlyphs> halves = usedGlyphsOfHalves(layout, 0);
    ASSERT_EQ(halves.size(), 2U);
    EXPECT_EQ(idsOf(halves[0]), (std::vector<unsigned short>{0, 36, 37}));
    EXPECT_EQ(idsOf(halves[1]), (std::vector<unsigned short>{0, 38}));
}
