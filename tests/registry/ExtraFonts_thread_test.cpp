#include "registry/ExtraFontFixture.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <sstream>
#include <thread>
#include <vector>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

class ExtraFontThreads : public ExtraFontTest {};

TEST_F(ExtraFontThreads, AStalledFetcherHoldsUpTheRegistryUntilItEnds) {
    std::future<bool> lookup;
    KWUri::setFetcher([&](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        lookup = std::async(std::launch::async, [] {
            FS_FontInfo font;
            return font.createFont(u"No Such Family", 0, false, nullptr, false);
        });
        EXPECT_EQ(lookup.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout)
            << "the registry is ours while we read";
        return std::make_unique<std::istringstream>(TestFont::latin().build().str());
    });
    EXPECT_EQ(append("https://fonts.test/a.ttf", u"Family"), 0);
    EXPECT_FALSE(lookup.get()) << "it ends all the same";
    EXPECT_NE(find(u"Family"), nullptr);
}

TEST_F(ExtraFontThreads, DocumentsOfDifferentThreadsGoTogether) {
    constexpr int kThreads = 6;
    write("a.ttf", namedFont(u"Inside"));
    write("b.ttf", TestFont::vertical());
    std::atomic<int> found = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&, thread] {
                const bool latin = thread % 2 == 0;
                for (int round = 0; round < 10; ++round) {
                    FS_ExtraFontManager own;
                    KWError failure;
                    own.appendExtraFont(files().text(latin ? "a.ttf" : "b.ttf"), u"Family",
                                        100 * thread, 0, FS_FILETYPE_UNKNOWN, &failure);
                    EXPECT_FALSE(failure.isError());
                    const FS_ExtraFontManager copy(&own);
                    FS_FontInfo font;
                    if (font.createFont(u"Family", 900, true, copy.getExtraFonts(), false) &&
                        (font.getGlyphID('A', false) == TestFont::kA) == latin)
                        ++found;
                }
            });
        }
    }
    EXPECT_EQ(found, kThreads * 10);
}

TEST_F(ExtraFontThreads, ManyThreadsSearchOneDocument) {
    write("a.ttf", namedFont(u"Inside", 300));
    write("b.ttf", namedFont(u"Inside", 700));
    ASSERT_EQ(append("a.ttf", u"Family"), 0);
    ASSERT_EQ(append("b.ttf", u"Family"), 1);
    std::atomic<int> found = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, thread] {
                for (int weight = 100; weight <= 900; weight += 50) {
                    FS_FontInfo font; // the search fills gaps of the family
                    if (font.createFont(u"Family", weight, thread % 2 != 0, fonts.getExtraFonts(),
                                        false))
                        ++found;
                    const FS_ExtraFontManager copy(&fonts);
                    EXPECT_EQ(copy.getFontsCount(), 2);
                }
            });
        }
    }
    EXPECT_EQ(found, 4 * 17);
}

} // namespace
