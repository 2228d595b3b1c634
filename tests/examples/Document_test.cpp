#include "typeset/Document.h"

#include "typeset/Failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace typeset;

namespace {

std::string failureOf(const std::string& text) {
    try {
        parseDocument(text, "it");
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::text);
        return failure.what();
    }
    return "no failure";
}

std::vector<std::pair<BlockKind, icu::UnicodeString>> blocksOf(const std::string& text) {
    std::vector<std::pair<BlockKind, icu::UnicodeString>> blocks;
    for (const Block& block : parseDocument(text, "it").blocks)
        blocks.emplace_back(block.kind, block.text);
    return blocks;
}

} // namespace

TEST(Document, BlankLinesPartParagraphsAndLinesOfOneAreJoined) {
    EXPECT_THAT(blocksOf("one\ntwo\r\n \t\r\n\n three   four \n"),
                testing::ElementsAre(testing::Pair(BlockKind::paragraph, u"one two"),
                                     testing::Pair(BlockKind::paragraph, u"three four")));
}

TEST(Document, NumberSignsAndABlankMakeHeadingsWithoutABlankLineAround) {
    EXPECT_THAT(blocksOf("# Title\ntext\n## Part\n#not\n### nor this"),
                testing::ElementsAre(testing::Pair(BlockKind::title, u"Title"),
                                     testing::Pair(BlockKind::paragraph, u"text"),
                                     testing::Pair(BlockKind::heading, u"Part"),
                                     testing::Pair(BlockKind::paragraph, u"#not ### nor this")));
}

TEST(Document, AnEmptyHeadingIsNone) {
    EXPECT_EQ(blocksOf("# \n\ntext").size(), 1U);
}

TEST(Document, AccentsAreComposedAndSoftHyphensAndByteOrderMarksDropped) {
    EXPECT_THAT(blocksOf("\xEF\xBB\xBF"
                         "e\xCC\x81 syl\xC2\xADlable"),
                testing::ElementsAre(testing::Pair(BlockKind::paragraph, u"\u00E9 syllable")));
}

TEST(Document, NoBreakSpacesStay) {
    EXPECT_THAT(blocksOf("a\xC2\xA0 b"),
                testing::ElementsAre(testing::Pair(BlockKind::paragraph, u"a\u00A0 b")));
}

TEST(Document, TheTitleIsTheFirstHeading) {
    EXPECT_EQ(parseDocument("text\n## Second\n# First", "it").title(), u"Second");
    EXPECT_TRUE(parseDocument("text", "it").title().isEmpty());
}

TEST(Document, BytesThatAreNotUtf8AreToldWithTheirLine) {
    EXPECT_EQ(failureOf("fine\nna\xEFve"), "it is not UTF-8: line 2, byte 0xEF");
    EXPECT_EQ(failureOf("\xC0\x80"), "it is not UTF-8: line 1, byte 0xC0");
    EXPECT_EQ(failureOf("\xED\xA0\x80"), "it is not UTF-8: line 1, byte 0xED");
    EXPECT_EQ(failureOf("cut \xE2\x82"), "it is not UTF-8: line 1, byte 0xE2");
}

TEST(Document, ATextOfBlanksAloneIsRefused) {
    EXPECT_EQ(failureOf(""), "it holds no text");
    EXPECT_EQ(failureOf(" \n\t\n# \n"), "it holds no text");
}

TEST(Document, KnowsWhetherSomeTextRunsFromRightToLeft) {
    EXPECT_FALSE(parseDocument("left \xCE\xB1", "it").hasRightToLeft());
    EXPECT_TRUE(parseDocument("left\n\n\xD7\x90", "it").hasRightToLeft());
    EXPECT_TRUE(parseDocument("\xD8\xB9", "it").hasRightToLeft());
}
