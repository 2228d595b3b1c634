#include "KWCommon15/KWMessage.h"

#include "common/ValueText.h"

#include <gtest/gtest.h>

using namespace KWCommonNS;
using KWTest::utf8;

namespace {

TEST(KWMessage, EveryPlaceholderTakesItsArgument) {
    const KWMessage message(u"{4}{3}{2}{1}{0}", u"a", u"b", u"c", u"d", u"e");
    EXPECT_EQ(utf8(message.getMessage()), "edcba");
}

TEST(KWMessage, APlaceholderMayRepeatOrBeAbsent) {
    EXPECT_EQ(utf8(KWMessage(u"<{0} {2}> in {0}.", u"x", u"unused", u"y").getMessage()),
              "<x y> in x.");
}

TEST(KWMessage, MissingArgumentsAreEmpty) {
    EXPECT_EQ(utf8(KWMessage(u"[{0}{1}]", u"x").getMessage()), "[x]");
}

TEST(KWMessage, ArgumentsAreNotExpandedAgain) {
    EXPECT_EQ(utf8(KWMessage(u"{0} {1}", u"{1}{0}", u"{0}").getMessage()), "{1}{0} {0}");
    EXPECT_EQ(utf8(KWMessage(u"{{0}}", u"1}{1").getMessage()), "{1}{1}");
}

TEST(KWMessage, OtherBracesStayAsTheyAre) {
    const UnicodeString text(u"{5} {} {00} {a} { 0} {0 } 0} {");
    EXPECT_EQ(KWMessage(text, u"x").getMessage(), text);
    EXPECT_EQ(utf8(KWMessage(u"{{1}", u"x", u"y").getMessage()), "{y");
    EXPECT_TRUE(KWMessage(u"").getMessage().isEmpty());
}

} // namespace
