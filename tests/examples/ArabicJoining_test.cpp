#include "typeset/ArabicJoining.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;
using testing::ElementsAre;

TEST(ArabicJoining, LettersTakeTheFormsOfTheirPlaceInTheWord) {
    // Beh, seen and meem join on both sides.
    EXPECT_THAT(joiningForms(u"\u0628\u0633\u0645"),
                ElementsAre(U_DT_INITIAL, U_DT_MEDIAL, U_DT_FINAL));
    EXPECT_THAT(joiningForms(u"\u0628\u0645"), ElementsAre(U_DT_INITIAL, U_DT_FINAL));
    EXPECT_THAT(joiningForms(u"\u0628"), ElementsAre(U_DT_ISOLATED));
}

TEST(ArabicJoining, AlefJoinsToTheLetterBeforeAlone) {
    // kaf, teh, alef, beh: "book".
    EXPECT_THAT(joiningForms(u"\u0643\u062A\u0627\u0628"),
                ElementsAre(U_DT_INITIAL, U_DT_MEDIAL, U_DT_FINAL, U_DT_ISOLATED));
    EXPECT_THAT(joiningForms(u"\u0627\u0628"), ElementsAre(U_DT_ISOLATED, U_DT_ISOLATED));
}

TEST(ArabicJoining, MarksAreLookedThrough) {
    EXPECT_THAT(joiningForms(u"\u0628\u0650\u0645"),
                ElementsAre(U_DT_INITIAL, U_DT_NONE, U_DT_FINAL));
}

TEST(ArabicJoining, ATatweelAndAJoinerJoinAndHaveNoForms) {
    EXPECT_THAT(joiningForms(u"\u0628\u0640"), ElementsAre(U_DT_INITIAL, U_DT_NONE));
    EXPECT_THAT(joiningForms(u"\u0640\u0628"), ElementsAre(U_DT_NONE, U_DT_FINAL));
    EXPECT_THAT(joiningForms(u"\u0628\u200D"), ElementsAre(U_DT_INITIAL, U_DT_NONE));
}

TEST(ArabicJoining, BlanksAndTheNonJoinerEndAWord) {
    EXPECT_THAT(joiningForms(u"\u0628 \u0645"),
                ElementsAre(U_DT_ISOLATED, U_DT_NONE, U_DT_ISOLATED));
    EXPECT_THAT(joiningForms(u"\u0628\u200C\u0645"),
                ElementsAre(U_DT_ISOLATED, U_DT_NONE, U_DT_ISOLATED));
}

TEST(ArabicJoining, OtherLettersHaveNoFormsAndIndicesCountUtf16Units) {
    EXPECT_THAT(joiningForms(u"a\U0001D538\u0628"),
                ElementsAre(U_DT_NONE, U_DT_NONE, U_DT_NONE, U_DT_ISOLATED));
}

TEST(ArabicJoining, ALigatureHasTheSidesOfItsEnds) {
    EXPECT_EQ(formOfLigature(U_DT_INITIAL, U_DT_FINAL), U_DT_ISOLATED);
    EXPECT_EQ(formOfLigature(U_DT_MEDIAL, U_DT_FINAL), U_DT_FINAL);
    EXPECT_EQ(formOfLigature(U_DT_INITIAL, U_DT_MEDIAL), U_DT_INITIAL);
    EXPECT_EQ(formOfLigature(U_DT_MEDIAL, U_DT_MEDIAL), U_DT_MEDIAL);
    EXPECT_EQ(formOfLigature(U_DT_NONE, U_DT_NONE), U_DT_NONE);
}
