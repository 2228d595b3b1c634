#include "layout/LayoutBudget.h"

#include "layout/TTI_LayoutTable.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"

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

TEST(LayoutBudget, PackagedFontsTakeATenthOfItAtMost) {
    std::size_t tables = 0;
    for (const KWTest::PackagedFont& font : KWTest::packagedFonts()) {
        for (const bool gsub : {true, false}) {
            const KWTest::Bytes bytes =
                KWTest::fontTable(KWTest::packagedFont(font.name), gsub ? "GSUB" : "GPOS");
            if (bytes.empty())
                continue;
            ++tables;
            LayoutBudget budget(bytes.size());
            const std::size_t whole = budget.left();
            TTI_LayoutTable table;
            EXPECT_TRUE(table
                            .read(bytes.vector(),
                                  gsub ? TTI_LayoutTable::Kind::Gsub : TTI_LayoutTable::Kind::Gpos,
                                  budget)
                            .empty())
                << font.name;
            EXPECT_LE(whole - budget.left(), whole / 10) << font.name;
        }
    }
    EXPECT_GT(tables, 50U);
}

} // namespace
} // namespace KWFontService_NS
