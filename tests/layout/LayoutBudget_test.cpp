#include "layout/LayoutBudget.h"

#include <gtest/gtest.h>

#include <limits>

namespace KWFontService_NS {
namespace {

TEST(LayoutBudget, CoversItsFreeBytesAndAFewReadsOfEachByte) {
    LayoutBudget budget(100);
    EXPECT_TRUE(budget.spend(KWCommonNS::kLayoutFreeBytes));
    EXPECT_TRUE(budget.spend(100 * KWCommonNS::kLayoutReadsOfEachByte));
    EXPECT_TRUE(budget.spend(0));
    EXPECT_FALSE(budget.spend(1));
    EXPECT_TRUE(budget.exhausted());
}

TEST(LayoutBudget, OnceExhaustedCoversNothing) {
    LayoutBudget budget(0);
    EXPECT_FALSE(budget.spend(KWCommonNS::kLayoutFreeBytes + 1));
    EXPECT_FALSE(budget.spend(1));
    EXPECT_FALSE(budget.spend(0));
}

TEST(LayoutBudget, ASizeThatWouldWrapIsNoSmallerBudget) {
    LayoutBudget budget(std::numeric_limits<std::size_t>::max());
    EXPECT_TRUE(budget.spend(std::numeric_limits<std::size_t>::max() / 2));
}

} // namespace
} // namespace KWFontService_NS
