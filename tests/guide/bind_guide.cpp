#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

//! [bind]
using namespace KWFontService_NS;

bool bind(FS_FontInfo& font, const std::string& path) {
    if (font.createFont(KWUri(UnicodeString::fromUTF8(path), KWCommonNS::URISTR_LOCAL)))
        return true;
    std::string text;
    std::fprintf(stderr, "%s\n", font.getError().getMessage().toUTF8String(text).c_str());
    return false;
}
//! [bind]

TEST(Guide, AFontFileIsBound) {
    FS_FontInfo font;
    ASSERT_TRUE(bind(font, KW_GUIDE_FONT));
    EXPECT_EQ(font.getFamilyName(0), UnicodeString(u"DejaVu Sans"));
}

TEST(Guide, AFileThatIsNoFontGivesAMessageWithItsPath) {
    FS_FontInfo font;
    const std::string path = std::filesystem::path("/no/such/font.ttf").make_preferred().string();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(bind(font, path));
    EXPECT_NE(testing::internal::GetCapturedStderr().find(path), std::string::npos);
}

} // namespace
