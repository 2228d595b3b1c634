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

/// The one font of the pool with that name.
FS_FontRef fontNamed(const UnicodeString& name) {
    bool inAlias = false;
    return getFontService(nullptr, nullptr, nullptr)->findFont(name, {}, inAlias, false);
}

TEST(RegistryInThreads, FontsWithALinkedEudcFontAreCreatedTogether) {
    const TempDir files;
    TestFont vertical = TestFont::vertical();
    vertical.name = Name::english(u"Main");
    files.write("main.ttf", vertical.build());
    vertical.name = Name::english(u"Orphan");
    files.write("orphan.ttf", vertical.build());
    files.write("link.ttf", namedFont(u"Link").build());
    files.write("broken.ttf", namedFont(u"Broken").without("hmtx").build());
    ASSERT_EQ(FS_AddFontFolderPath(fileUri(files.path())), 4);
    fontNamed(u"Main").font->setEudcFont(fontNamed(u"Link"), 0);
    fontNamed(u"Orphan").font->setEudcFont(fontNamed(u"Broken"), 0);
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([] {
                FS_FontInfo font;
                EXPECT_TRUE(font.createFont(u"Main", 0, false, nullptr, false));
                font.getEudcGlyphID(0xE000);
                EXPECT_TRUE(font.createFont(u"Orphan", 0, false, nullptr, false));
                font.getEudcGlyphID(0xE000);
            });
        }
    }
    EXPECT_TRUE(fontNamed(u"Link").font->hasVerticalGlyph(0));
    EXPECT_FALSE(fontNamed(u"Orphan").font->getEudcFont(0));
}

} // namespace
