// What a host gets with the two umbrella headers. Nothing else may be included before the check.

#include <KWCommon15/KWCommon.h>
#include <KWFontService17/KWFontService.h>

#if defined(_WINDOWS_) || defined(min) || defined(max) || defined(ERROR) || defined(GetObject)
#error "a public header brings the macros of <windows.h>"
#endif

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(PublicHeaders, NameTheWindowsRecordsWithoutTheirHeader) {
    KWFontService_NS::FS_FontInfo font;
    const KWFontService_NS::PANOSE* const none = font.getPanose();
    EXPECT_EQ(none, nullptr);
    EXPECT_TRUE((std::is_constructible_v<KWFontService_NS::FS_LogFont,
                                         const KWFontService_NS::tagLOGFONTW&>));
}

} // namespace
