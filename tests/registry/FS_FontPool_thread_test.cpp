#include "registry/FS_ServiceLock.h"
#include "registry/FakeFont.h"

#include <gtest/gtest.h>

#include <barrier>
#include <set>
#include <thread>
#include <vector>

namespace {

using namespace KWFontService_NS;
using KWTest::FakeFont;

/// Notes whether another thread could take the registry's lock while the font gets its name.
class LockWatchingFont : public FakeFont {
public:
    bool lockWasHeld = false;

    void setPostScriptName(const UnicodeString& name, int faceIndex) override {
        std::jthread([this] {
            lockWasHeld = !g_fontServiceLock.tryLock();
            if (!lockWasHeld)
                g_fontServiceLock.unlock();
        }).join();
        FakeFont::setPostScriptName(name, faceIndex);
    }
};

TEST(RegisterNamedFontInThreads, HoldsTheLockUntilTheNameIsTaken) {
    FS_FontPool pool;
    const KWPtr<LockWatchingFont> font(new LockWatchingFont);
    pool.registerNamedFont(*font, UnicodeString());
    EXPECT_TRUE(font->lockWasHeld);
}

TEST(RegisterNamedFontInThreads, GivesEveryFontANameOfItsOwn) {
    constexpr int kThreads = 16;
    FS_FontPool pool;
    std::vector<KWPtr<FakeFont>> fonts;
    for (int i = 0; i < kThreads; ++i)
        fonts.emplace_back(new FakeFont);
    std::barrier start(kThreads);
    {
        std::vector<std::jthread> threads;
        for (const auto& font : fonts) {
            threads.emplace_back([&pool, &start, &font] {
                start.arrive_and_wait();
                pool.registerNamedFont(*font, UnicodeString());
            });
        }
    }
    std::set<UnicodeString> names;
    for (const auto& font : fonts)
        names.insert(font->postScript);
    EXPECT_EQ(names.size(), fonts.size());
    EXPECT_EQ(pool.byName.size(), fonts.size());
}

} // namespace
