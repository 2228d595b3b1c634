#include "fonts/FS_ServiceContext.h"
#include "registry/FS_FontService.h"
#include "registry/FakeFont.h"
#include "service/FS_Startup.h"

#include <KWFontService17/FS_Functions.h>

#include <gtest/gtest.h>

#include <array>
#include <barrier>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

using namespace KWFontService_NS;
using KWTest::FakeFont;
using Kind = FS_StartupStep::Kind;

constexpr int kThreads = 64;

// Plain numbers on purpose: the thread sanitizer sees it when start-up does not order them.
int g_runs = 0;
bool g_over = false;

void slowStep(FS_FontService& service, const FS_OpenArguments&) {
    ++g_runs;
    for (int i = 0; i < 1000; ++i) {
        std::this_thread::yield();
        service.addEudcRange(0xE000 + i, 0xE000 + i);
    }
    g_over = true;
}

constexpr FS_StartupStep kSlow[] = {{Kind::configuration, slowStep}};

/// True when every thread found the one object, with its start-up over.
bool openFromManyThreads() {
    const FS_StartupOverride replaced(kSlow);
    std::barrier start(kThreads);
    std::array<FS_FontService*, kThreads> found{};
    std::array<bool, kThreads> over{};
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                start.arrive_and_wait();
                found[i] = getFontService(nullptr, nullptr, nullptr);
                over[i] = g_over && FS_ServiceContext::isEudcCodePoint(0xE000 + 999);
            });
        }
    }
    bool right = g_runs == 1 && found[0] != nullptr;
    for (std::size_t i = 0; i < kThreads; ++i)
        right = right && found[i] == found[0] && over[i];
    return right;
}

TEST(FontServiceInThreadsDeathTest, SixtyFourThreadsOpenOnceAndAllFindTheFinishedObject) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(openFromManyThreads() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(FontServiceInThreads, AFinishedServiceIsFoundWithoutTheLock) {
    FontServiceOpen(nullptr, nullptr);
    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    bool eudc = false;
    // Would wait for ever if it took the lock.
    std::jthread([&eudc] { eudc = FS_ServiceContext::isEudcCodePoint(0xE000); }).join();
    EXPECT_TRUE(eudc);
}

TEST(FontServiceInThreads, FontsAreKeptFromManyThreadsAtOnce) {
    std::vector<KWPtr<FakeFont>> fonts;
    for (int i = 0; i < kThreads; ++i)
        fonts.emplace_back(new FakeFont);
    {
        std::vector<std::jthread> threads;
        for (const auto& font : fonts)
            threads.emplace_back([&font] { FS_ServiceContext::keepFont(*font); });
    }
    for (const auto& font : fonts)
        EXPECT_EQ(font->getRefCount(), 2);
}

} // namespace
