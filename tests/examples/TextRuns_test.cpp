#include "typeset/TextRuns.h"

#include "support/FontPackages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using testing::ElementsAre;

namespace {

/// DejaVu Serif, which has no Arabic, with Amiri and IPA Mincho to fall back to.
const FontSet& fonts() {
    static const FontSet set{{openFont(KWTest::packagedFont("DejaVuSerif").string()),
                              openFont(KWTest::packagedFont("Amiri").string()),
                              openFont(KWTest::packagedFont("IPAMincho").string())},
                             0,
                             1};
    return set;
}

struct Piece {
    std::string text;
    UScriptCode script;
    std::size_t font;
    UBiDiLevel level = 0;
    Writing writing = Writing::horizontal;

    friend bool operator==(const Piece&, const Piece&) = default;
    friend void PrintTo(const Piece& piece, std::ostream* out) {
        *out << '"' << piece.text << "\" " << piece.script << " font " << piece.font << " level "
             << int{piece.level} << " writing " << static_cast<int>(piece.writing);
    }
};

std::vector<Piece> piecesOf(const icu::UnicodeString& text, bool columns = false) {
    std::vector<Piece> pieces;
    std::int32_t end = 0;
    for (const TextRun& run : splitIntoRuns(text, fonts(), 0, columns).runs) {
        EXPECT_EQ(run.start, end);
        end = run.limit;
        std::string utf8;
        text.tempSubStringBetween(run.start, run.limit).toUTF8String(utf8);
        pieces.push_back({utf8, run.script, run.font, run.level, run.writing});
    }
    EXPECT_EQ(end, text.length());
    return pieces;
}

constexpr auto kUpright = Writing::upright;
constexpr auto kSideways = Writing::sideways;

} // namespace

TEST(TextRuns, ATextOfOneScriptIsOneRun) {
    EXPECT_THAT(piecesOf(u"Words, 2 or 3 (words)."),
                ElementsAre(Piece{"Words, 2 or 3 (words).", USCRIPT_LATIN, 0}));
    EXPECT_THAT(piecesOf(u"12"), ElementsAre(Piece{"12", USCRIPT_COMMON, 0}));
    EXPECT_TRUE(splitIntoRuns(u"", fonts(), 0, false).runs.empty());
}

TEST(TextRuns, BlanksAndPunctuationFollowTheLettersBeforeThemOrElseThoseAfter) {
    EXPECT_THAT(piecesOf(u"(a) \u03B1, b"),
                ElementsAre(Piece{"(a) ", USCRIPT_LATIN, 0}, Piece{"\u03B1, ", USCRIPT_GREEK, 0},
                            Piece{"b", USCRIPT_LATIN, 0}));
}

TEST(TextRuns, DirectionsAreThoseOfTheBidirectionalAlgorithm) {
    EXPECT_THAT(piecesOf(u"a \u0628 12 b"),
                ElementsAre(Piece{"a ", USCRIPT_LATIN, 0, 0},
                            Piece{"\u0628 ", USCRIPT_ARABIC, 1, 1},
                            Piece{"12", USCRIPT_ARABIC, 1, 2}, Piece{" ", USCRIPT_ARABIC, 1, 0},
                            Piece{"b", USCRIPT_LATIN, 0, 0}));
    EXPECT_FALSE(splitIntoRuns(u"a \u0628", fonts(), 0, false).rightToLeft);
    EXPECT_TRUE(splitIntoRuns(u"\u0628 a", fonts(), 0, false).rightToLeft);
}

TEST(TextRuns, WhatTheWantedFontLacksGoesToTheFirstOneThatHasIt) {
    EXPECT_THAT(piecesOf(u"a\u65E5\u672C. b"),
                ElementsAre(Piece{"a", USCRIPT_LATIN, 0}, Piece{"\u65E5\u672C. ", USCRIPT_HAN, 2},
                            Piece{"b", USCRIPT_LATIN, 0}));
    // A sign that no script owns does not take what follows along; nor does what no font has.
    EXPECT_THAT(piecesOf(u"a\u3001b \U000F0000c"),
                ElementsAre(Piece{"a", USCRIPT_LATIN, 0}, Piece{"\u3001", USCRIPT_LATIN, 2},
                            Piece{"b \U000F0000c", USCRIPT_LATIN, 0}));
}

TEST(TextRuns, TheTwoKanasStandTogether) {
    EXPECT_THAT(piecesOf(u"\u3042\u30A2"), ElementsAre(Piece{"\u3042\u30A2", USCRIPT_KATAKANA, 2}));
}

TEST(TextRuns, InColumnsIdeographsStandUprightAndLatinLiesOnItsSide) {
    EXPECT_THAT(piecesOf(u"\u65E5 ab\u3002", true),
                ElementsAre(Piece{"\u65E5", USCRIPT_HAN, 2, 0, kUpright},
                            Piece{" ", USCRIPT_HAN, 2, 0, kSideways},
                            Piece{"ab", USCRIPT_LATIN, 0, 0, kSideways},
                            Piece{"\u3002", USCRIPT_LATIN, 2, 0, kUpright}));
    // The long vowel sign would lie down, but has a form for columns.
    EXPECT_THAT(piecesOf(u"\u30AB\u30FC", true),
                ElementsAre(Piece{"\u30AB\u30FC", USCRIPT_KATAKANA, 2, 0, kUpright}));
}
