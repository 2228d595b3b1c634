#include "type1/KeyedList.h"

#include <gtest/gtest.h>

#include <compare>
#include <cstddef>
#include <string_view>

namespace KWFontService_NS {
namespace {

TEST(KeyedList, TheFirstOfEqualKeysStays) {
    KeyedList<std::string_view, int> list;
    list.add("b", 1);
    list.add("a", 2);
    list.add("b", 3);
    list.add("a", 4);
    list.sort();
    EXPECT_EQ(list.find("a", 0), 2);
    EXPECT_EQ(list.find("b", 0), 1);
    EXPECT_EQ(list.find("c", 9), 9);
}

TEST(KeyedList, WhatIsAddedAfterASortIsFoundAfterTheNext) {
    KeyedList<int, int> list;
    list.add(2, 20);
    list.sort();
    list.add(1, 10);
    list.add(2, 21);
    list.sort();
    EXPECT_EQ(list.find(1, 0), 10);
    EXPECT_EQ(list.find(2, 0), 20);
}

/// A number that counts how often it is compared.
struct Counted {
    static inline std::size_t comparisons = 0;
    int value = 0;

    friend std::strong_ordering operator<=>(Counted a, Counted b) {
        ++comparisons;
        return a.value <=> b.value;
    }
    friend bool operator==(Counted a, Counted b) {
        ++comparisons;
        return a.value == b.value;
    }
};

// Multiples of the number of buckets that a hash table would have.
TEST(KeyedList, KeysThatSomebodyHasChosenTakeNoLonger) {
    constexpr int kKeys = 30000;
    KeyedList<Counted, int> list;
    for (int i = 0; i < kKeys; ++i)
        list.add({i * 67307}, i);
    list.sort();
    for (int i = 0; i < kKeys; ++i)
        EXPECT_EQ(list.find({i * 67307}, -1), i);
    EXPECT_LT(Counted::comparisons, std::size_t{kKeys} * 64);
}

} // namespace
} // namespace KWFontService_NS
