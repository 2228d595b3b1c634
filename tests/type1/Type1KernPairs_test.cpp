#include "type1/Type1KernPairs.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

TEST(Type1KernPairs, APairHasAnOrder) {
    Type1KernPairs pairs;
    EXPECT_TRUE(pairs.empty());
    pairs.add('A', 'V', -70);
    EXPECT_EQ(pairs.find('A', 'V'), -70);
    EXPECT_EQ(pairs.find('V', 'A'), 0);
    EXPECT_FALSE(pairs.empty());
}

TEST(Type1KernPairs, OfEqualPairsTheFirstStays) {
    Type1KernPairs pairs;
    pairs.add(1, 2, 3);
    pairs.add(1, 2, 4);
    EXPECT_EQ(pairs.find(1, 2), 3);
    EXPECT_EQ(pairs.size(), 1U);
}

TEST(Type1KernPairs, CharactersHaveSixteenBits) {
    Type1KernPairs pairs;
    pairs.add(0xFFFF, 0xFFFF, 5);
    EXPECT_EQ(pairs.find(0xFFFF, 0xFFFF), 5);
    pairs.add(-1, 0, 1);
    pairs.add(0, 0x10000, 1);
    EXPECT_EQ(pairs.size(), 1U);
    EXPECT_EQ(pairs.find(-1, -1), 0);
    EXPECT_EQ(pairs.find(0x1FFFF, 0xFFFF), 0);
}

} // namespace
} // namespace KWFontService_NS
