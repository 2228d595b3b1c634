#include "typeset/Shaper.h"

#include "support/FontPackages.h"
#include "support/TempDir.h"
#include "support/TestFont.h"
#include "typeset/ArabicJoining.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using namespace KWFontService_NS;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

FontSet fontNamed(const char* name) {
    return {{openFont(KWTest::packagedFont(name).string())}};
}

/// Text of one run, shaped.
class Shaped {
public:
    Shaped(const FontSet& fonts, const icu::UnicodeString& text, const std::string& features = "",
           unsigned int language = 0, bool columns = false) {
        const TextRuns split = splitIntoRuns(text, fonts, 0, columns);
        EXPECT_EQ(split.runs.size(), 1U);
        const FeaturePlan plan(features.empty() ? FS_FontFeatureSettings()
                                                : parseFeatures(ExitCode::usage, features));
        glyphs =
            Shaper(fonts).shape({text, split.runs.front(), joiningForms(text), plan, language});
    }

    std::vector<int> gids() const { return all(&GlyphIDPosition::getGlyphID); }
    std::vector<int> lengths() const { return all(&GlyphIDPosition::getCorrespondLength); }
    std::vector<int> advances() const { return all(&GlyphIDPosition::getMoveX); }
    std::vector<int> components() const { return all(&GlyphIDPosition::getSkipInfo); }

    std::vector<GlyphIDPosition> glyphs;

private:
    template <typename Number>
    std::vector<int> all(Number (GlyphIDPosition::*read)() const) const {
        std::vector<int> values;
        for (const GlyphIDPosition& glyph : glyphs)
            values.push_back((glyph.*read)());
        return values;
    }
};

/// The glyphs of characters by the character map alone.
std::vector<int> mapped(const FontSet& fonts, const icu::UnicodeString& text) {
    std::vector<int> gids;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1))
        gids.push_back(fonts[0].info.getGlyphID(text.char32At(i), false));
    return gids;
}

/// A font of seven glyphs (A, B, C ...) from a file of its own.
class BuiltFont : public testing::Test {
protected:
    FontSet open(KWTest::TestFont font) const {
        return {{openFont(folder_.write("built.ttf", font.build()).string())}};
    }

private:
    KWTest::TempDir folder_;
};
using Shaping = BuiltFont;

} // namespace

TEST_F(Shaping, LigaturesStandForSeveralCharacters) {
    const FontSet sans = fontNamed("DejaVuSans");
    const Shaped office(sans, u"office");
    EXPECT_THAT(office.gids(), ElementsAreArray(mapped(sans, u"o\uFB03ce")));
    EXPECT_THAT(office.lengths(), ElementsAre(1, 3, 1, 1));
    EXPECT_EQ(office.glyphs[1].getCompInfo(), 3);
}

TEST_F(Shaping, AFeatureThatIsOffDoesNothing) {
    const FontSet sans = fontNamed("DejaVuSans");
    const Shaped office(sans, u"office", "liga=0");
    EXPECT_THAT(office.gids(), ElementsAreArray(mapped(sans, u"office")));
    EXPECT_THAT(office.lengths(), ElementsAre(1, 1, 1, 1, 1, 1));
}

TEST_F(Shaping, ANonJoinerKeepsLettersApartAndAJoinerDoesNot) {
    const FontSet serif = fontNamed("DejaVuSerif");
    const Shaped apart(serif, u"f\u200Ci");
    EXPECT_THAT(apart.gids(), ElementsAreArray(mapped(serif, u"fi")));
    EXPECT_THAT(apart.lengths(), ElementsAre(2, 1));
    const Shaped together(serif, u"\u200Bf\u200Di");
    EXPECT_THAT(together.gids(), ElementsAreArray(mapped(serif, u"\uFB01")));
    EXPECT_THAT(together.lengths(), ElementsAre(4));
}

TEST_F(Shaping, PairsAreDrawnTogetherUnlessKerningIsOff) {
    const FontSet serif = fontNamed("DejaVuSerif");
    EXPECT_THAT(Shaped(serif, u"AV").advances(), ElementsAre(1479 - 102, 1479));
    EXPECT_THAT(Shaped(serif, u"AV", "kern=0").advances(), ElementsAre(1479, 1479));
}

