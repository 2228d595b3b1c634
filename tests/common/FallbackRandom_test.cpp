#include "common/FallbackRandom.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>

TEST(FallbackRandom, TheNumbersOfManyCallsDiffer) {
    std::set<std::uint32_t> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(KWCommonNS::fallbackRandom());
    EXPECT_GE(seen.size(), 990U); // chance alone repeats one number in 8000 runs
}
