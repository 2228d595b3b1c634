#include "KWCommon15/KWCStr.h"

#include <gtest/gtest.h>

using namespace KWCommonNS;

TEST(CStr, HasTheTextAndTheBytes) {
    const KWCStr text("caf\xC3\xA9");
    EXPECT_EQ(text, UnicodeString(u"caf\u00E9"));
    EXPECT_STREQ(text.c_str(), "caf\xC3\xA9");
    EXPECT_TRUE(text.hasBytes());
    EXPECT_TRUE(KWCStr(static_cast<const char*>(nullptr)).isEmpty());
    EXPECT_STREQ(KWCStr(static_cast<const char*>(nullptr)).c_str(), "");
}

TEST(CStr, BytesThatAreNotUtf8ComeBackUnharmed) {
    const KWCStr text("/a/\xFF\x80");
    EXPECT_EQ(text.length(), 5);
    EXPECT_EQ(text.charAt(3), char16_t(0xDCFF));
    EXPECT_STREQ(KWCStr(UnicodeString(text)).c_str(), "/a/\xFF\x80");
}

TEST(CStr, ATextWithoutAnEightBitFormHasNoBytes) {
    for (const UnicodeString& text : {UnicodeString(char16_t(0xD800)), UnicodeString(u"a\0b", 3)}) {
        const KWCStr narrow(text);
        EXPECT_FALSE(narrow.hasBytes());
        EXPECT_STREQ(narrow.c_str(), "");
        EXPECT_EQ(narrow, text);
    }
}

TEST(CStr, IsCopiedWithItsBytes) {
    const KWCStr original("abc");
    KWCStr copy(original);
    EXPECT_EQ(copy.getBytes(), "abc");
    copy = KWCStr("xyz");
    EXPECT_EQ(copy.getBytes(), "xyz");
    EXPECT_EQ(copy, UnicodeString(u"xyz"));
}
