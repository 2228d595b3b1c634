#include "KWCommon15/KWParser.h"

#include "common/ValueText.h"

#include <gtest/gtest.h>

using namespace KWCommonNS;
using KWTest::describe;
using KWTest::utf8;

namespace {

std::string parsed(const UnicodeString& text, TokenizerType type = TokenizerType::CSS) {
    return describe(KWParser::parse(text, type));
}

TEST(KWParser, OneTokenGivesItsValue) {
    EXPECT_EQ(parsed(u"12"), "int:12");
    EXPECT_EQ(parsed(u" -12 "), "int:-12");
    EXPECT_EQ(parsed(u"12.5"), "real:12.5");
    EXPECT_EQ(parsed(u"12px"), "real:12px");
    EXPECT_EQ(parsed(u"50%"), "real:50%");
    EXPECT_EQ(parsed(u"1e3"), "real:1000");
    EXPECT_EQ(parsed(u"'x'"), "text:x");
    EXPECT_EQ(parsed(u"Demi"), "ident:Demi");
    EXPECT_EQ(parsed(u"U+4??"), "range:U+4??");
    EXPECT_EQ(parsed(u"/* a */ 12 /* b */"), "int:12");
}

TEST(KWParser, TheAffirmativeWordsAreNames) {
    EXPECT_EQ(KWParser::parse(u"yes").getNameValue(), KWNameEnum::Yes);
    EXPECT_EQ(KWParser::parse(u" TRUE ").getNameValue(), KWNameEnum::True);
    EXPECT_FALSE(KWParser::parse(u"'yes'").isName());
}

TEST(KWParser, OnlyWholeNumbersThatFitAreIntegers) {
    for (const char16_t* text : {u"57344x", u"1.0", u"0x10", u"1 2", u"5.", u"99999999999", u""})
        EXPECT_FALSE(KWParser::parse(text).isInteger()) << utf8(text);
}

TEST(KWParser, SeveralTokensGiveTheTrimmedTextAsAList) {
    EXPECT_EQ(parsed(u" \"liga\" 0,  \"smcp\"\n"), "list:\"liga\" 0,  \"smcp\"");
    EXPECT_EQ(parsed(u"U+0-7F, U+100"), "list:U+0-7F, U+100");
    EXPECT_EQ(parsed(u"rgb(1)"), "list:rgb(1)");
    EXPECT_EQ(parsed(u"/*a*/ b c"), "list:/*a*/ b c");
}

TEST(KWParser, AListComesApartAgain) {
    const KWValue list = KWParser::parse(u"'a b' 1, on");
    EXPECT_EQ(KWTest::tokensOf(list.toString()), "text:a b | int:1 | delim:, | name:on");
}

TEST(KWParser, NothingGivesNull) {
    EXPECT_EQ(parsed(u""), "null");
    EXPECT_EQ(parsed(u" \n/* */"), "null");
}

TEST(KWParser, PlainTextFollowsThePlainGrammar) {
    EXPECT_EQ(parsed(u"5.", TokenizerType::Plain), "real:5");
    EXPECT_EQ(parsed(u"12px", TokenizerType::Plain), "ident:12px");
    EXPECT_EQ(parsed(u" a b ", TokenizerType::Plain), "list:a b");
}

TEST(KWParser, MegabytesOfAnythingGiveOneValue) {
    const UnicodeString brackets = KWTest::repeated(u"(", 1 << 20);
    EXPECT_EQ(KWParser::parse(brackets).getStringValue(), brackets);
    EXPECT_EQ(KWParser::parse(KWTest::repeated(u"9", 1 << 20)).isReal(), true);
}

} // namespace
