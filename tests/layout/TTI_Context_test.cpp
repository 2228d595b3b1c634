#include "layout/TTI_Context.h"

#include "layout/GPOS_ContextPos.h"
#include "layout/GSUB_ContextSubst.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const RuleSetBytes kRules = {
    {{.input = {11, 12}, .records = {{0, 7}, {2, 8}}}, {.records = {{0, 9}}}},
    {},
    {{.input = {13}}}};

TEST(ContextSubst, Format1IsKeptAndDeliberatelyNeverMatches) {
    const auto one = OneSubTable::gsub(5, contextFormat1({10, 20, 30}, kRules));
    const auto* table = one.as<GSUB_ContextSubstFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 5);
    for (const unsigned short gid : std::initializer_list<unsigned short>{10, 20, 30})
        EXPECT_FALSE(table->mayApply(gid)) << "so that no engine asks further";
    const TTI_ContextRuleSets sets = table->ruleSets();
    ASSERT_EQ(sets.size(), 3U);
    ASSERT_EQ(sets[0].size(), 2U);
    EXPECT_EQ(values(sets[0][0]->input), (std::vector<std::uint16_t>{11, 12}));
    EXPECT_EQ(pairs(sets[0][0]->records), (Records{{0, 7}, {2, 8}}));
    EXPECT_TRUE(sets[0][1]->input.empty());
    EXPECT_EQ(sets[1].size(), 0U);
    EXPECT_EQ(sets[2][0]->records.size(), 0U);
    EXPECT_EQ(sets[3].size(), 0U) << "past the last";
    EXPECT_EQ(sets[-1].size(), 0U);
}

TEST(ContextSubst, Format3IsKeptAndDeliberatelyNeverMatches) {
    const auto one = OneSubTable::gsub(5, contextFormat3({{10, 11}, {12}}, {{1, 4}}));
    const auto* table = one.as<GSUB_ContextSubstFormat3>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 5);
    EXPECT_FALSE(table->mayApply(10));
    ASSERT_EQ(table->input().size(), 2U);
    EXPECT_TRUE(table->input().covers(0, 11));
    EXPECT_FALSE(table->input().covers(1, 11));
    EXPECT_TRUE(table->input().covers(1, 12));
    EXPECT_EQ(pairs(table->records()), (Records{{1, 4}}));
}

TEST(ContextSubst, Format2HasClassesAndRulesByClass) {
    const auto one = OneSubTable::gsub(
        5, contextFormat2({10, 11}, classDefFormat2({{10, 10, 0}, {11, 13, 2}}), kRules));
    const auto* table = one.as<GSUB_ContextSubstFormat2>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 5);
    EXPECT_TRUE(table->mayApply(10));
    EXPECT_FALSE(table->mayApply(13)) << "it has a class and is not covered";
    EXPECT_EQ(table->classOf(10), 0);
    EXPECT_EQ(table->classOf(13), 2);
    EXPECT_EQ(table->classOf(14), -1);
    EXPECT_EQ(table->ruleSets().size(), 3U);
    EXPECT_EQ(values(table->ruleSets()[2][0]->input), (std::vector<std::uint16_t>{13}));
}

TEST(ContextSubst, Format2FindsRulesByTheirFirstTwoClassesInRuleOrder) {
    const RuleSetBytes rules = {
        {{.input = {3, 1}}, {.input = {2}}, {.input = {3, 2}}, {.input = {3}}}, {{.input = {3}}}};
    const auto one =
        OneSubTable::gsub(5, contextFormat2({10}, classDefFormat2({{10, 10, 0}}), rules));
    const auto* table = one.as<GSUB_ContextSubstFormat2>();
    const auto numbers = [&](int firstClass, int nextClass) {
        std::vector<int> found;
        for (const auto& rule : table->rulesFor(firstClass, nextClass))
            found.push_back(rule.rule);
        return found;
    };
    EXPECT_EQ(numbers(0, 3), (std::vector<int>{0, 2, 3}));
    EXPECT_EQ(numbers(0, 2), (std::vector<int>{1}));
    EXPECT_EQ(numbers(1, 3), (std::vector<int>{0}));
    EXPECT_EQ(numbers(1, 2), (std::vector<int>()));
    EXPECT_EQ(numbers(-1, 3), (std::vector<int>()));
    EXPECT_EQ(numbers(0, -1), (std::vector<int>()));
}

// It can never match, since the search for rules asks for a second class.
TEST(ContextSubst, ARuleOfOneInputGlyphIsUnderNoClass) {
    const auto one = OneSubTable::gsub(
        5, contextFormat2({10}, classDefFormat2({{10, 10, 0}}), {{{.records = {{0, 1}}}}}));
    const auto* table = one.as<GSUB_ContextSubstFormat2>();
    EXPECT_EQ(table->ruleSets()[0].size(), 1U);
    for (int next = -1; next < 3; ++next)
        EXPECT_TRUE(table->rulesFor(0, next).empty());
}

TEST(ContextSubst, ABadRuleIsNone) {
    const Bytes set = OffsetTable()
                          .counted({Bytes().u16s({0, 0}),              // counts no input
                                    RuleBytes{.input = {3}}.context(), // sound
                                    Bytes(),                           // offset 0
                                    Bytes().u16s({2, 9, 3})})          // records outside
                          .build();
    const auto one = OneSubTable::gsub(5, OffsetTable()
                                              .u16(2)
                                              .offset(coverageTable({10}))
                                              .offset(classDefFormat2({{10, 10, 0}}))
                                              .counted({set})
                                              .build());
    const auto* table = one.as<GSUB_ContextSubstFormat2>();
    const TTI_ContextRuleSet rules = table->ruleSets()[0];
    ASSERT_EQ(rules.size(), 4U);
    EXPECT_FALSE(rules[0]);
    EXPECT_TRUE(rules[1]);
    EXPECT_FALSE(rules[2]);
    EXPECT_FALSE(rules[3]);
    ASSERT_EQ(table->rulesFor(0, 3).size(), 1U);
    EXPECT_EQ(table->rulesFor(0, 3)[0].rule, 1);
}

TEST(ContextSubst, WithoutAClassDefinitionNoGlyphHasAClass) {
    const auto one = OneSubTable::gsub(5, contextFormat2({10}, Bytes(), kRules));
    EXPECT_EQ(one.as<GSUB_ContextSubstFormat2>()->classOf(10), -1);
    const auto format1 =
        OneSubTable::gsub(5, contextFormat2({10}, classDefFormat1(10, {1}), kRules));
    EXPECT_EQ(format1.as<GSUB_ContextSubstFormat2>()->classOf(10), -1)
        << "class definitions of format 1 match nothing";
}

TEST(ContextSubst, ATableCutOffIsNoSubtable) {
    const Bytes coverage = coverageTable({10});
    for (const int format : {1, 2})
        EXPECT_EQ(OneSubTable::gsub(5, Bytes().u16(format).u16(0xFFFF).u16(0).u16(0)).get(),
                  nullptr);
    EXPECT_EQ(OneSubTable::gsub(5, Bytes().u16(3).u16(2).u16(0).u16(6)).get(), nullptr);
}

} // namespace
} // namespace KWFontService_NS
