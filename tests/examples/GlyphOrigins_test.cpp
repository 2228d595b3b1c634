// The words are those that the library leaves: how many glyphs one stands for, and where a mark
// stood that a ligature passed over.

#include "typeset/GlyphOrigins.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using namespace KWFontService_NS;
using testing::ElementsAre;

namespace {

using Positions = std::vector<GlyphIDPosition>;

/// Glyphs 1, 2, 3 ... that stand for a UTF-16 unit each.
Positions runOf(int count) {
    Positions run;
    for (int i = 0; i < count; ++i) {
        run.emplace_back(1, 0);
        run.back().setGlyphID(static_cast<unsigned short>(i + 1), GlyphClassDef::Base);
    }
    return run;
}

struct Result {
    unsigned short gid;
    int count;
    int passedOver = 0;
};
GlyphIDArray2 resultOf(const std::vector<Result>& glyphs) {
    GlyphIDArray2 run;
    for (const Result& glyph : glyphs) {
        run.push_back(glyph.gid, GlyphClassDef::Base);
        run.words().push_back(glyph.passedOver << 16 | glyph.count);
    }
    return run;
}

std::vector<int> lengthsOf(const Positions& run) {
    std::vector<int> lengths;
    for (const GlyphIDPosition& glyph : run)
        lengths.push_back(glyph.getCorrespondLength());
    return lengths;
}
std::vector<int> glyphsOf(const Positions& run) {
    std::vector<int> glyphs;
    for (const GlyphIDPosition& glyph : run)
        glyphs.push_back(glyph.getGlyphID());
    return glyphs;
}
std::vector<int> componentsOf(const Positions& run) {
    std::vector<int> components;
    for (const GlyphIDPosition& glyph : run)
        components.push_back(glyph.getSkipInfo());
    return components;
}

} // namespace

TEST(GlyphOrigins, AGlyphThatReplacesOneKeepsItsCharactersAndItsForm) {
    Positions before = runOf(2);
    before[1].setCorrespondLength(2); // beyond the first plane
    before[1].setDecompositionType(U_DT_FINAL);
    const Positions after = followSubstitution(before, resultOf({{1, 1}, {50, 1}}));
    EXPECT_THAT(glyphsOf(after), ElementsAre(1, 50));
    EXPECT_THAT(lengthsOf(after), ElementsAre(1, 2));
    EXPECT_EQ(after[1].getDecompositionType(), U_DT_FINAL);
    EXPECT_EQ(after[1].getCompInfo(), 0);
}

TEST(GlyphOrigins, ALigatureStandsForTheCharactersOfItsPartsAndCountsThem) {
    Positions before = runOf(4);
    before[1].setDecompositionType(U_DT_MEDIAL);
    before[2].setDecompositionType(U_DT_FINAL);
    const Positions after = followSubstitution(before, resultOf({{1, 1}, {50, 2}, {4, 1}}));
    EXPECT_THAT(glyphsOf(after), ElementsAre(1, 50, 4));
    EXPECT_THAT(lengthsOf(after), ElementsAre(1, 2, 1));
    EXPECT_EQ(after[1].getCompInfo(), 2);
    EXPECT_EQ(after[1].getDecompositionType(), U_DT_FINAL);
}

TEST(GlyphOrigins, AMarkThatALigaturePassedOverKnowsItsComponent) {
    // x, f, mark, i, i, mark: the ligature of f, i and i has a mark on its first part, and the last
    // mark, which stood behind it, has no word.
    const Positions after =
        followSubstitution(runOf(6), resultOf({{1, 1}, {50, 3}, {3, 1, 2}, {6, 1}}));
    EXPECT_THAT(glyphsOf(after), ElementsAre(1, 50, 3, 6));
    EXPECT_THAT(lengthsOf(after), ElementsAre(1, 3, 1, 1));
    EXPECT_THAT(componentsOf(after), ElementsAre(0, 0, 1, 0));
    EXPECT_EQ(after[1].getCompInfo(), 3);
}

TEST(GlyphOrigins, ThePlacesOfMarksCountFromTheLigatureInTheRunAsItWasThen) {
    // Two ligatures of two with a mark inside each. When the second is made the first has shrunk
    // from three glyphs to two, so its mark stands at 3.
    const Positions after =
        followSubstitution(runOf(6), resultOf({{50, 2}, {2, 1, 1}, {51, 2}, {5, 1, 3}}));
    EXPECT_THAT(lengthsOf(after), ElementsAre(2, 1, 2, 1));
    EXPECT_THAT(componentsOf(after), ElementsAre(0, 1, 0, 1));
}

