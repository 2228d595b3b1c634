#include "type1/NameKeys.h"

#include "support/DefaultLocale.h"

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;
using KWTest::DefaultLocale;

TEST(NormaliseFontName, DropsBlanksHyphensAndIdeographicSpacesAndCapitalises) {
    EXPECT_EQ(normaliseFontName(u"MS Gothic-b\u3000x"), UnicodeString(u"MSGOTHICBX"));
}

TEST(NormaliseFontName, KeepsEveryOtherKindOfBlankAndDash) {
    EXPECT_EQ(normaliseFontName(u"a\tb\u00A0c\u2010d_e"), UnicodeString(u"A\tB\u00A0C\u2010D_E"));
}

TEST(NormaliseFontName, CapitalisesTheWholeText) {
    EXPECT_EQ(normaliseFontName(u"Stra\u00DFe \u0436"), UnicodeString(u"STRASSE\u0416"));
}

TEST(NormaliseFontName, DoesNotFollowTheLocale) {
    const DefaultLocale turkish("tr_TR");
    EXPECT_EQ(normaliseFontName(u"Arial Mini"), UnicodeString(u"ARIALMINI"));
}

TEST(NormaliseFontName, MayLeaveNothing) {
    EXPECT_TRUE(normaliseFontName(u"- -\u3000").isEmpty());
    EXPECT_TRUE(normaliseFontName(UnicodeString()).isEmpty());
}

TEST(LowerFileName, FollowsNoLocale) {
    EXPECT_EQ(lowerFileName(u"ABI.TTF"), UnicodeString(u"abi.ttf"));
    EXPECT_EQ(lowerFileName(u"\u00C4\uFF21.Otf"), UnicodeString(u"\u00E4\uFF41.otf"));
}

} // namespace
