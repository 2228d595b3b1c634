#include "KWCommon15/KWName.h"

#include "common/ValueText.h"

#include <gtest/gtest.h>

using namespace KWCommonNS;
using KWTest::utf8;

namespace {

TEST(KWName, ANameOfATextIsTheNameOfItsNumber) {
    const KWName name{UnicodeString(u"normal")};
    EXPECT_EQ(name, KWName(KWNameEnum::Normal));
    EXPECT_EQ(name, KWNameEnum::Normal);
    EXPECT_NE(name, KWNameEnum::On);
    EXPECT_NE(name, KWName(KWNameEnum::On));
}

TEST(KWName, ConvertsBackToTheEnumeration) {
    const KWNameEnum number = KWName(UnicodeString(u"off"));
    EXPECT_EQ(static_cast<int>(number), 2358);
}

TEST(KWName, NoNameIsNumberZero) {
    EXPECT_TRUE(KWName().isEmpty());
    EXPECT_TRUE(KWName(UnicodeString()).isEmpty());
    EXPECT_FALSE(KWName(KWNameEnum::Yes).isEmpty());
    EXPECT_EQ(KWName(), KWNameEnum::None);
    EXPECT_TRUE(KWName().toString().isEmpty());
}

TEST(KWName, EqualTextsAreOneName) {
    const KWName first{UnicodeString(u"some word of ours")};
    const KWName second{UnicodeString(u"some word of ours")};
    EXPECT_EQ(first, second);
    EXPECT_NE(first, KWName(UnicodeString(u"Some word of ours")));
    EXPECT_EQ(utf8(first.toString()), "some word of ours");
    EXPECT_EQ(&first.toString(), &second.toString());
}

TEST(KWName, NumbersOfTheProgramNeedNoText) {
    const KWName key(static_cast<KWNameEnum>(11));
    EXPECT_FALSE(key.isEmpty());
    EXPECT_TRUE(key.toString().isEmpty());
}

TEST(KWName, NamesAreOrderedByNumber) {
    EXPECT_LT(KWName(static_cast<KWNameEnum>(2)), KWName(static_cast<KWNameEnum>(10)));
    EXPECT_LT(KWName(KWNameEnum::Off), KWName(KWNameEnum::On));
    EXPECT_LT(KWName(KWNameEnum::On), KWName(UnicodeString(u"another word of ours")));
}

} // namespace
