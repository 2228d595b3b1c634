#include "fonts/FontErrors.h"

#include "registry/FakeFont.h"
#include "support/UnixPaths.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using namespace KWFontService_NS;

std::string utf8(const UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

TEST(FontErrors, EveryCodeHasItsMessageAndEveryOtherCodeIsUnknown) {
    const std::map<int, std::string> messages = {
        {1921, "Font read error"},
        {1923, "Glyph-list open error"},
        {1924, "Glyph-list read error"},
        {1925, "Cannot read printer font"},
        {1926, "Cannot read font information"},
        {1928, "Font file error"},
        {1929, "Font file error"},
        {1930, "Already registered font-face font with different font-weight/style"},
        {1931, "Cannot open font-face font"},
        {1932, "Cannot create font-face font"},
        {1933, "Cannot read font-face font information"},
        {1943, "Unsupported font"},
        {1944, "Unsupported font-face font"},
    };
    for (int code = 0; code <= 0xFFFF; ++code) {
        const auto row = messages.find(code);
        ASSERT_EQ(utf8(fontErrorMessage(static_cast<FS_ERROR>(code))),
                  row != messages.end() ? row->second : "FontService unknown error")
            << code;
    }
}

TEST(FontErrors, TheGlyphBitmapCodeHasNoMessageHere) {
    EXPECT_EQ(utf8(fontErrorMessage(FS_ERROR_GLYPH_BITMAP)), "FontService unknown error");
}

TEST(FontErrors, ADetailFollowsAColon) {
    EXPECT_EQ(utf8(fontErrorText(FS_ERROR_FONT_FILE, u"'head' table not found", u"/a/b.ttf")),
              "Font file error: 'head' table not found\n/a/b.ttf");
}

TEST(FontErrors, WithoutADetailTheTextEndsInAFullStop) {
    EXPECT_EQ(utf8(fontErrorText(FS_ERROR_FONT_READ, UnicodeString(), u"/a/b.ttf")),
              "Font read error.\n/a/b.ttf");
}

TEST(FontErrors, AFontReportsItsOwnPathAndAnswersFalse) {
    const KWTest::UnixPaths system;
    const KWPtr<KWTest::FakeFont> font(new KWTest::FakeFont(u"/a/with blank.ttf"));
    KWError error;
    EXPECT_FALSE(font->fontError(error, FS_ERROR_UNSUPPORTED_FONT, u"why"));
    EXPECT_EQ(error.getCode(), 1943);
    EXPECT_EQ(utf8(error.getMessage()), "Unsupported font: why\n/a/with blank.ttf");
    EXPECT_TRUE(error.getSecondText().isEmpty());
    EXPECT_EQ(error.getFirstValue(), -1);
    EXPECT_EQ(error.getSecondValue(), -1);
    EXPECT_TRUE(error.getThirdText().isEmpty());
}

} // namespace
