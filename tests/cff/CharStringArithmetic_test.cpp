#include "cff/CharStringArithmetic.h"

#include "cff/CharStringFixture.h"
#include "common/KWLimits.h"

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Word = FS_Word;

std::string applied(Word op, CharStringTokens tokens, std::size_t first = 0) {
    CharStringArithmetic arithmetic;
    CharStringBudget budget(1000);
    arithmetic.apply(op, tokens, first, budget);
    return textOf(tokens);
}

TEST(CharStringArithmetic, OperatorsOfOneResult) {
    EXPECT_EQ(applied(Word::and_, {7, 3, -2}), "7 1");
    EXPECT_EQ(applied(Word::and_, {3, 0}), "0");
    EXPECT_EQ(applied(Word::or_, {0, 2}), "1");
    EXPECT_EQ(applied(Word::or_, {0, 0}), "0");
    EXPECT_EQ(applied(Word::not_, {0}), "1");
    EXPECT_EQ(applied(Word::not_, {0.5}), "0");
    EXPECT_EQ(applied(Word::abs, {-3}), "3");
    EXPECT_EQ(applied(Word::add, {7, 3, -2}), "7 1");
    EXPECT_EQ(applied(Word::sub, {3, -2}), "5");
    EXPECT_EQ(applied(Word::mul, {3, 0.5}), "1.5");
    EXPECT_EQ(applied(Word::div, {3, 2}), "1.5");
    EXPECT_EQ(applied(Word::div, {8, 2}), "4");
    EXPECT_EQ(applied(Word::neg, {1.5}), "-1.5");
    EXPECT_EQ(applied(Word::sqrt, {16}), "4");
    EXPECT_EQ(applied(Word::eq, {2, 2.0}), "1");
    EXPECT_EQ(applied(Word::eq, {2, 3}), "0");
    EXPECT_EQ(applied(Word::ifelse, {7, 8, 2, 2}), "7");
    EXPECT_EQ(applied(Word::ifelse, {7, 8, 3, 2}), "8");
}

TEST(CharStringArithmetic, OperatorsThatMoveOperands) {
    EXPECT_EQ(applied(Word::drop, {1, 2}), "1");
    EXPECT_EQ(applied(Word::dup, {1, 2}), "1 2 2");
    EXPECT_EQ(applied(Word::exch, {1, 2}), "2 1");
    EXPECT_EQ(applied(Word::index, {5, 6, 7, 0}), "5 6 7 7");
    EXPECT_EQ(applied(Word::index, {5, 6, 7, 2}), "5 6 7 5");
    EXPECT_EQ(applied(Word::index, {5, 6, 7, -1}), "5 6 7 7");
    EXPECT_EQ(applied(Word::roll, {9, 1, 2, 3, 3, 1}), "9 3 1 2");
    EXPECT_EQ(applied(Word::roll, {9, 1, 2, 3, 3, -1}), "9 2 3 1");
    EXPECT_EQ(applied(Word::roll, {9, 1, 2, 3, 3, 4}), "9 3 1 2");
    EXPECT_EQ(applied(Word::roll, {1, 2, 0, 5}), "1 2");
}

TEST(CharStringArithmetic, WhatWasPutIsGot) {
    CharStringArithmetic arithmetic;
    CharStringBudget budget(1000);
    CharStringTokens tokens{4, 2.5, 31};
    arithmetic.apply(Word::put, tokens, 0, budget);
    EXPECT_EQ(textOf(tokens), "4");
    for (const int place : {31, 30, 32, -1}) {
        tokens = {place};
        arithmetic.apply(Word::get, tokens, 0, budget);
        EXPECT_EQ(textOf(tokens), place == 31 ? "2.5" : "0") << place;
    }
    tokens = {1, 1000};
    arithmetic.apply(Word::put, tokens, 0, budget);
    EXPECT_EQ(textOf(tokens), "");
}

TEST(CharStringArithmetic, OperandsThatAreNotThereMakeItDoNothing) {
    EXPECT_EQ(applied(Word::add, {1}), "1");
    EXPECT_EQ(applied(Word::add, {1, 2}, 1), "1 2");
    EXPECT_EQ(applied(Word::ifelse, {1, 2, 3}), "1 2 3");
    EXPECT_EQ(applied(Word::drop, {}), "");
    EXPECT_EQ(applied(Word::dup, {5}, 1), "5");
    EXPECT_EQ(applied(Word::index, {5, 6, 2}), "5 6");
    EXPECT_EQ(applied(Word::index, {5, 6, 1}, 1), "5 6");
    EXPECT_EQ(applied(Word::roll, {5, 6, 3, 1}), "5 6");
    EXPECT_EQ(applied(Word::roll, {5, 6, 0x7FFFFFFF, -0x7FFFFFFF}), "5 6");
    EXPECT_EQ(applied(Word::div, {5, 0}), "5 0");
    EXPECT_EQ(applied(Word::sqrt, {-4}), "0");
}

// A few bytes for each roll would otherwise move a stack of megabytes.
TEST(CharStringArithmetic, NoMoreThanAStackHoldsIsRolled) {
    constexpr int kMost = KWCommonNS::kMaxCharStringOperands;
    for (const int count : {kMost, kMost + 1}) {
        CharStringTokens tokens(static_cast<std::size_t>(kMost), KWValue(0));
        tokens.insert(tokens.end(), {7, count, 1});
        CharStringBudget budget(1000);
        CharStringArithmetic().apply(Word::roll, tokens, 0, budget);
        ASSERT_EQ(tokens.size(), kMost + 1U);
        EXPECT_EQ(tokens.back(), KWValue(count > kMost ? 7 : 0)) << count;
    }
}

TEST(CharStringArithmetic, ARollIsPaidForByWhatItTurns) {
    CharStringArithmetic arithmetic;
    CharStringBudget budget(5);
    CharStringTokens tokens{1, 2, 3, 3, 1};
    arithmetic.apply(Word::roll, tokens, 0, budget);
    EXPECT_EQ(textOf(tokens), "3 1 2");
    EXPECT_EQ(budget.left(), 2U);
    tokens.insert(tokens.end(), {3, 1});
    arithmetic.apply(Word::roll, tokens, 0, budget);
    EXPECT_EQ(textOf(tokens), "3 1 2");
    EXPECT_TRUE(budget.isSpent());
}

TEST(CharStringArithmetic, ResultsBeyondIntegersAreReals) {
    CharStringTokens tokens{0x7FFFFFFF, 0x7FFFFFFF};
    CharStringArithmetic arithmetic;
    CharStringBudget budget(1000);
    arithmetic.apply(Word::mul, tokens, 0, budget);
    EXPECT_TRUE(tokens.back().isReal());
    EXPECT_GT(tokens.back().getRealValue(), 4e18);
}

TEST(CharStringArithmetic, RandomIsNotArithmetic) {
    EXPECT_FALSE(CharStringArithmetic::has(Word::random));
    EXPECT_FALSE(CharStringArithmetic::has(Word::hflex));
    EXPECT_TRUE(CharStringArithmetic::has(Word::roll));
    EXPECT_EQ(applied(Word::random, {1}), "1");
}

} // namespace
} // namespace KWFontService_NS
