#include "support/Rng.h"

#include <gtest/gtest.h>

namespace KWTest {
namespace {

TEST(Rng, TheSameSeedGivesTheSameNumbersEverywhere) {
    Rng rng(0);
    EXPECT_EQ(rng.next(), 0xE220A8397B1DCDAFu); // the published first value of splitmix64
    EXPECT_EQ(Rng(7).next(), Rng(7).next());
    EXPECT_NE(Rng(7).next(), Rng(8).next());
}

TEST(Rng, BelowReachesEveryNumberAndNoOther) {
    Rng rng(1);
    bool met[5] = {};
    for (int i = 0; i < 1000; ++i) {
        const std::uint32_t number = rng.below(5);
        ASSERT_LT(number, 5u);
        met[number] = true;
    }
    for (const bool one : met)
        EXPECT_TRUE(one);
}

} // namespace
} // namespace KWTest
