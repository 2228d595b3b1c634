#include "typeset/LineBreaker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

using namespace typeset;

namespace {

/// A box for each letter, 100 wide; '_' is a blank that a line may end behind, '|' a mark of a
/// place for a break that takes no room.
std::vector<Box> boxesOf(std::string_view text) {
    std::vector<Box> boxes;
    for (const char c : text) {
        if (c == '|') {
            boxes.back().breakAfter = true;
            continue;
        }
        Box box;
        box.advance = 100;
        box.blank = box.breakAfter = c == '_';
        boxes.push_back(box);
    }
    return boxes;
}

} // namespace

TEST(LineBreaker, ATextThatFitsIsOneLine) {
    EXPECT_THAT(breakLines(boxesOf("aa_bb"), 500, true), testing::ElementsAre(5));
    EXPECT_THAT(breakLines(boxesOf("a"), 500, true), testing::ElementsAre(1));
}

TEST(LineBreaker, BlanksAtTheEndHangOver) {
    EXPECT_THAT(breakLines(boxesOf("aaaaa_bbbbb_"), 500, false), testing::ElementsAre(6, 12));
}

TEST(LineBreaker, LinesBreakOnlyWhereTheyMay) {
    EXPECT_THAT(breakLines(boxesOf("aaa|aaa"), 500, false), testing::ElementsAre(3, 6));
}

TEST(LineBreaker, LooksAheadForEvenLines) {
    // Taken one by one, the lines would be "aaa bb", "cc" and "ddddd".
    EXPECT_THAT(breakLines(boxesOf("aaa_bb_cc_ddddd"), 600, false),
                testing::ElementsAre(4, 10, 15));
}

TEST(LineBreaker, AWordWiderThanTheMeasureIsCutWhereItReachesIt) {
    EXPECT_THAT(breakLines(boxesOf("aaaaaaaaaaaa"), 500, true), testing::ElementsAre(5, 10, 12));
    EXPECT_THAT(breakLines(boxesOf("aaaa"), 50, true), testing::ElementsAre(1, 2, 3, 4));
}

TEST(LineBreaker, JustifiedGapsMayShrinkByAFifthAndRaggedOnesNotAtAll) {
    // 510 of letters and gap against 500: a fifth of one gap is 20.
    std::vector<Box> boxes = boxesOf("aa_bb");
    boxes[0].advance = 110;
    EXPECT_THAT(breakLines(boxes, 500, true), testing::ElementsAre(5));
    EXPECT_THAT(breakLines(boxes, 500, false), testing::ElementsAre(3, 5));
    boxes[0].advance = 130;
    EXPECT_THAT(breakLines(boxes, 500, true), testing::ElementsAre(3, 5));
}

TEST(LineBreaker, KerningCountsInsideALineAndNotAtItsEnd) {
    std::vector<Box> boxes = boxesOf("ab_c");
    for (Box& box : boxes)
        box.kern = -10;
    const LineExtent extent = measureLine(boxes, 0, 3);
    EXPECT_EQ(extent.end, 2U);
    EXPECT_DOUBLE_EQ(extent.width, 190);
    EXPECT_EQ(extent.gaps, 0U);
    EXPECT_DOUBLE_EQ(measureLine(boxes, 0, 4).width, 370);
    EXPECT_EQ(measureLine(boxes, 0, 4).gaps, 1U);
    EXPECT_THAT(breakLines(boxes, 370, false), testing::ElementsAre(4));
    EXPECT_THAT(breakLines(boxes, 369, false), testing::ElementsAre(3, 4));
}

TEST(LineBreaker, ALongTextTakesNoMoreThanItsLength) {
    std::string text;
    for (int i = 0; i < 200000; ++i)
        text += "word_";
    const std::vector<std::size_t> ends = breakLines(boxesOf(text), 6000, true);
    EXPECT_GE(ends.size(), text.size() / 61);
    EXPECT_LE(ends.size(), text.size() / 50);
    EXPECT_EQ(ends.back(), text.size());
}
