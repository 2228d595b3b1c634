#include "common/CssText.h"

#include "common/ValueText.h"

#include <gtest/gtest.h>

using namespace KWCommonNS;
using KWTest::utf8;

namespace {

constexpr auto kDouble = KWUtil::QuoteMode::Double;
constexpr auto kSingle = KWUtil::QuoteMode::Single;

TEST(CssText, StringsEscapeTheirOwnQuotationMarkAndBackslashes) {
    EXPECT_EQ(utf8(toCssString(u"a\"b'c\\d", kDouble)), R"("a\"b'c\\d")");
    EXPECT_EQ(utf8(toCssString(u"a\"b'c\\d", kSingle)), R"('a"b\'c\\d')");
    EXPECT_EQ(utf8(toCssString(u"", kDouble)), R"("")");
}

TEST(CssText, StringsEscapeControlCharactersAsHexWithABlank) {
    EXPECT_EQ(utf8(toCssString(u"a\nb\x7F"
                               u"c",
                               kDouble)),
              R"("a\a b\7f c")");
    EXPECT_EQ(utf8(toCssString(UnicodeString(u"\x1F", 1), kDouble)), R"("\1f ")");
}

TEST(CssText, NulBecomesTheReplacementCharacter) {
    const UnicodeString nul(u"a\0b", 3);
    EXPECT_EQ(utf8(toCssString(nul, kDouble)), "\"a\uFFFDb\"");
    EXPECT_EQ(utf8(toCssIdentifier(nul)), "a\uFFFDb");
    EXPECT_EQ(utf8(toCssUrl(nul)), "url(a\uFFFDb)");
}

TEST(CssText, IdentifiersEscapeADigitAtTheBeginning) {
    EXPECT_EQ(utf8(toCssIdentifier(u"3d")), R"(\33 d)");
    EXPECT_EQ(utf8(toCssIdentifier(u"-3d")), R"(-\33 d)");
    EXPECT_EQ(utf8(toCssIdentifier(u"d3")), "d3");
}

TEST(CssText, IdentifiersEscapeWhatIsNoNameCharacter) {
    EXPECT_EQ(utf8(toCssIdentifier(u"a b.c")), R"(a\ b\.c)");
    EXPECT_EQ(utf8(toCssIdentifier(u"-")), R"(\-)");
    EXPECT_EQ(utf8(toCssIdentifier(u"--x")), "--x");
    EXPECT_EQ(utf8(toCssIdentifier(u"\u96EA_\U0001F600")), "\u96EA_\U0001F600");
    EXPECT_EQ(utf8(toCssIdentifier(u"a\tb")), R"(a\9 b)");
}

TEST(CssText, NamesMayBeginWithADigit) {
    EXPECT_EQ(utf8(toCssName(u"0af!")), R"(0af\!)");
}

TEST(CssText, UrlsEscapeWhatWouldEndThem) {
    EXPECT_EQ(utf8(toCssUrl(u"a b(c)'\"\\\n")), R"(url(a\ b\(c\)\'\"\\\a ))");
}

} // namespace
