#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

namespace {

using KWFontService_NS::FS_FontInfo;

TEST(IsSameFontName, BlanksHyphensIdeographicSpacesAndCaseDoNotCount) {
    EXPECT_TRUE(FS_FontInfo::isSameFontName(u"MS Gothic", u"ms-\u3000GOTHIC"));
    EXPECT_TRUE(FS_FontInfo::isSameFontName(u"-", u" "));
}

TEST(IsSameFontName, EverythingElseCounts) {
    EXPECT_FALSE(FS_FontInfo::isSameFontName(u"MS Gothic", u"MS PGothic"));
    EXPECT_FALSE(FS_FontInfo::isSameFontName(u"MS_Gothic", u"MS Gothic"));
}

} // namespace
