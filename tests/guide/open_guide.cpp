#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

//! [open]
using namespace KWFontService_NS;

bool openFonts() {
    KWError error;
    if (FontServiceOpen(nullptr, &error) == FS_ERROR_NONE)
        return true;
    std::string text;
    std::fprintf(stderr, "%s\n", error.getMessage().toUTF8String(text).c_str());
    return false;
}
//! [open]

//! [notes]
void printNotes() {
    const int count = FS_GetFontError(nullptr, 0);
    for (int i = 0; i < count; ++i) {
        KWError note;
        FS_GetFontError(&note, i);
        std::string text;
        std::fprintf(stderr, "%s\n", note.getMessage().toUTF8String(text).c_str());
    }
}
//! [notes]

TEST(Guide, TheServiceOpensAndHasNoNotes) {
    EXPECT_TRUE(openFonts());
    testing::internal::CaptureStderr();
    printNotes();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
