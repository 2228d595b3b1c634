#include "layout/TTI_ChainContext.h"

#include "layout/GSUB_ChainContextSubst.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const RuleSetBytes kRules = {
    {{.backtrack = {1, 2}, .input = {3}, .lookahead = {4, 5, 6}, .records = {{0, 7}, {1, 8}}}},
    {},
    {{.records = {{0, 9}}}, {.lookahead = {4}}}};

TEST(ChainContextSubst, Format1IsKeptAndDeliberatelyNeverMatches) {
    const auto one = OneSubTable::gsub(6, chainContextFormat1({10, 20, 30}, kRules));
    const auto* table = one.as<GSUB_ChainContextSubstFormat1>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 6);
    EXPECT_FALSE(table->mayApply(10)) << "so that no engine asks further";
    const TTI_ChainContextRuleSets sets = table->ruleSets();
    ASSERT_EQ(sets.size(), 3U);
    ASSERT_EQ(sets[0].size(), 1U);
    const auto rule = sets[0][0];
    ASSERT_TRUE(rule);
    EXPECT_EQ(values(rule->backtrack), (std::vector<std::uint16_t>{1, 2}));
    EXPECT_EQ(values(rule->input), (std::vector<std::uint16_t>{3}));
    EXPECT_EQ(values(rule->lookahead), (std::vector<std::uint16_t>{4, 5, 6}));
    EXPECT_EQ(pairs(rule->records), (Records{{0, 7}, {1, 8}}));
    EXPECT_EQ(sets[1].size(), 0U);
    EXPECT_EQ(sets[2].size(), 2U);
}

TEST(ChainContextSubst, Format2HasClassesOfItsOwnForEachPart) {
    const auto one =
        OneSubTable::gsub(6, chainContextFormat2({10, 11}, classDefFormat2({{10, 10, 1}}),
                                                 classDefFormat2({{10, 10, 2}}),
                                                 classDefFormat2({{10, 10, 3}}), kRules));
    const auto* table = one.as<GSUB_ChainContextSubstFormat2>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 6);
    EXPECT_TRUE(table->mayApply(11));
    EXPECT_FALSE(table->mayApply(12));
    EXPECT_EQ(table->backtrackClassOf(10), 1);
    EXPECT_EQ(table->inputClassOf(10), 2);
    EXPECT_EQ(table->lookaheadClassOf(10), 3);
    EXPECT_EQ(table->inputClassOf(11), -1);
    ASSERT_EQ(table->ruleSets().size(), 3U);
    ASSERT_EQ(table->ruleSets()[2].size(), 2U);
    EXPECT_EQ(pairs(table->ruleSets()[2][0]->records), (Records{{0, 9}}));
    EXPECT_EQ(values(table->ruleSets()[2][1]->lookahead), (std::vector<std::uint16_t>{4}));
}

TEST(ChainContextSubst, Format3HasCoveragesInTheOrderOfTheFile) {
    const auto one = OneSubTable::gsub(
        6, chainContextFormat3({{1}, {2}}, {{10, 11}, {12}}, {{20}}, {{0, 3}, {1, 4}}));
    const auto* table = one.as<GSUB_ChainContextSubstFormat3>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->lookupType(), 6);
    EXPECT_TRUE(table->mayApply(11));
    EXPECT_FALSE(table->mayApply(12)) << "only the first input glyph starts a match";
    const auto rule = table->rule();
    ASSERT_EQ(rule.backtrack.size(), 2U);
    EXPECT_TRUE(rule.backtrack.covers(0, 1));
    EXPECT_TRUE(rule.backtrack.covers(1, 2));
    ASSERT_EQ(rule.input.size(), 2U);
    EXPECT_TRUE(rule.input.covers(1, 12));
    ASSERT_EQ(rule.lookahead.size(), 1U);
    EXPECT_TRUE(rule.lookahead.covers(0, 20));
    EXPECT_EQ(pairs(rule.records), (Records{{0, 3}, {1, 4}}));
}

TEST(ChainContextSubst, Format3WithoutInputMayApplyAnywhere) {
    const auto one = OneSubTable::gsub(6, chainContextFormat3({}, {}, {{20}}, {{0, 3}}));
    ASSERT_NE(one.get(), nullptr);
    EXPECT_TRUE(one.get()->mayApply(0));
    EXPECT_TRUE(one.get()->mayApply(0xFFFF));
}

TEST(ChainContextSubst, Format3CutOffOrWithABadFirstCoverageIsNoSubtable) {
    EXPECT_EQ(OneSubTable::gsub(6, Bytes().u16s({3, 0, 1, 0xFFF0, 0, 0})).get(), nullptr);
    EXPECT_EQ(OneSubTable::gsub(6, Bytes().u16s({3, 0, 0, 0, 1, 0})).get(), nullptr)
        << "half a record";
    EXPECT_NE(OneSubTable::gsub(6, Bytes().u16s({3, 0, 0, 0, 1, 0, 0})).get(), nullptr);
}

TEST(ChainContextSubst, ALaterCoverageThatIsBadCoversNothing) {
    Bytes bytes = chainContextFormat3({{1}}, {{10}}, {}, {});
    bytes.patchU16At(4, 0xFFF0); // the backtrack coverage
    const auto one = OneSubTable::gsub(6, bytes);
    const auto* table = one.as<GSUB_ChainContextSubstFormat3>();
    ASSERT_NE(table, nullptr);
    for (int gid = 0; gid < 20; ++gid)
        EXPECT_FALSE(table->rule().backtrack.covers(0, static_cast<unsigned short>(gid)));
}

TEST(ChainContextSubst, ABadRuleIsNone) {
    for (const Bytes& rule : {Bytes().u16s({0, 0, 0, 0}),       // counts no input
                              Bytes().u16s({0xFFFF, 1, 0, 0}),  // backtrack outside
                              Bytes().u16s({0, 0xFFFF, 0, 0}),  // input outside
                              Bytes().u16s({0, 1, 0xFFFF, 0}),  // lookahead outside
                              Bytes().u16s({0, 1, 0, 1, 0})}) { // half a record
        const auto one = OneSubTable::gsub(6, OffsetTable()
                                                  .u16(1)
                                                  .offset(coverageTable({10}))
                                                  .counted({OffsetTable().counted({rule}).build()})
                                                  .build());
        const auto* table = one.as<GSUB_ChainContextSubstFormat1>();
        ASSERT_NE(table, nullptr);
        ASSERT_EQ(table->ruleSets()[0].size(), 1U);
        EXPECT_FALSE(table->ruleSets()[0][0]) << rule.hex();
    }
}

} // namespace
} // namespace KWFontService_NS
