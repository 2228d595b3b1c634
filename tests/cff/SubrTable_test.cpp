#include "cff/SubrTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using testing::ElementsAre;
using testing::Pair;
using Table = SubrTable<int>;

std::vector<std::pair<int, int>> contentsOf(const Table& table) {
    std::vector<std::pair<int, int>> all;
    EXPECT_TRUE(table.visit([&all](int operand, int value) {
        all.emplace_back(operand, value);
        return true;
    }));
    return all;
}

TEST(SubrTable, HasWhatWasPutInForEachOperand) {
    Table table;
    for (const int operand : {-32768, -32767, -107, -1, 0, 63, 64, 1131, 32767}) {
        EXPECT_EQ(table.find(operand), nullptr);
        EXPECT_TRUE(table.insert(operand, operand * 2));
    }
    for (const int operand : {-32768, -32767, -107, -1, 0, 63, 64, 1131, 32767}) {
        ASSERT_NE(table.find(operand), nullptr);
        EXPECT_EQ(*table.find(operand), operand * 2);
    }
    for (const int operand : {-32766, -108, -106, 1, 62, 65, 32766})
        EXPECT_EQ(table.find(operand), nullptr);
    EXPECT_EQ(table.size(), 9u);
}

TEST(SubrTable, WhatIsPutInFirstStays) {
    Table table{{5, 1}};
    EXPECT_FALSE(table.insert(5, 2));
    EXPECT_EQ(*table.find(5), 1);
    EXPECT_EQ(table.size(), 1u);
}

TEST(SubrTable, HasNothingBeyond16Bits) {
    Table table{{0, 1}};
    for (const int operand : {-32769, 32768, 0x10000, -0x10000, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        EXPECT_FALSE(table.insert(operand, 1));
        EXPECT_EQ(table.find(operand), nullptr);
    }
    EXPECT_EQ(table.size(), 1u);
}

TEST(SubrTable, OperandsAreVisitedInTheirOrder) {
    EXPECT_THAT(contentsOf({{1000, 1}, {-1, 2}, {0, 3}, {-32768, 4}, {63, 5}}),
                ElementsAre(Pair(-32768, 4), Pair(-1, 2), Pair(0, 3), Pair(63, 5), Pair(1000, 1)));
    EXPECT_THAT(contentsOf({}), ElementsAre());
}

TEST(SubrTable, AVisitEndsWhereItIsToldTo) {
    int visits = 0;
    EXPECT_FALSE((Table{{1, 1}, {2, 2}, {200, 3}}.visit([&visits](int operand, int) {
        ++visits;
        return operand < 2;
    })));
    EXPECT_EQ(visits, 2);
}

TEST(SubrTable, TablesWithTheSameContentsAreEqual) {
    EXPECT_EQ((Table{{1, 1}, {500, 2}}), (Table{{500, 2}, {1, 1}}));
    EXPECT_FALSE((Table{{1, 1}} == Table{{1, 2}}));
    EXPECT_FALSE((Table{{1, 1}} == Table{{2, 1}}));
    EXPECT_FALSE((Table{{1, 1}} == Table{{1, 1}, {2, 1}}));
    EXPECT_FALSE((Table{{1, 1}, {2, 1}} == Table{{1, 1}}));
}

} // namespace
} // namespace KWFontService_NS
