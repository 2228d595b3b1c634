#include "raster/Type1LoadBudget.h"

#include "common/KWLimits.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/TempDir.h"
#include "support/TestFont.h"
#include "support/Type1Font.h"

#include <gtest/gtest.h>

#include <string>

namespace KWFontService_NS {
namespace {

using KWTest::FreeTypeFace;
using KWTest::TestFont;
using KWTest::Type1CharString;
using KWTest::Type1Font;

constexpr int kCallSubr = 10;
constexpr int kReturn = 11;
constexpr int kDiv = 0x0C0C;
constexpr int kCallOtherSubr = 0x0C10;
constexpr int kPop = 0x0C11;
constexpr FT_UInt kFoo = 1;
constexpr FT_UInt kBar = 2;

Type1CharString glyph() {
    return Type1CharString().hsbw(0, 500);
}

/// A budget and what it is asked for. `symbols` with other charstrings for `foo` and `bar`.
struct Budget {
    explicit Budget(const Type1Font& font) : face(font.pfb()), budget(face.get()) {}
    explicit Budget(const Type1CharString& foo) : Budget(withFoo(foo)) {}

    static Type1Font withFoo(const Type1CharString& foo) {
        Type1Font font = Type1Font::symbols();
        font.glyphs[kFoo].charString = foo;
        font.subrs = {Type1CharString().op({7}, 22).op({}, kReturn)};
        return font;
    }
    /// What a glyph costs.
    std::size_t costOf(FT_UInt index) {
        const std::size_t before = budget.left();
        EXPECT_TRUE(budget.take(index));
        return before - budget.left();
    }