TEST_F(Shaping, AMarkStandsWhereTheAnchorsMeet) {
    const FontSet serif = fontNamed("DejaVuSerif");
    const Shaped caron(serif, u"x\u030C");
    // The anchors: x (578, 1092) with an advance of 1155, caron (-512, 1092) with none.
    EXPECT_THAT(caron.advances(), ElementsAre(1155, 0));
    EXPECT_EQ(caron.glyphs[1].getMoveX1(), 578 - -512 - 1155);
    EXPECT_EQ(caron.glyphs[1].getMoveY(), 0);
    EXPECT_EQ(Shaped(serif, u"x\u030C", "mark=0").glyphs[1].getMoveX1(), 0);
    // One more over it: the anchors of marks among themselves.
    const Shaped two(serif, u"\u1EA1\u0304\u0301");
    EXPECT_EQ(two.glyphs[1].getMoveY(), 0);
    EXPECT_EQ(two.glyphs[2].getMoveY(), -376) << "the second is higher, and y goes down";
}

TEST_F(Shaping, TheLanguageChoosesFormsAndLigatures) {
    const FontSet serif = fontNamed("DejaVuSerif");
    // The Serbian be has a form of its own, and Turkish must tell the i from the dotless one.
    EXPECT_THAT(Shaped(serif, u"\u0431").gids(), ElementsAreArray(mapped(serif, u"\u0431")));
    EXPECT_THAT(Shaped(serif, u"\u0431", "", tagOf("SRB ")).gids(),
                ElementsAreArray(mapped(serif, u"\uF6C5")));
    EXPECT_THAT(Shaped(serif, u"fi").gids(), ElementsAreArray(mapped(serif, u"\uFB01")));
    EXPECT_THAT(Shaped(serif, u"fi", "", tagOf("TRK ")).gids(),
                ElementsAreArray(mapped(serif, u"fi")));
}

TEST_F(Shaping, ArabicLettersTakeTheirForms) {
    const FontSet sans = fontNamed("DejaVuSans");
    // beh, seen, meem, and their initial, medial and final forms in the order of the text.
    const Shaped word(sans, u"\u0628\u0633\u0645");
    EXPECT_THAT(word.gids(), ElementsAreArray(mapped(sans, u"\uFE91\uFEB4\uFEE2")));
    EXPECT_EQ(word.glyphs[0].getDecompositionType(), U_DT_INITIAL);
    EXPECT_EQ(word.glyphs[2].getDecompositionType(), U_DT_FINAL);
    EXPECT_EQ(word.glyphs[0].getJoiningGroup(), U_JG_BEH);
    EXPECT_THAT(Shaped(sans, u"\u0628\u0633\u0645", "fina=0").gids(),
                ElementsAreArray(mapped(sans, u"\uFE91\uFEB4\u0645")));
}

TEST_F(Shaping, LamAndAlefAreOneAndTheirMarksKnowTheirLetter) {
    const FontSet sans = fontNamed("DejaVuSans");
    const Shaped plain(sans, u"\u0633\u0644\u0627\u0645"); // seen, lam, alef, meem
    EXPECT_THAT(plain.gids(), ElementsAreArray(mapped(sans, u"\uFEB3\uFEFC\u0645")));
    EXPECT_THAT(plain.lengths(), ElementsAre(1, 2, 1));
    EXPECT_EQ(plain.glyphs[1].getDecompositionType(), U_DT_FINAL);
    // With a fatha between them, which the ligature passes over.
    const Shaped marked(sans, u"\u0644\u064E\u0627\u0650");
    EXPECT_THAT(marked.gids(), ElementsAreArray(mapped(sans, u"\uFEFB\u064E\u0650")));
    EXPECT_THAT(marked.lengths(), ElementsAre(2, 1, 1));
    EXPECT_THAT(marked.components(), ElementsAre(0, 1, 0));
}

TEST_F(Shaping, VowelSignsDoNotComeBetweenLettersThatJoin) {
    // Amiri gives lam and alef forms for each other, by a context that passes over marks.
    const FontSet amiri = fontNamed("Amiri");
    const Shaped plain(amiri, u"\u0644\u0627");
    const Shaped marked(amiri, u"\u0644\u064E\u0627");
    ASSERT_EQ(plain.glyphs.size(), 2U);
    ASSERT_EQ(marked.glyphs.size(), 3U);
    EXPECT_EQ(marked.gids()[0], plain.gids()[0]);
    EXPECT_EQ(marked.gids()[2], plain.gids()[1]);
    EXPECT_NE(plain.gids()[1], Shaped(amiri, u"\u0628\u0627").gids()[1])
        << "the alef behind a beh has another form";
    EXPECT_THAT(marked.lengths(), ElementsAre(1, 1, 1));
}

