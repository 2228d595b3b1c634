#include "registry/RegistryFixture.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_Functions.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

TEST(RegistryInThreads, OpeningLookingUpListingAndAddingFoldersGoTogether) {
    constexpr int kFolders = 8;
    constexpr int kThreads = 6;
    const TempDir files;
    for (int i = 0; i < kFolders; ++i) {
        const std::string folder = "folder" + std::to_string(i) + "/";
        files.write(folder + "regular.ttf", namedFont(u"Shared Family", 100 * (i + 1)).build());
        files.write(folder + "bad.ttf", namedFont(u"Bad").without("head").build());
    }
    files.write("config.xml", "<font-config windows-registry='disable'><font-folder path='" +
                                  files.path("folder0").string() + "'/></font-config>");
    const std::string config = files.path("config.xml").string();

    std::atomic<int> added = 0;
    std::atomic<int> found = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&, thread] {
                KWError error;
                FontServiceOpen(config.c_str(), &error);
                EXPECT_FALSE(error.isError());
                for (int i = 0; i < kFolders; ++i) {
                    const int folder = (i + thread) % kFolders;
                    added += FS_AddFontFolderPath(files.uri("folder" + std::to_string(folder)));
                    FS_FontInfo font;
                    // Fills gaps of the family while others read it.
                    if (font.createFont(u"Shared Family", 100 * folder, thread % 2 != 0, nullptr,
                                        false) &&
                        font.getGlyphID('A', false) == TestFont::kA)
                        ++found;
                    std::vector<UnicodeString> paths;
                    FS_GetFontFoldPathVector(config.c_str(), paths);
                    EXPECT_EQ(paths.size(), 1U);
                    for (int note = FS_GetFontError(nullptr, 0) - 1; note >= 0; --note)
                        EXPECT_EQ(FS_GetFontError(&error, note), note);
                }
            });
        }
    }
    EXPECT_EQ(added, kFolders - 1) << "each folder counts once; the first is configured";
    EXPECT_EQ(found, kThreads * kFolders);
    EXPECT_EQ(FS_GetFontError(nullptr, 0), kFolders);
}

} // namespace
