#include "platform/PathText.h"

#include <gtest/gtest.h>

#include <string>

using KWPlatform::decodeBytes;
using KWPlatform::encodeBytes;

TEST(PathText, DecodesWellFormedUtf8OfEveryLength) {
    EXPECT_EQ(decodeBytes("a\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80"), u"a\u00E9\u3042\U0001F600");
    EXPECT_EQ(decodeBytes(""), u"");
    EXPECT_EQ(decodeBytes("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F"
                          "\xBF\xBF"),
              u"\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF");
}

TEST(PathText, EveryByteThatIsNotUtf8BecomesALoneSurrogate) {
    const auto escaped = [](std::initializer_list<int> bytes) {
        std::u16string text;
        for (const int byte : bytes)
            text.push_back(static_cast<char16_t>(0xDC00 + byte));
        return text;
    };
    EXPECT_EQ(decodeBytes("\xFF"), escaped({0xFF}));
    EXPECT_EQ(decodeBytes("\x80"), escaped({0x80}));
    EXPECT_EQ(decodeBytes("\xC0\xAF"), escaped({0xC0, 0xAF}));           // overlong
    EXPECT_EQ(decodeBytes("\xE0\x9F\xBF"), escaped({0xE0, 0x9F, 0xBF})); // overlong
    EXPECT_EQ(decodeBytes("\xED\xA0\x80"), escaped({0xED, 0xA0, 0x80})); // surrogate
    EXPECT_EQ(decodeBytes("\xF4\x90\x80\x80"), escaped({0xF4, 0x90, 0x80, 0x80}));
    EXPECT_EQ(decodeBytes("\xE3\x81"), escaped({0xE3, 0x81})); // cut off
    EXPECT_EQ(decodeBytes("\xE3\x81z"), escaped({0xE3, 0x81}) + u"z");
}

TEST(PathText, AnyTwoBytesComeBackUnharmed) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string bytes = {'x', static_cast<char>(first), static_cast<char>(second),
                                       '\x80', 'y'};
            ASSERT_EQ(encodeBytes(decodeBytes(bytes)), bytes) << first << ' ' << second;
        }
    }
}

TEST(PathText, ALoneSurrogateThatIsNoByteHasNoBytes) {
    EXPECT_FALSE(encodeBytes(std::u16string(1, char16_t(0xD800))));
    EXPECT_FALSE(encodeBytes(std::u16string(1, char16_t(0xDC7F))));
    EXPECT_FALSE(encodeBytes(std::u16string(1, char16_t(0xDD00))));
    EXPECT_EQ(encodeBytes(std::u16string(1, char16_t(0xDC80))), "\x80");
}