TEST_F(Shaping, ParenthesesFromRightToLeftAreMirrored) {
    const FontSet sans = fontNamed("DejaVuSans");
    EXPECT_THAT(Shaped(sans, u"\u0645(\u0645)").gids(),
                ElementsAreArray(mapped(sans, u"\u0645)\u0645(")));
}

TEST_F(Shaping, InColumnsGlyphsHaveTheirVerticalFormsAndHeights) {
    const FontSet mincho = fontNamed("IPAMincho");
    const Shaped comma(mincho, u"\u3042\u3001", "", 0, true);
    ASSERT_EQ(comma.glyphs.size(), 2U);
    EXPECT_EQ(comma.gids()[0], mincho[0].info.getGlyphID(0x3042, false));
    EXPECT_EQ(comma.gids()[1], mincho[0].info.getGlyphID(0x3001, true));
    EXPECT_NE(comma.gids()[1], mincho[0].info.getGlyphID(0x3001, false));
    for (const GlyphIDPosition& glyph : comma.glyphs) {
        EXPECT_TRUE(glyph.isVert(false));
        EXPECT_EQ(glyph.getMoveXV(false), 2048);
    }
}

TEST_F(Shaping, WhatTheFontLacksIsGlyphZero) {
    EXPECT_THAT(Shaped(fontNamed("DejaVuSerif"), u"\u4E00").gids(), ElementsAre(0));
}

TEST_F(Shaping, TextWithoutAnythingToShowHasNoGlyphs) {
    EXPECT_TRUE(Shaped(fontNamed("DejaVuSerif"), u"\u200B\u200C").glyphs.empty());
}

TEST_F(Shaping, AFontWithoutTheScriptIsAskedForTheDefaultScriptAndThenForLatin) {
    using KWTest::TestFont;
    for (const char* script : {"latn", "DFLT"}) {
        TestFont font = TestFont::latin();
        KWTest::SingleSubst subst;
        subst.pairs = {{TestFont::kSpace, TestFont::kC}};
        font.with("GSUB", KWTest::SingleSubstGsub{script, "ccmp", {subst}});
        EXPECT_THAT(Shaped(open(font), u" ").gids(), ElementsAre(TestFont::kC)) << script;
    }
    TestFont other = TestFont::latin();
    KWTest::SingleSubst subst;
    subst.pairs = {{TestFont::kSpace, TestFont::kC}};
    other.with("GSUB", KWTest::SingleSubstGsub{"grek", "ccmp", {subst}});
    EXPECT_THAT(Shaped(open(other), u" ").gids(), ElementsAre(TestFont::kSpace));
}

TEST_F(Shaping, AMarkWithRoomOfItsOwnGivesItUpAndStandsOverWhatIsBeforeIt) {
    using KWTest::TestFont;
    TestFont font = TestFont::latin();
    KWTest::Gdef gdef;
    gdef.glyphClassDef =
        KWTest::classDefFormat2({{TestFont::kA, TestFont::kA, 1}, {TestFont::kB, TestFont::kB, 3}});
    font.with("GDEF", gdef);
    const Shaped marked(open(font), u"AB");
    EXPECT_THAT(marked.advances(), ElementsAre(600, 0));
    EXPECT_EQ(marked.glyphs[1].getMoveX1(), -650);
    EXPECT_EQ(marked.glyphs[1].getWidth(), 0);
}

TEST_F(Shaping, WithoutGposPairsComeFromTheKernTable) {
    using KWTest::TestFont;
    TestFont font = TestFont::latin();
    KWTest::Kern kern;
    kern.subtables = {KWTest::KernSubtable{0, 1, {{TestFont::kA, TestFont::kB, -40}}, {}, {}, {}}};
    font.with("kern", kern);
    EXPECT_THAT(Shaped(open(font), u"AB").advances(), ElementsAre(560, 650));
    EXPECT_THAT(Shaped(open(font), u"AB", "kern=0").advances(), ElementsAre(600, 650));
}
