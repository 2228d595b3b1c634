#include "typeset/Document.h"

#include "typeset/Failure.h"

#include <KWFontService17/KWFontService.h>

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

TEST(Document, AShaddaStandsBeforeTheVowelSignsOfItsLetter) {
    const Document document = parseDocument("\xD8\xAF\xD9\x8E\xD9\x91\xD8\xB1\xD9\x91", "it");
    EXPECT_EQ(document.blocks[0].text, icu::UnicodeString(u"\u062F\u0651\u064E\u0631\u0651"));
}

TEST(Document, LinesWithAnAtSayHowTheNextParagraphIsSet) {
    const Document document = parseDocument("before\n@ vertical\n@ size 1.5\n@ language ROM\n"
                                            "@ features liga=0, ss01 2\r\n\nset so\n\nafter",
                                            "it");
    ASSERT_EQ(document.blocks.size(), 3U);
    const BlockStyle& style = document.blocks[1].style;
    EXPECT_TRUE(style.columns);
    EXPECT_EQ(style.scale, 1.5);
    EXPECT_EQ(style.language, KWFontService_NS::toTAG(u"ROM"));
    EXPECT_EQ(style.features.getValue(KWFontService_NS::toTAG(u"liga")), 0);
    EXPECT_EQ(style.features.getValue(KWFontService_NS::toTAG(u"ss01")), 2);
    for (const std::size_t i : {0U, 2U}) {
        EXPECT_FALSE(document.blocks[i].style.columns);
        EXPECT_EQ(document.blocks[i].style.scale, 1);
        EXPECT_EQ(document.blocks[i].style.language, 0U);
        EXPECT_TRUE(document.blocks[i].style.features.isEmpty());
    }
}

TEST(Document, WhatTheyCannotSayIsRefused) {
    for (const char* line :
         {"@ upside-down", "@ vertical yes", "@ size", "@ size 5", "@ size big", "@ language",
          "@ language Romanian", "@ features", "@ features liga=0, liga=1", "@ features normal"}) {
        EXPECT_THROW(parseDocument(std::string(line) + "\n\ntext", "it"), Failure) << line;
    }
}
