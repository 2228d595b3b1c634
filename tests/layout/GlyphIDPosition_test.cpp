#include <KWFontService17/GlyphIDPosition.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace KWFontService_NS {
namespace {

using testing::ElementsAre;

using Words = std::array<std::uint16_t, 14>;

constexpr bool kVertical = false; // what the V readers take for vertical writing
constexpr bool kHorizontal = true;

/// The fields in their declared order; the glyph takes two.
Words wordsOf(const GlyphIDPosition& position) {
    return std::bit_cast<Words>(position);
}

/// Every field differs from 0 and from the others.
GlyphIDPosition fullPosition() {
    GlyphIDPosition position(1, 2);
    position.setMoveX1(3);
    position.setMoveX2(4);
    position.setMoveY(5);
    position.setFlag(0xF002);
    position.setGlyphID(7, GlyphClassDef::Mark);
    position.setVertGlyph(9);
    position.setDecompositionType(U_DT_FINAL);
    position.setJoiningGroup(U_JG_ALEF);
    position.setMoveY2(10);
    position.setSkipInfo(11);
    position.setCompInfo(12);
    return position;
}

GlyphIDPosition verticalGlyph(int width, int height) {
    GlyphIDPosition position(1, width);
    position.setVertGlyph(height);
    position.setMoveX1(10);
    position.setMoveX2(20);
    position.setMoveY(3);
    position.setMoveY2(4);
    return position;
}

static_assert(sizeof(GlyphIDPosition) == sizeof(Words));
static_assert(std::is_standard_layout_v<GlyphIDPosition>);
static_assert(U_DT_FINAL == 4 && U_DT_ISOLATED == 8 && U_DT_VERTICAL == 16);

TEST(GlyphIDPosition, BeginsWithEveryField0AndNoGlyph) {
    EXPECT_THAT(wordsOf(GlyphIDPosition()),
                ElementsAre(0, 0, 0, 0, 0, 0, 0xFFFF, 0xFFFF, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(std::vector<GlyphIDPosition>(3), testing::Each(GlyphIDPosition()));
}

TEST(GlyphIDPosition, TakesALengthAndAWidth) {
    const GlyphIDPosition position(2, 600);
    EXPECT_THAT(wordsOf(position),
                ElementsAre(2, 600, 0, 600, 0, 0, 0xFFFF, 0xFFFF, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(position.getCorrespondLength(), 2);
    EXPECT_EQ(position.getWidth(), 600);
    EXPECT_EQ(position.getMoveX1(), 0);
    EXPECT_EQ(position.getMoveX2(), 600);
    EXPECT_FALSE(position.hasGlyph());
}

TEST(GlyphIDPosition, KeepsItsFieldsInTheirOrder) {
    EXPECT_THAT(wordsOf(fullPosition()),
                ElementsAre(1, 2, 3, 4, 5, 0xF002, 7, 3, U_DT_FINAL, U_JG_ALEF, 9, 10, 11, 12));
}

TEST(GlyphIDPosition, EachReaderAnswersItsField) {
    const GlyphIDPosition position = fullPosition();
    EXPECT_EQ(position.getCorrespondLength(), 1);
    EXPECT_EQ(position.getWidth(), 2);
    EXPECT_EQ(position.getMoveX1(), 3);
    EXPECT_EQ(position.getMoveX2(), 4);
    EXPECT_EQ(position.getMoveX(), 7);
    EXPECT_EQ(position.getMoveY(), 5);
    EXPECT_EQ(position.getFlag(), 0xF002);
    EXPECT_EQ(position.getGlyphID(), 7);
    EXPECT_EQ(position.getGlyphClassDef(), GlyphClassDef::Mark);
    EXPECT_EQ(position.getGlyphIDClassPair(), GlyphIDClassPair(7, GlyphClassDef::Mark));
    EXPECT_EQ(position.getDecompositionType(), U_DT_FINAL);
    EXPECT_EQ(position.getJoiningGroup(), U_JG_ALEF);
    EXPECT_EQ(position.getHeight(), 9);
    EXPECT_EQ(position.getMoveY2(), 10);
    EXPECT_EQ(position.getSkipInfo(), 11);
    EXPECT_EQ(position.getCompInfo(), 12);
}

TEST(GlyphIDPosition, ReadersAnswerASignWhereTheFieldHasOne) {
    GlyphIDPosition position(-1, -2);
    position.setMoveX1(-3);
    position.setMoveX2(-4);
    position.setMoveY(-5);
    position.setFlag(0x8000);
    position.setVertGlyph(-6);
    position.setMoveY2(-7);
    position.setSkipInfo(-8);
    position.setCompInfo(-9);
    EXPECT_EQ(position.getCorrespondLength(), -1);
    EXPECT_EQ(position.getWidth(), -2);
    EXPECT_EQ(position.getMoveX1(), -3);
    EXPECT_EQ(position.getMoveX2(), -4);
    EXPECT_EQ(position.getMoveX(), -7);
    EXPECT_EQ(position.getMoveY(), -5);
    EXPECT_EQ(position.getFlag(), 0x8000);
    EXPECT_EQ(position.getHeight(), -6);
    EXPECT_EQ(position.getMoveY2(), -7);
    EXPECT_EQ(position.getSkipInfo(), -8);
    EXPECT_EQ(position.getCompInfo(), -9);
}

TEST(GlyphIDPosition, ValuesKeepTheirLow16Bits) {
    GlyphIDPosition position(0x12345, 40000);
    EXPECT_EQ(position.getCorrespondLength(), 0x2345);
    EXPECT_EQ(position.getWidth(), 40000 - 65536);
    EXPECT_EQ(position.getMoveX2(), 40000 - 65536);
    position.setMoveX1(32767);
    position.addMoveX1(1);
    EXPECT_EQ(position.getMoveX1(), -32768);
    position.setMoveX2(-32768);
    position.addMoveX2(-1);
    EXPECT_EQ(position.getMoveX2(), 32767);
    position.addMoveX2(2147483647);
    position.addMoveX2(-2147483647 - 1);
    EXPECT_EQ(position.getMoveX2(), 32766) << "large amounts wrap and do not overflow";
    position.setCorrespondLength(32767);
    position.incLength();
    EXPECT_EQ(position.getCorrespondLength(), -32768);
    position.addCorrespondLength(2147483647);
    EXPECT_EQ(position.getCorrespondLength(), 32767);
    position.setMoveY(65536 + 5);
    position.setMoveY2(-65536 - 5);
    position.setSkipInfo(65535);
    position.setCompInfo(65536);
    position.setVertGlyph(65537);
    EXPECT_EQ(position.getMoveY(), 5);
    EXPECT_EQ(position.getMoveY2(), -5);
    EXPECT_EQ(position.getSkipInfo(), -1);
    EXPECT_EQ(position.getCompInfo(), 0);
    EXPECT_EQ(position.getHeight(), 1);
}

TEST(GlyphIDPosition, TheSumOfTheMovesIsNotCut) {
    GlyphIDPosition position;
    position.setMoveX1(30000);
    position.setMoveX2(30000);
    EXPECT_EQ(position.getMoveX(), 60000);
}

TEST(GlyphIDPosition, CountsTheCharactersItStandsFor) {
    GlyphIDPosition position;
    position.setCorrespondLength(3);
    position.addCorrespondLength(2);
    position.incLength();
    EXPECT_EQ(position.getCorrespondLength(), 6);
    position.addCorrespondLength(-4);
    EXPECT_EQ(position.getCorrespondLength(), 2);
    position.clrLen();
    EXPECT_EQ(position, GlyphIDPosition());
}

TEST(GlyphIDPosition, ClearingTheWidthLeavesTheMoves) {
    GlyphIDPosition position(1, 500);
    position.clrWidth();
    EXPECT_EQ(position.getWidth(), 0);
    EXPECT_EQ(position.getMoveX2(), 500);
    EXPECT_EQ(position.getCorrespondLength(), 1);
}

TEST(GlyphIDPosition, SettingAMoveTouchesNoOtherField) {
    GlyphIDPosition position;
    position.setFlag(GLYPH_FLAG_OUTSIDE_GPOS);
    position.setMoveX1(5);
    position.addMoveX1(2);
    EXPECT_THAT(wordsOf(position), ElementsAre(0, 0, 7, 0, 0, 2, 0xFFFF, 0xFFFF, 0, 0, 0, 0, 0, 0));
    position.setMoveX2(6);
    position.addMoveX2(2);
    position.setMoveY(9);
    position.setMoveY2(10);
    EXPECT_THAT(wordsOf(position),
                ElementsAre(0, 0, 7, 8, 9, 2, 0xFFFF, 0xFFFF, 0, 0, 0, 10, 0, 0));
}

TEST(GlyphIDPosition, FlagsAreBitsOfTheseValues) {
    EXPECT_EQ(GLYPH_FLAG_OUTSIDE_GPOS, 0x0002);
    EXPECT_EQ(GLYPH_FLAG_ZERO_WIDTH_BASE, 0x1000);
    EXPECT_EQ(GLYPH_FLAG_SKIP_COMPONENT_BASE, 0x2000);
    EXPECT_EQ(GLYPH_FLAG_COMPONENT_INFO, 0x4000);
    EXPECT_EQ(GLYPH_FLAG_LOOKUP_SKIP, 0x8000);
}

TEST(GlyphIDPosition, SetFlagCanNeverClearABit) {
    GlyphIDPosition position;
    position.setFlag(GLYPH_FLAG_LOOKUP_SKIP | GLYPH_FLAG_COMPONENT_INFO);
    position.setFlag(GLYPH_FLAG_OUTSIDE_GPOS);
    position.setFlag(0);
    EXPECT_EQ(position.getFlag(), 0xC002);
    position.setFlag(0xFFFF);
    EXPECT_EQ(position.getFlag(), 0xFFFF);
}

TEST(GlyphIDPosition, SetsTheGlyphAloneInPartsOrWhole) {
    GlyphIDPosition position = fullPosition();
    const Words before = wordsOf(position);
    position.setGlyphID(100);
    EXPECT_EQ(position.getGlyphIDClassPair(), GlyphIDClassPair(100, GlyphClassDef::Mark))
        << "the class stays";
    position.setGlyphClassDef(GlyphClassDef::Component);
    EXPECT_EQ(position.getGlyphIDClassPair(), GlyphIDClassPair(100, GlyphClassDef::Component));
    position.setGlyphID(101, GlyphClassDef::Base);
    EXPECT_EQ(position.getGlyphIDClassPair(), GlyphIDClassPair(101, GlyphClassDef::Base));
    position.setGlyphIDClassPair(GlyphIDClassPair(7, GlyphClassDef::Mark));
    EXPECT_EQ(wordsOf(position), before) << "nothing else changed on the way";
}

TEST(GlyphIDPosition, HasAGlyphByTheGlyphID) {
    GlyphIDPosition position;
    EXPECT_FALSE(position.hasGlyph());
    EXPECT_FALSE(position.hasGlyphInfo());
    position.setGlyphID(0);
    EXPECT_TRUE(position.hasGlyph());
    EXPECT_TRUE(position.hasGlyphInfo());
    position.setGlyphID(0xFFFF, GlyphClassDef::Base);
    EXPECT_FALSE(position.hasGlyph());
    EXPECT_FALSE(position.hasGlyphInfo());
}

TEST(GlyphIDPosition, SetGlyphStartsAnewForOneCharacter) {
    GlyphIDPosition position = fullPosition();
    position.setCorrespondLength(5);
    position.setGlyph(77, GlyphClassDef::Base, 640);
    EXPECT_THAT(wordsOf(position),
                ElementsAre(1, 640, 0, 640, 0, 0, 77, 1, U_DT_FINAL, U_JG_ALEF, 0, 0, 0, 0));
}

TEST(GlyphIDPosition, SetGlyph2KeepsTheCorrespondLength) {
    GlyphIDPosition position = fullPosition();
    position.setCorrespondLength(5);
    position.setGlyph2(GlyphIDClassPair(77, GlyphClassDef::Ligature), 640);
    EXPECT_THAT(wordsOf(position),
                ElementsAre(5, 640, 0, 640, 0, 0, 77, 2, U_DT_FINAL, U_JG_ALEF, 0, 0, 0, 0));
    position.setGlyph2(position.getGlyphIDClassPair(), 30);
    EXPECT_EQ(position.getGlyphIDClassPair(), GlyphIDClassPair(77, GlyphClassDef::Ligature))
        << "its own pair";
}

TEST(GlyphIDPosition, SetGlyphWithoutAGlyphHasNoWidthAndLength1) {
    GlyphIDPosition position;
    position.setGlyph(0xFFFF, GlyphClassDef::Mark, 500);
    EXPECT_EQ(position.getWidth(), 0);
    EXPECT_EQ(position.getMoveX2(), 0);
    EXPECT_EQ(position.getCorrespondLength(), 1);
    EXPECT_EQ(position.getGlyphClassDef(), GlyphClassDef::Mark);
    position.setGlyph2(GlyphIDClassPair(), 500);
    EXPECT_EQ(position.getWidth(), 0);
    EXPECT_EQ(position.getMoveX2(), 0);
}

TEST(GlyphIDPosition, SetGlyphKeepsTheHeightOfAVerticalGlyphOnly) {
    GlyphIDPosition position;
    position.setVertGlyph(1000);
    position.setGlyph(5, GlyphClassDef::Base, 500);
    EXPECT_EQ(position.getHeight(), 1000);
    EXPECT_EQ(position.getDecompositionType(), U_DT_VERTICAL);
    position.setGlyph2(GlyphIDClassPair(6, GlyphClassDef::Base), 500);
    EXPECT_EQ(position.getHeight(), 1000);
    position.setDecompositionType(U_DT_WIDE);
    position.setGlyph2(GlyphIDClassPair(6, GlyphClassDef::Base), 500);
    EXPECT_EQ(position.getHeight(), 0);
    EXPECT_EQ(position.getDecompositionType(), U_DT_WIDE);
}

TEST(GlyphIDPosition, ClearGlyphAndIgnoreGlyphLeaveNothing) {
    GlyphIDPosition position = fullPosition();
    position.clearGlyph();
    EXPECT_EQ(position, GlyphIDPosition());
    position = fullPosition();
    position.ignoreGlyph();
    EXPECT_THAT(wordsOf(position), ElementsAre(0, 0, 0, 0, 0, 0, 0xFFFF, 0xFFFE, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(position.getGlyphClassDef(), GlyphClassDef::Ignored);
    EXPECT_FALSE(position.hasGlyph());
}

TEST(GlyphIDPosition, CopiesAreEqualInEveryField) {
    const GlyphIDPosition position = fullPosition();
    GlyphIDPosition copy(position);
    EXPECT_EQ(copy, position);
    copy.setCompInfo(13);
    EXPECT_NE(copy, position);
    EXPECT_EQ(position.getCompInfo(), 12);
    copy = position;
    EXPECT_EQ(copy, position);
}

TEST(GlyphIDPosition, TakesEveryTypeAndGroupOfICU) {
    GlyphIDPosition position;
    for (int type = 0; type <= u_getIntPropertyMaxValue(UCHAR_DECOMPOSITION_TYPE); ++type) {
        position.setDecompositionType(static_cast<UDecompositionType>(type));
        EXPECT_EQ(position.getDecompositionType(), type);
    }
    for (int group = 0; group <= u_getIntPropertyMaxValue(UCHAR_JOINING_GROUP); ++group) {
        position.setJoiningGroup(static_cast<UJoiningGroup>(group));
        EXPECT_EQ(position.getJoiningGroup(), group);
    }
}

TEST(GlyphIDPosition, IsVerticalByTheDecompositionTypeUnlessTreatedAsHorizontal) {
    GlyphIDPosition position;
    EXPECT_FALSE(position.isVert(kVertical));
    position.setVertGlyph(1000);
    EXPECT_EQ(position.getHeight(), 1000);
    EXPECT_EQ(position.getDecompositionType(), U_DT_VERTICAL);
    EXPECT_TRUE(position.isVert(kVertical));
    EXPECT_FALSE(position.isVert(kHorizontal));
    position.setDecompositionType(U_DT_FINAL);
    EXPECT_FALSE(position.isVert(kVertical));
}

TEST(GlyphIDPosition, VerticalReadersAnswerThePlainFieldsInHorizontalTreatment) {
    GlyphIDPosition other = verticalGlyph(500, 900);
    other.setDecompositionType(U_DT_NONE);
    const std::vector<std::pair<GlyphIDPosition, bool>> plain = {
        {verticalGlyph(500, 900), kHorizontal}, {other, kHorizontal}, {other, kVertical}};
    for (const auto& [position, treatment] : plain) {
        EXPECT_EQ(position.getMoveX1V(treatment), 10);
        EXPECT_EQ(position.getMoveX2V(treatment), 20);
        EXPECT_EQ(position.getMoveXV(treatment), 30);
        EXPECT_EQ(position.getMoveY1V(treatment), 3);
        EXPECT_EQ(position.getWidthV(treatment), 500);
    }
}

TEST(GlyphIDPosition, VerticalReadersOfAGlyphWithWidthAndHeight) {
    const GlyphIDPosition position = verticalGlyph(500, 900);
    EXPECT_EQ(position.getMoveX1V(kVertical), 3) << "move Y";
    EXPECT_EQ(position.getMoveX2V(kVertical), 900 - 4 - 3);
    EXPECT_EQ(position.getMoveXV(kVertical), 900 - 4);
    EXPECT_EQ(position.getMoveY1V(kVertical), 10) << "move X1";
    EXPECT_EQ(position.getWidthV(kVertical), 900);
}

TEST(GlyphIDPosition, VerticalReadersTakeTheWidthForAHeightThatIsNotAbove0) {
    for (const int height : {0, -1, -900}) {
        const GlyphIDPosition position = verticalGlyph(500, height);
        EXPECT_EQ(position.getMoveX1V(kVertical), 3);
        EXPECT_EQ(position.getMoveX2V(kVertical), 500 - 4 - 3);
        EXPECT_EQ(position.getMoveXV(kVertical), 500 - 4);
        EXPECT_EQ(position.getMoveY1V(kVertical), 10);
        EXPECT_EQ(position.getWidthV(kVertical), 500);
    }
}

TEST(GlyphIDPosition, VerticalReadersOfAGlyphWithoutWidth) {
    for (const int height : {900, 0, -900}) {
        const GlyphIDPosition position = verticalGlyph(0, height);
        EXPECT_EQ(position.getMoveX1V(kVertical), -height);
        EXPECT_EQ(position.getMoveX2V(kVertical), height - 4 - 3);
        EXPECT_EQ(position.getMoveXV(kVertical), -4 - 3);
        EXPECT_EQ(position.getMoveY1V(kVertical), height / 2);
        EXPECT_EQ(position.getWidthV(kVertical), 0);
    }
}

TEST(GlyphIDPosition, ANegativeWidthIsAWidth) {
    const GlyphIDPosition position = verticalGlyph(-500, 0);
    EXPECT_EQ(position.getMoveX1V(kVertical), 3);
    EXPECT_EQ(position.getMoveX2V(kVertical), -500 - 4 - 3);
    EXPECT_EQ(position.getMoveY1V(kVertical), 10);
    EXPECT_EQ(position.getWidthV(kVertical), -500);
    EXPECT_EQ(verticalGlyph(-500, 900).getWidthV(kVertical), 900);
}

TEST(GlyphIDPosition, HalfTheHeightIsCutTowardZero) {
    EXPECT_EQ(verticalGlyph(0, 1001).getMoveY1V(kVertical), 500);
    EXPECT_EQ(verticalGlyph(0, -1001).getMoveY1V(kVertical), -500);
}

TEST(GlyphIDPosition, OfWidth0AndHeight0AnswersNothingInVerticalWriting) {
    GlyphIDPosition position;
    position.setVertGlyph(0);
    EXPECT_EQ(position.getMoveX1V(kVertical), 0);
    EXPECT_EQ(position.getMoveX2V(kVertical), 0);
    EXPECT_EQ(position.getMoveY1V(kVertical), 0);
    EXPECT_EQ(position.getWidthV(kVertical), 0);
}

TEST(GlyphIDPosition, VerticalReadersDoNotWrap) {
    GlyphIDPosition position;
    position.setVertGlyph(-32768);
    EXPECT_EQ(position.getMoveX1V(kVertical), 32768);
    position.setMoveY(32767);
    position.setMoveY2(32767);
    EXPECT_EQ(position.getMoveX2V(kVertical), -32768 - 32767 - 32767);
}

} // namespace
} // namespace KWFontService_NS
