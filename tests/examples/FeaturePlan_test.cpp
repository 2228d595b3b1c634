#include "typeset/FeaturePlan.h"

#include <gtest/gtest.h>

using namespace typeset;

TEST(FeaturePlan, WantsWhatEveryTextWantsAndNothingElse) {
    const FeaturePlan plan;
    for (const unsigned int tag : {tagOf("ccmp"), tagOf("locl"), tagOf("liga"), tagOf("calt"),
                                   tagOf("init"), tagOf("kern"), tagOf("mark"), tagOf("curs")})
        EXPECT_EQ(plan.valueOf(tag), 1) << tag;
    for (const unsigned int tag : {tagOf("smcp"), tagOf("dlig"), tagOf("aalt"), tagOf("vert"), 0U})
        EXPECT_EQ(plan.valueOf(tag), 0) << tag;
}

TEST(FeaturePlan, WishesTurnFeaturesOffAndOnAndChooseAlternates) {
    const FeaturePlan plan(parseFeatures(ExitCode::usage, "liga=0, smcp, \"salt\" 3, kern off"));
    EXPECT_EQ(plan.valueOf(tagOf("liga")), 0);
    EXPECT_EQ(plan.valueOf(tagOf("smcp")), 1);
    EXPECT_EQ(plan.valueOf(tagOf("salt")), 3);
    EXPECT_EQ(plan.valueOf(tagOf("kern")), 0);
    EXPECT_EQ(plan.valueOf(tagOf("mark")), 1);
}

TEST(FeaturePlan, TheWishesOfAPartGoFirst) {
    const FeaturePlan whole(parseFeatures(ExitCode::usage, "liga=0, smcp"));
    const FeaturePlan part = whole.with(parseFeatures(ExitCode::usage, "liga=1, kern=0"));
    EXPECT_EQ(part.valueOf(tagOf("liga")), 1);
    EXPECT_EQ(part.valueOf(tagOf("kern")), 0);
    EXPECT_EQ(part.valueOf(tagOf("smcp")), 1);
    EXPECT_EQ(whole.valueOf(tagOf("liga")), 0);
}

TEST(FeaturePlan, WhatIsNoListOfFeaturesIsRefusedWithTheCodeOfItsPlace) {
    for (const char* list : {"liga=0, liga=1", "ligature", "liga 0 0", "liga none", "normal"}) {
        try {
            parseFeatures(ExitCode::text, list);
            ADD_FAILURE() << list;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), ExitCode::text);
            EXPECT_NE(std::string(failure.what()).find("no list of features"), std::string::npos);
        }
    }
}

TEST(FeaturePlan, FourFeaturesAreForOneFormOfALetter) {
    EXPECT_EQ(formOfFeature(tagOf("init")), U_DT_INITIAL);
    EXPECT_EQ(formOfFeature(tagOf("medi")), U_DT_MEDIAL);
    EXPECT_EQ(formOfFeature(tagOf("fina")), U_DT_FINAL);
    EXPECT_EQ(formOfFeature(tagOf("isol")), U_DT_ISOLATED);
    EXPECT_EQ(formOfFeature(tagOf("rlig")), U_DT_NONE);
}

TEST(FeaturePlan, ALanguageIsATagOfUpToFourLetters) {
    EXPECT_EQ(parseLanguage(ExitCode::usage, "ROM"), tagOf("ROM "));
    EXPECT_THROW(parseLanguage(ExitCode::usage, "Romanian"), Failure);
}
