#include "fonts/SfntFixture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <barrier>
#include <thread>
#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr int kThreads = 16;

TEST(TrueTypeInThreads, ManyThreadsLoadAFontOnceAndAllFindItWhole) {
    const TempDir dir;
    dir.write("v.ttf", TestFont::vertical().build());
    KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(dir.uri("v.ttf")));
    KWError scanError;
    std::istringstream stream(TestFont::vertical().build().str());
    ASSERT_TRUE(font->scanFont(scanError, stream));

    std::barrier start(kThreads);
    std::array<bool, kThreads> right{};
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                KWError error;
                start.arrive_and_wait();
                right[i] = font->loadFont(error, 0, nullptr) && !error.isError() &&
                           font->hasVerticalMetrics(0) &&
                           font->getGlyphID(0x300C, true, 0) == TestFont::kBracketVertical;
            });
        }
    }
    for (const bool one : right)
        EXPECT_TRUE(one);
}

TEST(TrueTypeInThreads, AFailedLoadIsToldToEveryThread) {
    const TempDir dir;
    KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(dir.uri("gone.ttf")));
    KWError scanError;
    std::istringstream stream(TestFont::latin().build().str());
    ASSERT_TRUE(font->scanFont(scanError, stream));

    std::barrier start(kThreads);
    std::array<bool, kThreads> loaded{};
    std::array<bool, kThreads> told{};
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                KWError error;
                start.arrive_and_wait();
                loaded[i] = font->loadFont(error, 0, nullptr);
                told[i] = error.isError();
            });
        }
    }
    EXPECT_EQ(std::count(loaded.begin(), loaded.end(), true), 0);
    EXPECT_EQ(std::count(told.begin(), told.end(), true), kThreads);
}

} // namespace
} // namespace KWFontService_NS