    FreeTypeFace face;
    Type1LoadBudget budget;
};

/// `foo` calls the first of `depth` subrs, each of which calls the next 8 times.
Type1Font unfolding(int depth) {
    Type1Font font = Budget::withFoo(glyph().op({0}, kCallSubr).endchar());
    font.subrs.clear();
    for (int i = 1; i <= depth; ++i) {
        Type1CharString subr;
        for (int call = 0; call < 8; ++call)
            subr.op({i}, kCallSubr);
        font.subrs.push_back(subr.op({}, kReturn));
    }
    font.subrs.push_back(Type1CharString().op({0, 0}, 21).op({}, kReturn));
    return font;
}

TEST(Type1LoadBudget, IsByTheBytesOfTheCharStrings) {
    const Budget one(glyph().endchar());
    const Budget longer(glyph().op({0}, 22).op({0}, 22).endchar());
    EXPECT_GT(one.budget.left(), KWCommonNS::kType1FreeSteps);
    EXPECT_EQ(longer.budget.left() - one.budget.left(), 4 * KWCommonNS::kType1StepsOfAByte);
}

TEST(Type1LoadBudget, EachOperandAndOperatorIsAStep) {
    EXPECT_EQ(Budget(glyph().endchar()).costOf(kFoo), 4U);
    EXPECT_EQ(Budget(glyph().op({100000, -500, 500}, 8).endchar()).costOf(kFoo), 8U);
    EXPECT_EQ(Budget(glyph().endchar().op({1}, 22)).costOf(kFoo), 4U) << "endchar is the end";
}

TEST(Type1LoadBudget, ASubrCountsEachTimeThatItIsCalled) {
    const std::size_t once = Budget(glyph().op({0}, kCallSubr).endchar()).costOf(kFoo);
    const std::size_t twice =
        Budget(glyph().op({0}, kCallSubr).op({0}, kCallSubr).endchar()).costOf(kFoo);
    // The number, the call and what it costs to find the subr, and its three steps.
    EXPECT_EQ(twice - once, 2U + 8U + 3U);
}

TEST(Type1LoadBudget, GlyphsThatUnfoldAreRefusedOnceItIsSpent) {
    Budget font(unfolding(5));
    int taken = 0;
    while (taken < 1000 && font.budget.take(kFoo))
        ++taken;
    EXPECT_GT(taken, 1);
    EXPECT_LT(taken, 100);
    EXPECT_FALSE(font.budget.take(kBar)) << "nothing is left";
}

TEST(Type1LoadBudget, AGlyphThatUnfoldsToMoreThanThereIsIsRefused) {
    EXPECT_FALSE(Budget(unfolding(15)).budget.take(kFoo));
}

TEST(Type1LoadBudget, ASubrOfItselfGoesNoDeeperThanFreeTypeGoes) {
    Type1Font font = Budget::withFoo(glyph().op({0}, kCallSubr).endchar());
    font.subrs = {Type1CharString().op({0}, kCallSubr).op({0}, kCallSubr).op({}, kReturn)};
    EXPECT_LT(Budget(font).costOf(kFoo), 1000U);
}

TEST(Type1LoadBudget, ASubrThatIsNotThereEndsTheGlyph) {
    EXPECT_EQ(Budget(glyph().op({99}, kCallSubr).op({1}, 22).endchar()).costOf(kFoo), 5U + 8U);
    EXPECT_EQ(Budget(glyph().op({-1}, kCallSubr).op({1}, 22).endchar()).costOf(kFoo), 5U + 8U);
}

// The number of the subr that replaces hints goes through PostScript and comes back.
TEST(Type1LoadBudget, TheSubrOfAHintReplacementCounts) {
    const auto replacing = [](int subr) {
        return glyph().op({subr, 1, 3}, kCallOtherSubr).op({}, kPop).op({}, kCallSubr).endchar();
    };
    EXPECT_EQ(Budget(replacing(0)).costOf(kFoo), 4U + 6U + 8U + 3U);
    Type1Font font = unfolding(15);
    font.glyphs[kFoo].charString = replacing(0);
    EXPECT_FALSE(Budget(font).budget.take(kFoo));
}

TEST(Type1LoadBudget, ASubrWhoseNumberIsComputedIsRefused) {
    EXPECT_FALSE(Budget(glyph().op({0, 1}, kDiv).op({}, kCallSubr)).budget.take(kFoo));
    EXPECT_FALSE(Budget(glyph().op({0, 1, 4}, kCallOtherSubr).op({}, kPop).op({}, kCallSubr))
                     .budget.take(kFoo));
    EXPECT_FALSE(Budget(glyph().op({}, kCallSubr)).budget.take(kFoo));
    EXPECT_TRUE(Budget(glyph().op({3, 2}, kDiv).op({}, 22).endchar()).budget.take(kFoo));
}

// What follows them would be read as bytes of a mask or a number.
TEST(Type1LoadBudget, OperatorsOfType2AreRefused) {
    for (const int op : {19, 20, 28})
        EXPECT_FALSE(Budget(glyph().op({}, op).endchar()).budget.take(kFoo)) << op;
    for (const int op : {0, 2, 15, 0x0C0A})
        EXPECT_TRUE(Budget(glyph().op({}, op).endchar()).budget.take(kFoo)) << op;
}

TEST(Type1LoadBudget, APieceOfANumberIsTheEnd) {
    EXPECT_EQ(Budget(glyph().op({}, 255)).costOf(kFoo), 4U);
    EXPECT_EQ(Budget(glyph().op({}, 12)).costOf(kFoo), 4U) << "and so is that of an operator";
}

TEST(Type1LoadBudget, ThePartsOfAnAccentedGlyphCount) {
    constexpr FT_UInt kA = 1;
    constexpr FT_UInt kAcute = 4;
    constexpr FT_UInt kAacute = 5;
    Budget font(Type1Font::latin());
    const std::size_t parts = font.costOf(kA) + font.costOf(kAcute);
    // Its own eight steps, and the search for the names.
    EXPECT_EQ(font.costOf(kAacute), parts + 3 + 6 + 6);
    Type1Font bent = Type1Font::latin();
    bent.subrs = unfolding(15).subrs;
    bent.glyphs[kAcute].charString = glyph().op({0}, kCallSubr).endchar();
    EXPECT_FALSE(Budget(bent).budget.take(kAacute));
}

TEST(Type1LoadBudget, AnAccentedGlyphOfItselfEnds) {
    Type1Font font = Type1Font::latin();
    font.glyphs[1].charString = glyph().seac(0, 0, 0, 'A', 'A');
    EXPECT_LT(Budget(font).costOf(1), 100U);
}

TEST(Type1LoadBudget, WhatIsNoType1ProgramHasNone) {
    const FreeTypeFace face(TestFont::latin().build());
    Type1LoadBudget budget(face.get());
    EXPECT_EQ(budget.left(), 0U);
    EXPECT_FALSE(budget.take(1));
}

TEST(Type1LoadBudget, AGlyphThatIsNotThereIsRefused) {
    EXPECT_FALSE(Budget(Type1Font::latin()).budget.take(6));
}

class PackagedBudget : public testing::TestWithParam<const char*> {};

// The free part aside, so that the measure holds for fonts of any size.
TEST_P(PackagedBudget, RealFontsTakeAFractionOfIt) {
    const FreeTypeFace face(KWTest::readFile(KWTest::packagedFont(GetParam())));
    Type1LoadBudget budget(face.get());
    const std::size_t whole = budget.left();
    for (FT_UInt index = 0; index < static_cast<FT_UInt>(face->num_glyphs); ++index)
        EXPECT_TRUE(budget.take(index)) << index;
    EXPECT_LT((whole - budget.left()) * 4, whole - KWCommonNS::kType1FreeSteps);
}

INSTANTIATE_TEST_SUITE_P(Fonts, PackagedBudget,
                         testing::Values("NimbusSans-PFB", "C059-PFB", "LMRoman10-PFB",
                                         "LMMono10-PFB"),
                         [](const auto& instance) {
                             std::string name = instance.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
