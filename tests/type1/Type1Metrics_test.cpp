#include "type1/Type1Metrics.h"

#include <gtest/gtest.h>

#include <utility>

namespace KWFontService_NS {
namespace {

Type1Metrics sample() {
    return Type1Metrics({{.code = 65, .WX = 600, .name = "A"},
                         {.code = -1, .WX = 610, .name = "Aacute"},
                         {.code = 65, .WX = 620, .name = "B"},
                         {.code = 67, .WX = 630, .name = "A"}});
}

TEST(Type1Metrics, OneThatNothingWasEnteredInFindsNothing) {
    const Type1Metrics metrics = sample();
    EXPECT_EQ(metrics.findCode(65), nullptr);
    EXPECT_EQ(metrics.findName("A"), nullptr);
    EXPECT_EQ(metrics.records().size(), 4U);
}

TEST(Type1Metrics, WhatWasEnteredIsFoundOnceSorted) {
    Type1Metrics metrics = sample();
    metrics.addCode(67, 3);
    metrics.addCode(65, 2);
    metrics.addCode(65, 0);
    metrics.addName(2);
    metrics.sort();
    EXPECT_EQ(metrics.findCode(65)->WX, 620);
    EXPECT_EQ(metrics.findCode(67)->WX, 630);
    EXPECT_EQ(metrics.findName("B")->WX, 620);
    EXPECT_EQ(metrics.findName("A"), nullptr);
}

TEST(Type1Metrics, TheFirstOfACodeAndOfANameStays) {
    Type1Metrics metrics = sample();
    metrics.addAll();
    EXPECT_EQ(metrics.findCode(65)->WX, 600);
    EXPECT_EQ(metrics.findCode(67)->WX, 630);
    EXPECT_EQ(metrics.findName("A")->WX, 600);
    EXPECT_EQ(metrics.findName("B")->WX, 620);
}

TEST(Type1Metrics, AGlyphWithoutACodeHasItsNameOnly) {
    Type1Metrics metrics = sample();
    metrics.addAll();
    EXPECT_EQ(metrics.findName("Aacute")->WX, 610);
    EXPECT_EQ(metrics.findCode(-1), nullptr);
}

TEST(Type1Metrics, MovingKeepsWhatIsEntered) {
    Type1Metrics metrics = sample();
    metrics.addAll();
    const Type1Metrics moved(std::move(metrics));
    EXPECT_EQ(moved.findName("B"), &moved.records()[2]);
}

} // namespace
} // namespace KWFontService_NS
