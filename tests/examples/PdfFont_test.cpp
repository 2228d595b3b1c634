#include "typeset/PdfFont.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace {

UsedGlyphs glyphsOf(std::initializer_list<std::pair<unsigned short, char32_t>> list) {
    UsedGlyphs glyphs;
    for (const auto& [gid, character] : list)
        glyphs[gid] = {character, 500};
    return glyphs;
}

Layout layoutOf(std::vector<PlacedGlyph> glyphs) {
    Layout layout;
    layout.pages.push_back({{Line{0, 10, 10, std::move(glyphs)}}});
    return layout;
}

} // namespace

TEST(SubsetTag, IsSixCapitalsThatFollowTheGlyphs) {
    const std::string tag = subsetTag(glyphsOf({{0, 0}, {36, U'A'}}));
    EXPECT_THAT(tag, MatchesRegex("[A-Z]{6}"));
    EXPECT_EQ(tag, subsetTag(glyphsOf({{0, 0}, {36, U'B'}})));
    EXPECT_NE(tag, subsetTag(glyphsOf({{0, 0}, {37, U'A'}})));
    EXPECT_NE(tag, subsetTag(glyphsOf({{0, 0}, {36 << 8, U'A'}})));
}

TEST(ToUnicode, SingleGlyphsStandInBfcharAndNeighboursInBfrange) {
    const std::string map =
        toUnicodeCMap(glyphsOf({{3, U' '}, {36, U'A'}, {37, U'B'}, {38, U'C'}}));
    EXPECT_THAT(map, HasSubstr("1 beginbfchar\n<0003> <0020>\nendbfchar\n"));
    EXPECT_THAT(map, HasSubstr("1 beginbfrange\n<0024> <0026> <0041>\nendbfrange\n"));
}

TEST(ToUnicode, NeighboursWhoseCharactersAreNoneStandAlone) {
    const std::string map = toUnicodeCMap(glyphsOf({{36, U'A'}, {37, U'C'}}));
    EXPECT_THAT(map, HasSubstr("2 beginbfchar\n<0024> <0041>\n<0025> <0043>\nendbfchar\n"));
    EXPECT_THAT(map, Not(HasSubstr("bfrange")));
}

TEST(ToUnicode, ARangeEndsWhereALowByteRunsOver) {
    const std::string map = toUnicodeCMap(glyphsOf(
        {{0xFE, 0x3001}, {0xFF, 0x3002}, {0x100, 0x3003}, {0x200, 0x40FF}, {0x201, 0x4100}}));
    EXPECT_THAT(map, HasSubstr("3 beginbfchar\n<0100> <3003>\n<0200> <40FF>\n<0201> <4100>\n"));
    EXPECT_THAT(map, HasSubstr("1 beginbfrange\n<00FE> <00FF> <3001>\n"));
}

TEST(ToUnicode, CharactersBeyondTheFirstPlaneAreUtf16Pairs) {
    EXPECT_THAT(toUnicodeCMap(glyphsOf({{7, U'\U0001D538'}})), HasSubstr("<0007> <D835DD38>"));
}

TEST(ToUnicode, BlocksHoldAtMostAHundredEntries) {
    UsedGlyphs glyphs;
    for (unsigned short gid = 0; gid < 202; gid = static_cast<unsigned short>(gid + 2))
        glyphs[gid] = {gid + 0x4E00U, 0};
    const std::string map = toUnicodeCMap(glyphs);
    EXPECT_THAT(map, HasSubstr("100 beginbfchar\n"));
    EXPECT_THAT(map, HasSubstr("endbfchar\n1 beginbfchar\n<00C8> <4EC8>\nendbfchar\n"));
}

TEST(UsedGlyphs, AlwaysHasGlyphZero) {
    const UsedGlyphs glyphs = usedGlyphs(layoutOf({{36, U'A', 684, 0}}), 0);
    ASSERT_EQ(glyphs.size(), 2U);
    EXPECT_EQ(glyphs.at(0).character, U'\uFFFD');
    EXPECT_EQ(glyphs.at(36).character, U'A');
    EXPECT_EQ(glyphs.at(36).advance, 684);
}

TEST(UsedGlyphs, GlyphZeroHasItsWidthButNoCharacterOfTheText) {
    const UsedGlyphs glyphs = usedGlyphs(layoutOf({{0, U'\u4E00', 600, 0}}), 0);
    EXPECT_EQ(glyphs.at(0).character, U'\uFFFD');
    EXPECT_EQ(glyphs.at(0).advance, 600);
}

TEST(UsedGlyphs, AGlyphStandsForTheFirstCharacterThatUsedItAndANoBreakSpaceForASpace) {
    const UsedGlyphs glyphs = usedGlyphs(
        layoutOf({{5, U'\u03BC', 600, 0}, {5, U'\u00B5', 600, 0}, {6, U'\u00A0', 300, 0}}), 0);
    EXPECT_EQ(glyphs.at(5).character, U'\u03BC');
    EXPECT_EQ(glyphs.at(6).character, U' ');
}

TEST(UsedGlyphs, AreThoseOfOneFontAndNoneOfAFontThatSetsNoLine) {
    Layout layout = layoutOf({{36, U'A', 684, 0}});
    layout.pages[0].lines.push_back(Line{1, 30, 20, {{37, U'B', 700, 0}}});
    EXPECT_EQ(usedGlyphs(layout, 0).count(36), 1U);
    EXPECT_EQ(usedGlyphs(layout, 0).count(37), 0U);
    EXPECT_EQ(usedGlyphs(layout, 1).count(36), 0U);
    EXPECT_EQ(usedGlyphs(layout, 1).count(37), 1U);
    EXPECT_TRUE(usedGlyphs(layout, 2).empty());
}
