#include "fonts/CodePoints.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace KWFontService_NS {
namespace {

std::vector<UChar32> codePointsOf(std::u16string_view text) {
    std::vector<UChar32> codePoints;
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t i = 0; i < length;)
        codePoints.push_back(nextCodePoint(text.data(), i, length));
    return codePoints;
}

TEST(CodePoints, ASurrogatePairIsOneCodePoint) {
    EXPECT_EQ(codePointsOf(u"A\U0001F600z"), (std::vector<UChar32>{'A', 0x1F600, 'z'}));
}

TEST(CodePoints, ALoneSurrogateIsItselfAlsoAtTheEnd) {
    const char16_t text[] = {0xDC00, 0xD83D, u'A', 0xD83D};
    EXPECT_EQ(codePointsOf({text, 4}), (std::vector<UChar32>{0xDC00, 0xD83D, 'A', 0xD83D}));
}

} // namespace
} // namespace KWFontService_NS
