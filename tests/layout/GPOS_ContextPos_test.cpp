// What the contexts of GPOS add to those they share with GSUB: their types.

#include "layout/GPOS_ChainContextPos.h"
#include "layout/GPOS_ContextPos.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const RuleSetBytes kRules = {{{.input = {3}, .records = {{0, 7}}}}};

TEST(ContextPos, HasTypeSevenInAllFormats) {
    const auto first = OneSubTable::gpos(7, contextFormat1({10}, kRules));
    ASSERT_NE(first.as<GPOS_ContextPosFormat1>(), nullptr);
    EXPECT_EQ(first.get()->lookupType(), 7);
    EXPECT_FALSE(first.get()->mayApply(10)) << "format 1 never matches";
    const auto second = OneSubTable::gpos(7, contextFormat2({10}, classDefFormat2({}), kRules));
    ASSERT_NE(second.as<GPOS_ContextPosFormat2>(), nullptr);
    EXPECT_EQ(second.get()->lookupType(), 7);
    EXPECT_EQ(second.as<GPOS_ContextPosFormat2>()->rulesFor(0, 3).size(), 1U);
    const auto third = OneSubTable::gpos(7, contextFormat3({{10}}, {}));
    ASSERT_NE(third.as<GPOS_ContextPosFormat3>(), nullptr);
    EXPECT_EQ(third.get()->lookupType(), 7);
    EXPECT_FALSE(third.get()->mayApply(10)) << "format 3 never matches";
}

TEST(ChainContextPos, HasTypeEightInAllFormats) {
    const auto first = OneSubTable::gpos(8, chainContextFormat1({10}, kRules));
    ASSERT_NE(first.as<GPOS_ChainContextPosFormat1>(), nullptr);
    EXPECT_EQ(first.get()->lookupType(), 8);
    EXPECT_FALSE(first.get()->mayApply(10)) << "format 1 never matches";
    const auto second = OneSubTable::gpos(
        8, chainContextFormat2({10}, {}, classDefFormat2({{10, 10, 0}}), {}, kRules));
    ASSERT_NE(second.as<GPOS_ChainContextPosFormat2>(), nullptr);
    EXPECT_EQ(second.get()->lookupType(), 8);
    const auto third = OneSubTable::gpos(8, chainContextFormat3({}, {{10}}, {}, {}));
    ASSERT_NE(third.as<GPOS_ChainContextPosFormat3>(), nullptr);
    EXPECT_EQ(third.get()->lookupType(), 8);
    EXPECT_TRUE(third.get()->mayApply(10));
}

TEST(ContextPos, AnExtensionSubtableReportsTheTypeOfWhatItWraps) {
    const auto one = OneSubTable::gpos(9, extension(8, chainContextFormat3({}, {{10}}, {}, {})));
    EXPECT_EQ(one.lookup().type, 9U) << "the lookup stays an extension";
    ASSERT_NE(one.get(), nullptr);
    EXPECT_EQ(one.get()->lookupType(), 8);
    EXPECT_TRUE(one.lookup().mayApply(10));
    EXPECT_FALSE(one.lookup().mayApply(11));
}

} // namespace
} // namespace KWFontService_NS
