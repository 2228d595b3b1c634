#include "KWCommon15/KWTokenizer.h"

#include "common/ValueText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace KWCommonNS;
using KWTest::describe;
using KWTest::repeated;
using KWTest::tokensOf;
using KWTest::utf8;

namespace {

constexpr auto kPlain = TokenizerType::Plain;

std::string itemsOf(const UnicodeString& text, wchar_t separator, bool trim, TokenizerType type) {
    KWTokenizer tokenizer(text, type);
    std::string out;
    for (KWValue item = tokenizer.nextSeparatedValue(separator, trim); !item.isNull();
         item = tokenizer.nextSeparatedValue(separator, trim))
        out += "<" + utf8(item.getStringValue()) + ">";
    return out;
}

TEST(KWTokenizer, NothingGivesTheNullValue) {
    for (const char16_t* text : {u"", u" \t\r\n\f", u"/* only this */", u"/**/ /* and */"}) {
        KWTokenizer tokenizer(text);
        EXPECT_TRUE(tokenizer.isAtEnd());
        EXPECT_TRUE(tokenizer.nextTokenValue().isNull());
        EXPECT_TRUE(tokenizer.nextTokenValue().isNull());
    }
    UnicodeString bogus;
    bogus.setToBogus();
    EXPECT_TRUE(KWTokenizer(bogus).nextTokenValue().isNull());
}

TEST(KWTokenizer, WhiteSpaceAndCommentsSeparate) {
    EXPECT_EQ(tokensOf(u" a/**/b /* c */ d\n"), "ident:a | ident:b | ident:d");
    EXPECT_EQ(tokensOf(u"a /* never closed"), "ident:a");
    EXPECT_EQ(tokensOf(u"a /*/ b"), "ident:a");
    EXPECT_EQ(tokensOf(u"a / b"), "ident:a | delim:/ | ident:b");
}

TEST(KWTokenizer, WordsOfTheCommonTableAreNames) {
    EXPECT_EQ(tokensOf(u"normal off on true yes false no"),
              "name:normal | name:off | name:on | name:true | name:yes | name:false | name:no");
    KWTokenizer tokenizer(u"oFF");
    EXPECT_EQ(tokenizer.nextTokenValue().getNameValue(), KWNameEnum::Off);
    EXPECT_EQ(tokensOf(u"o\\66 f"), "name:off");
}

TEST(KWTokenizer, OtherWordsAreIdentifiers) {
    EXPECT_EQ(tokensOf(u"liga -x --y _z a-1 \u96EA \U0001F600"),
              "ident:liga | ident:-x | ident:--y | ident:_z | ident:a-1 | ident:\u96EA | "
              "ident:\U0001F600");
}

TEST(KWTokenizer, EscapesInIdentifiersAreResolved) {
    EXPECT_EQ(tokensOf(u"\\61 b"), "ident:ab");
    EXPECT_EQ(tokensOf(u"\\000061b"), "ident:ab");
    EXPECT_EQ(tokensOf(u"\\61\r\nb"), "ident:ab");
    EXPECT_EQ(tokensOf(u"a\\ b"), "ident:a b");
    EXPECT_EQ(tokensOf(u"-\\31"), "ident:-1");
    EXPECT_EQ(tokensOf(u"\\1F600 x"), "ident:\U0001F600x");
}

TEST(KWTokenizer, EscapesThatNameNoCharacterGiveTheReplacement) {
    EXPECT_EQ(tokensOf(u"\\0 x"), "ident:\uFFFDx");
    EXPECT_EQ(tokensOf(u"\\D800 x"), "ident:\uFFFDx");
    EXPECT_EQ(tokensOf(u"\\110000 x"), "ident:\uFFFDx");
    EXPECT_EQ(tokensOf(u"x\\"), "ident:x\uFFFD");
}

TEST(KWTokenizer, ABackslashBeforeALineEndIsADelimiter) {
    EXPECT_EQ(tokensOf(u"\\\nx"), "delim:\\ | ident:x");
}

TEST(KWTokenizer, NulAndLoneSurrogatesReadAsTheReplacement) {
    EXPECT_EQ(tokensOf(UnicodeString(u"a\0b", 3)), "ident:a\uFFFDb");
    const char16_t lone[] = {u'a', 0xD800, u'b', u' ', u'"', 0xDC00, u'"', u' ', 0xDBFF};
    EXPECT_EQ(tokensOf(UnicodeString(lone, 9)), "ident:a\uFFFDb | text:\uFFFD | ident:\uFFFD");
}

TEST(KWTokenizer, StringsStandInEitherQuotationMark) {
    EXPECT_EQ(tokensOf(u"'a \"b' \"c 'd\" ''"), "text:a \"b | text:c 'd | text:");
    EXPECT_EQ(tokensOf(u"'yes'"), "text:yes");
}

TEST(KWTokenizer, EscapesInStringsAreResolved) {
    EXPECT_EQ(tokensOf(u"'\\27 \\\\ \\\"'"), "text:'\\ \"");
    EXPECT_EQ(tokensOf(u"'a\\\nb\\\r\nc\\\fd'"), "text:abcd");
}

TEST(KWTokenizer, AStringEndsWithTheText) {
    EXPECT_EQ(tokensOf(u"'abc"), "text:abc");
    EXPECT_EQ(tokensOf(u"'abc\\"), "text:abc");
    EXPECT_EQ(tokensOf(u"'"), "text:");
}

TEST(KWTokenizer, ALineEndMakesAStringBad) {
    EXPECT_EQ(tokensOf(u"'ab\nc d"), "bad:ab | ident:c | ident:d");
}

TEST(KWTokenizer, NumbersWithoutPointAreIntegers) {
    EXPECT_EQ(tokensOf(u"12 +12 -12 0 -0 007"),
              "int:12 | int:12 | int:-12 | int:0 | int:0 | int:7");
}

TEST(KWTokenizer, NumbersWithAPointAreReals) {
    EXPECT_EQ(tokensOf(u"12.5 12.0 .5 -.5 +1.25"),
              "real:12.5 | real:12 | real:0.5 | real:-0.5 | real:1.25");
}

TEST(KWTokenizer, IntegersTooLargeForIntAreReals) {
    EXPECT_EQ(tokensOf(u"2147483647 2147483648"), "int:2147483647 | real:2147483648");
}

TEST(KWTokenizer, APointWithoutDigitsIsADelimiter) {
    EXPECT_EQ(tokensOf(u"5. .x"), "int:5 | delim:. | delim:. | ident:x");
    EXPECT_EQ(tokensOf(u"+ -"), "delim:+ | delim:-");
}

TEST(KWTokenizer, NumbersKeepTheirUnits) {
    EXPECT_EQ(tokensOf(u"12px 1.5EM 50% -2Q 90deg"),
              "real:12px | real:1.5em | real:50% | real:-2q | real:90deg");
    KWTokenizer tokenizer(u"50%");
    EXPECT_EQ(tokenizer.nextTokenValue().getUnitType(), KWUnitType::Percent);
    EXPECT_EQ(tokensOf(u"12\\70 x"), "real:12px");
}

TEST(KWTokenizer, UnknownUnitsStayText) {
    EXPECT_EQ(tokensOf(u"12foo 0x1F 1--x"), "dimension:12foo | dimension:0x1F | dimension:1--x");
}

TEST(KWTokenizer, ExponentsBelongToTheOperationThatTakesThem) {
    EXPECT_EQ(tokensOf(u"1e3"), "dimension:1e3");
    EXPECT_EQ(tokensOf(u"1e3 1.5E-2 2e+1px 1e 1em", TokenizerType::CSS, true),
              "real:1000 | real:0.015 | real:20px | dimension:1e | real:1em");
}

TEST(KWTokenizer, NumbersOutOfRangeStayFinite) {
    KWTokenizer tokenizer(u"1e999999 -1e999999 1e-999999");
    EXPECT_EQ(tokenizer.nextTokenValueExp().getRealValue(), std::numeric_limits<double>::max());
    EXPECT_EQ(tokenizer.nextTokenValueExp().getRealValue(), std::numeric_limits<double>::lowest());
    EXPECT_EQ(tokenizer.nextTokenValueExp().getRealValue(), 0.0);
}

TEST(KWTokenizer, HashesAndAtKeywordsKeepTheirSign) {
    EXPECT_EQ(tokensOf(u"#0af #a\\62 c @media # @ @1"),
              "hash:#0af | hash:#abc | at:@media | delim:# | delim:@ | delim:@ | int:1");
}

TEST(KWTokenizer, FunctionsOpenWithTheirBracket) {
    EXPECT_EQ(tokensOf(u"rgb(1)"), "function:rgb( | int:1 | delim:)");
    EXPECT_EQ(tokensOf(u"yes(no"), "function:yes( | name:no");
}

TEST(KWTokenizer, UnquotedUrlsAreOneToken) {
    EXPECT_EQ(tokensOf(u"url(a/b.ttf) URL( x ) url() url(a\\)b) url(open"),
              "url:a/b.ttf | url:x | url: | url:a)b | url:open");
}

TEST(KWTokenizer, QuotedUrlsAreFunctions) {
    EXPECT_EQ(tokensOf(u"url( 'a b' )"), "function:url( | text:a b | delim:)");
}

TEST(KWTokenizer, BadUrlsEndAtTheirBracket) {
    EXPECT_EQ(tokensOf(u"url(a b) c"), "bad:a | ident:c");
    EXPECT_EQ(tokensOf(u"url(a'b\\)c) d"), "bad:a | ident:d");
    EXPECT_EQ(tokensOf(u"url(a(b)"), "bad:a");
    EXPECT_EQ(tokensOf(u"url(a\\\nb) d"), "bad:a | ident:d");
    EXPECT_EQ(tokensOf(u"url(a\x01) d"), "bad:a | ident:d");
}

TEST(KWTokenizer, UnicodeRangesAreOneToken) {
    EXPECT_EQ(tokensOf(u"U+26 u+0-7F U+4?? U+?"),
              "range:U+26 | range:u+0-7F | range:U+4?? | range:U+?");
}

TEST(KWTokenizer, UnicodeRangesTakeSixDigitsAtMost) {
    EXPECT_EQ(tokensOf(u"U+1234567"), "range:U+123456 | int:7");
    EXPECT_EQ(tokensOf(u"U+12345??"), "range:U+12345? | delim:?");
    EXPECT_EQ(tokensOf(u"U+0-1234567"), "range:U+0-123456 | int:7");
    EXPECT_EQ(tokensOf(u"U+1?-20"), "range:U+1? | int:-20");
    EXPECT_EQ(tokensOf(u"U+12-"), "range:U+12 | delim:-");
}

TEST(KWTokenizer, AUWithoutDigitsIsAnIdentifier) {
    EXPECT_EQ(tokensOf(u"U+x u ux"), "ident:U | delim:+ | ident:x | ident:u | ident:ux");
}

TEST(KWTokenizer, TheDelimiterIsThatOfTheLastToken) {
    KWTokenizer tokenizer(u"a , ',' \U0001F600x ; \u007F");
    EXPECT_EQ(tokenizer.getDelimiter(), 0);
    tokenizer.nextTokenValue();
    EXPECT_EQ(tokenizer.getDelimiter(), 0);
    EXPECT_EQ(describe(tokenizer.nextTokenValue()), "delim:,");
    EXPECT_EQ(tokenizer.getDelimiter(), 44);
    EXPECT_EQ(describe(tokenizer.nextTokenValue()), "text:,");
    EXPECT_EQ(tokenizer.getDelimiter(), 0);
    tokenizer.nextTokenValue();
    tokenizer.nextTokenValue();
    EXPECT_EQ(tokenizer.getDelimiter(), ';');
    tokenizer.nextTokenValue();
    EXPECT_EQ(tokenizer.getDelimiter(), 0x7F);
    EXPECT_TRUE(tokenizer.nextTokenValue().isNull());
    EXPECT_EQ(tokenizer.getDelimiter(), 0);
}

TEST(KWTokenizer, AFeatureListComesApart) {
    EXPECT_EQ(tokensOf(u"\"liga\" 0, 'smcp', \"ss01\" on"),
              "text:liga | int:0 | delim:, | text:smcp | delim:, | text:ss01 | name:on");
}

TEST(KWTokenizer, PlainTextKnowsNoEscapesQuotesAndComments) {
    EXPECT_EQ(tokensOf(u"a\\b 'x y' /*z*/ 12px, yes;", kPlain),
              "ident:a\\b | ident:'x | ident:y' | ident:/*z*/ | ident:12px | delim:, | name:yes | "
              "delim:;");
}

TEST(KWTokenizer, PlainNumbersMayEndInAPoint) {
    EXPECT_EQ(tokensOf(u"5. -0.25 .5 12 1e3 . -", kPlain),
              "real:5 | real:-0.25 | real:0.5 | int:12 | ident:1e3 | ident:. | ident:-");
    EXPECT_EQ(tokensOf(u"5.E3 -1.5E-2", kPlain, true), "real:5000 | real:-0.015");
}

TEST(KWTokenizer, PlainTextReplacesNulAndLoneSurrogates) {
    const char16_t units[] = {u'a', 0, 0xDC00, u'b'};
    EXPECT_EQ(tokensOf(UnicodeString(units, 4), kPlain), "ident:a\uFFFD\uFFFDb");
}

TEST(KWTokenizer, SeparatedItemsComeWithoutTheirSeparator) {
    EXPECT_EQ(itemsOf(u"E000-E757,F000", L',', false, kPlain), "<E000-E757><F000>");
    EXPECT_EQ(itemsOf(u"one", L',', false, kPlain), "<one>");
    EXPECT_EQ(itemsOf(u"", L',', false, kPlain), "");
}

TEST(KWTokenizer, AnEmptyItemIsAnEmptyString) {
    EXPECT_EQ(itemsOf(u",a,,b,", L',', false, kPlain), "<><a><><b>");
    EXPECT_EQ(itemsOf(u" , ", L',', true, kPlain), "<><>");
}

TEST(KWTokenizer, TrimmingDropsWhiteSpaceAtBothEnds) {
    EXPECT_EQ(itemsOf(u" a b ,\tc\n", L',', true, kPlain), "<a b><c>");
    EXPECT_EQ(itemsOf(u" a b ,c", L',', false, kPlain), "< a b ><c>");
}

TEST(KWTokenizer, PlainItemsSplitAtEverySeparator) {
    EXPECT_EQ(itemsOf(u"'a,b'", L',', false, kPlain), "<'a><b'>");
}

TEST(KWTokenizer, CssItemsKeepStringsBracketsAndCommentsWhole) {
    EXPECT_EQ(
        itemsOf(u"'a,b', f(c,[d,e],{g,}) /*,*/, \\,h, \"x\\\",y\"", L',', true, TokenizerType::CSS),
        "<'a,b'><f(c,[d,e],{g,}) /*,*/><\\,h><\"x\\\",y\">");
    EXPECT_EQ(itemsOf(u"(a,b],c", L',', true, TokenizerType::CSS), "<(a,b],c>");
    EXPECT_EQ(itemsOf(u"a),b", L',', true, TokenizerType::CSS), "<a)><b>");
    EXPECT_EQ(itemsOf(u"'a\n,b", L',', true, TokenizerType::CSS), "<'a><b>");
}

TEST(KWTokenizer, ItemsTellTheirSort) {
    EXPECT_EQ(KWTokenizer(u"a").nextSeparatedValue(L',', true).getUnitType(), KWUnitType::List);
    EXPECT_EQ(KWTokenizer(u"a", kPlain).nextSeparatedValue(L',', true).getUnitType(),
              KWUnitType::None);
}

TEST(KWTokenizer, TokensAndItemsMayBeMixed) {
    KWTokenizer tokenizer(u"name: a, b");
    EXPECT_EQ(describe(tokenizer.nextTokenValue()), "ident:name");
    EXPECT_EQ(describe(tokenizer.nextTokenValue()), "delim::");
    EXPECT_EQ(describe(tokenizer.nextSeparatedValue(L',', true)), "list:a");
    EXPECT_EQ(tokenizer.getDelimiter(), 0);
    EXPECT_EQ(describe(tokenizer.nextTokenValue()), "ident:b");
}

TEST(KWTokenizer, MegabytesOfOpenBracketsEnd) {
    constexpr int kCount = 1 << 20;
    const UnicodeString brackets = repeated(u"(", kCount);
    KWTokenizer tokenizer(brackets);
    int count = 0;
    while (!tokenizer.nextTokenValue().isNull())
        ++count;
    EXPECT_EQ(count, kCount);
    EXPECT_EQ(itemsOf(brackets, L',', false, TokenizerType::CSS).size(), kCount + 2U);
    EXPECT_EQ(tokensOf(repeated(u"url(", 1 << 18)), "bad:url");
}

TEST(KWTokenizer, MegabytesOfUnclosedPiecesEnd) {
    for (const char16_t* piece : {u"'", u"\"\n", u"/*", u"\\", u"\\\n", u"#", u"@-", u"u+", u"-",
                                  u"1e", u"+.", u"url( ", u"[{(", u"\\1F600 "}) {
        const UnicodeString text = repeated(piece, 1 << 19);
        for (const TokenizerType type : {TokenizerType::CSS, kPlain}) {
            KWTokenizer tokens(text, type);
            int count = 0;
            while (!tokens.nextTokenValueExp().isNull())
                ++count;
            EXPECT_LE(count, text.length());
            KWTokenizer items(text, type);
            int length = 0;
            for (KWValue item = items.nextSeparatedValue(L',', true); !item.isNull();
                 item = items.nextSeparatedValue(L',', true))
                length += item.getStringValue().length();
            EXPECT_LE(length, text.length());
        }
    }
}

TEST(KWTokenizer, NumbersOfTenThousandDigitsAreRead) {
    const UnicodeString digits = repeated(u"9", 10000);
    KWTokenizer tokenizer(digits + u" 0." + digits);
    const KWValue large = tokenizer.nextTokenValue();
    EXPECT_TRUE(large.isReal());
    EXPECT_EQ(large.getRealValue(), std::numeric_limits<double>::max());
    EXPECT_EQ(tokenizer.nextTokenValue().getRealValue(), 1.0);
}

} // namespace