TEST(GlyphOrigins, ALigatureOfALigatureCountsOnAndItsMarksMoveAlong) {
    Positions before = runOf(4); // ligature of two, its mark, letter, letter
    before[0].setCorrespondLength(2);
    before[0].setCompInfo(2);
    before[1].setSkipInfo(1);
    const Positions after = followSubstitution(before, resultOf({{60, 3}, {2, 1, 1}}));
    EXPECT_EQ(after[0].getCompInfo(), 4);
    EXPECT_EQ(after[0].getCorrespondLength(), 4);
    EXPECT_EQ(after[1].getSkipInfo(), 1);

    Positions other = runOf(3); // letter, ligature of two, mark on its second part; then one more
    other[1].setCompInfo(2);
    other[2].setSkipInfo(2);
    other.push_back(runOf(1)[0]);
    const Positions joined = followSubstitution(other, resultOf({{60, 3}, {3, 1, 2}}));
    EXPECT_EQ(joined[0].getCompInfo(), 4);
    EXPECT_EQ(joined[1].getSkipInfo(), 3);
}

TEST(GlyphOrigins, OfSeveralGlyphsForOneTheFirstHasTheCharacters) {
    const Positions after =
        followSubstitution(runOf(2), resultOf({{50, 1}, {51, 0}, {52, 0}, {2, 1}}));
    EXPECT_THAT(glyphsOf(after), ElementsAre(50, 51, 52, 2));
    EXPECT_THAT(lengthsOf(after), ElementsAre(1, 0, 0, 1));
}

TEST(GlyphOrigins, WhereAContextGivesAsManyGlyphsAsItTookEachStandsForOne) {
    // The library counts all of them for the first.
    const Positions after = followSubstitution(runOf(3), resultOf({{50, 2}, {51, 0}, {3, 1}}));
    EXPECT_THAT(lengthsOf(after), ElementsAre(1, 1, 1));
}

TEST(GlyphOrigins, MarksComeBackToTheLettersThatWentWithoutThem) {
    Positions before = runOf(6); // letter, mark, letter, letter, mark, letter
    for (const std::size_t mark : {1U, 4U})
        before[mark].setGlyphClassDef(GlyphClassDef::Mark);
    GlyphIDArray2 letters = withoutMarks(before);
    ASSERT_EQ(letters.size(), 4);
    EXPECT_EQ(letters[1].getGlyphID(), 3);

    // The first two become one, the third two.
    letters = resultOf({{50, 2}, {51, 1}, {52, 0}, {6, 1}});
    const GlyphIDArray2 whole = withMarks(before, letters);
    EXPECT_THAT(whole.words(), ElementsAre(2, 1 << 16 | 1, 1, 0, 1, 1));
    const Positions after = followSubstitution(before, whole);
    EXPECT_THAT(glyphsOf(after), ElementsAre(50, 2, 51, 52, 5, 6));
    EXPECT_THAT(lengthsOf(after), ElementsAre(2, 1, 1, 0, 1, 1));
    EXPECT_THAT(componentsOf(after), ElementsAre(0, 1, 0, 0, 0, 0));
}

TEST(GlyphOrigins, AMarkWithoutALetterStaysWhereItIs) {
    Positions before = runOf(2);
    before[0].setGlyphClassDef(GlyphClassDef::Mark);
    EXPECT_THAT(glyphsOf(followSubstitution(before, withMarks(before, resultOf({{2, 1}})))),
                ElementsAre(1, 2));
}

TEST(GlyphOrigins, NoCharacterIsLostWhereGlyphsAreDeletedOrWordsMislead) {
    EXPECT_THAT(lengthsOf(followSubstitution(runOf(3), resultOf({{1, 1}, {3, 1}}))),
                ElementsAre(1, 2));
    // A place far behind the run, and more glyphs than there were.
    const Positions after =
        followSubstitution(runOf(2), resultOf({{50, 2}, {2, 1, 900}, {3, 1, 7}, {4, 1}}));
    EXPECT_THAT(glyphsOf(after), ElementsAre(50, 2, 3, 4));
    int total = 0;
    for (const int length : lengthsOf(after))
        total += length;
    EXPECT_EQ(total, 2);
}

TEST(GlyphOrigins, EmptyPlacesGiveTheirCharactersToTheGlyphBeforeOrElseAfter) {
    Positions run = runOf(4);
    run[0].clearGlyph();
    run[0].setCorrespondLength(1);
    run[2].clearGlyph();
    run[2].setCorrespondLength(3);
    dropEmpty(run);
    EXPECT_THAT(glyphsOf(run), ElementsAre(2, 4));
    EXPECT_THAT(lengthsOf(run), ElementsAre(5, 1));
}
