#include "layout/GlyphMemo.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <thread>

namespace KWFontService_NS {
namespace {

/// Counts the searches that a memo has made.
struct Searches {
    int operator()() {
        ++count;
        return 40 + count;
    }
    int count = 0;
};

TEST(GlyphMemo, SearchesOnceForAGlyphOfAPlace) {
    const std::array<std::uint8_t, 2> places{};
    GlyphMemo memo(GlyphMemo::newTableNumber());
    Searches searches;
    const auto ask = [&](std::size_t place, unsigned short gid) {
        return memo.answer(&places[place], gid, [&] { return searches(); });
    };
    EXPECT_EQ(ask(0, 7), 41);
    EXPECT_EQ(ask(0, 7), 41);
    EXPECT_EQ(ask(0, 8), 42);
    EXPECT_EQ(ask(1, 7), 43);
    EXPECT_EQ(ask(0, 7), 41);
}

TEST(GlyphMemo, ATableOfAnotherNumberHasAnswersOfItsOwn) {
    const std::uint8_t place = 0;
    GlyphMemo gone(GlyphMemo::newTableNumber());
    GlyphMemo atItsPlace(GlyphMemo::newTableNumber());
    EXPECT_EQ(gone.answer(&place, 7, [] { return 1; }), 1);
    EXPECT_EQ(atItsPlace.answer(&place, 7, [] { return 2; }), 2);
    EXPECT_EQ(gone.answer(&place, 7, [] { return 3; }), 3) << "driven out";
}

TEST(GlyphMemo, ManyAnswersDriveEachOtherOutAndNoneIsMixedUp) {
    const std::array<std::uint8_t, 64> places{};
    GlyphMemo memo(GlyphMemo::newTableNumber());
    for (int round = 0; round < 2; ++round) {
        for (std::size_t place = 0; place < places.size(); ++place) {
            for (int gid = 0; gid < 500; ++gid) {
                const int wanted = static_cast<int>(place) * 1000 + gid;
                ASSERT_EQ(memo.answer(&places[place], static_cast<unsigned short>(gid),
                                      [&] { return wanted; }),
                          wanted);
            }
        }
    }
}

TEST(GlyphMemo, WithoutATableNothingIsRemembered) {
    const std::uint8_t place = 0;
    GlyphMemo memo;
    EXPECT_FALSE(memo.remembers());
    EXPECT_EQ(memo.answer(&place, 7, [] { return 1; }), 1);
    EXPECT_EQ(memo.answer(&place, 7, [] { return 2; }), 2);
}

TEST(GlyphMemo, ThreadsRememberApart) {
    const std::uint8_t place = 0;
    const std::uint32_t number = GlyphMemo::newTableNumber();
    EXPECT_EQ(GlyphMemo(number).answer(&place, 7, [] { return 1; }), 1);
    int elsewhere = 0;
    std::thread([&] { elsewhere = GlyphMemo(number).answer(&place, 7, [] { return 2; }); }).join();
    EXPECT_EQ(elsewhere, 2);
    EXPECT_EQ(GlyphMemo(number).answer(&place, 7, [] { return 3; }), 1);
}

} // namespace
} // namespace KWFontService_NS
