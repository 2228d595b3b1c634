#include "layout/SubTableFilter.h"

#include "layout/GsubFixture.h"

#include "layout/LayoutCall.h"

#include "common/KWLimits.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A layout table with one lookup.
TTI_LayoutTable tableOf(int type, const std::vector<Bytes>& subtables) {
    TTI_LayoutTable table;
    table.read(LayoutBytes{.lookups = lookupList({lookupTable(type, subtables)})}.build().vector(),
               TTI_LayoutTable::Kind::Gsub);
    return table;
}

Bytes chain(const std::vector<std::string>& input, const std::vector<std::string>& lookahead = {}) {
    return chainContextFormat3({}, speltCoverages(input), speltCoverages(lookahead), {{0, 1}});
}

std::vector<std::size_t> admitted(const TTI_LayoutTable& table, char first, char next = 0) {
    const TTI_Lookup& lookup = *table.lookup(0);
    const TTI_Gdef gdef;
    LayoutCall call(gdef, 0, table.memo());
    SubTableFilter filter(lookup, call);
    filter.startAt(static_cast<unsigned short>(first));
    if (next != 0)
        filter.followWith(static_cast<unsigned short>(next));
    std::vector<std::size_t> indices;
    for (std::size_t i = filter.next(); i < lookup.subtables.size(); i = filter.next())
        indices.push_back(i);
    return indices;
}

using Indices = std::vector<std::size_t>;

TEST(SubTableFilter, AdmitsWhatBeginsWithTheGlyph) {
    const TTI_LayoutTable table = tableOf(kChain, {chain({"ac"}), chain({"b"}), chain({"ab"})});
    EXPECT_EQ(admitted(table, 'a'), (Indices{0, 2}));
    EXPECT_EQ(admitted(table, 'b'), (Indices{1, 2}));
    EXPECT_EQ(admitted(table, 'd'), Indices{});
    EXPECT_EQ(admitted(table, 'a'), (Indices{0, 2})) << "from memory";
}

TEST(SubTableFilter, AdmitsWhatMayGoOnWithTheNextGlyph) {
    const TTI_LayoutTable table = tableOf(kChain, {chain({"a", "x"}), chain({"a", "y"}, {"x"}),
                                                   chain({"a"}, {"x", "y"}), chain({"a"})});
    EXPECT_EQ(admitted(table, 'a', 'x'), (Indices{0, 2, 3}));
    EXPECT_EQ(admitted(table, 'a', 'y'), (Indices{1, 3}));
    EXPECT_EQ(admitted(table, 'b', 'x'), Indices{});
}

TEST(SubTableFilter, OfManySubtablesNeighboursShareAGroupAndNoneIsLost) {
    std::vector<Bytes> subtables;
    for (char letter = '0'; letter <= 'z'; ++letter)
        subtables.push_back(chain({std::string(1, letter)}));
    ASSERT_GT(subtables.size(), 64U);
    const TTI_LayoutTable table = tableOf(kChain, subtables);
    for (std::size_t i = 0; i < subtables.size(); ++i) {
        const Indices found = admitted(table, static_cast<char>('0' + i));
        EXPECT_LE(found.size(), 3U) << i;
        EXPECT_NE(std::ranges::find(found, i), found.end()) << i;
    }
}

TEST(SubTableFilter, BadSubtablesAreNeverAdmitted) {
    const TTI_LayoutTable table = tableOf(kChain, {chain({"a"}), Bytes().u16(9), chain({"a"})});
    EXPECT_EQ(admitted(table, 'a'), (Indices{0, 2}));
}

/// A call about a table that has so many steps left.
class CallWithSteps : public LayoutCall {
public:
    CallWithSteps(const TTI_LayoutTable& table, std::size_t left)
        : LayoutCall(gdef_, 0, table.memo()) {
        spend(KWCommonNS::kLayoutFreeSteps - left);
    }

private:
    TTI_Gdef gdef_;
};

TEST(SubTableFilter, PaysAStepForEachSubtableThatItAsks) {
    const TTI_LayoutTable table =
        tableOf(kChain, {chain({"a", "x"}), chain({"a", "y"}), chain({"a", "z"})});
    CallWithSteps call(table, 6);
    SubTableFilter filter(*table.lookup(0), call);
    filter.startAt('a');
    filter.followWith('y');
    EXPECT_FALSE(call.exhausted());
    EXPECT_EQ(filter.next(), 1U);
    EXPECT_FALSE(call.spend(1)) << "two questions to three subtables";
}

TEST(SubTableFilter, PaysForNothingThatIsRemembered) {
    const TTI_LayoutTable table = tableOf(kChain, {chain({"a"}), chain({"b"}), chain({"c"})});
    EXPECT_EQ(admitted(table, 'b', 'x'), Indices{1});
    CallWithSteps call(table, 0);
    SubTableFilter filter(*table.lookup(0), call);
    filter.startAt('b');
    filter.followWith('x');
    EXPECT_FALSE(call.exhausted());
    EXPECT_EQ(filter.next(), 1U);
}

TEST(SubTableFilter, PaysForNoSecondQuestionWhereTheFirstLeavesNothing) {
    const TTI_LayoutTable table = tableOf(kChain, {chain({"a"}), chain({"b"}), chain({"c"})});
    CallWithSteps call(table, 3);
    SubTableFilter filter(*table.lookup(0), call);
    filter.startAt('d');
    filter.followWith('x');
    EXPECT_FALSE(call.exhausted());
    EXPECT_EQ(filter.next(), 3U);
}

TEST(SubTableFilter, AdmitsNothingThatItCannotPayForAndDoesNotRememberThat) {
    const TTI_LayoutTable table = tableOf(kChain, {chain({"a"}), chain({"b"}), chain({"c"})});
    for (const std::size_t left : {std::size_t{2}, std::size_t{5}}) {
        CallWithSteps call(table, left);
        SubTableFilter filter(*table.lookup(0), call);
        filter.startAt('b');
        filter.followWith('x');
        EXPECT_TRUE(call.exhausted());
        EXPECT_EQ(filter.next(), 3U);
    }
    EXPECT_EQ(admitted(table, 'b', 'x'), Indices{1});
}

TEST(SubTableFilter, IsWorthItForSeveralContextsOfCoveragesAlone) {
    const auto isWorthIt = [](const TTI_LayoutTable& table) {
        return SubTableFilter::isWorthIt(*table.lookup(0), table.memo());
    };
    EXPECT_TRUE(isWorthIt(tableOf(kChain, {chain({"a"}), chain({"b"}), chain({"c"})})));
    EXPECT_FALSE(isWorthIt(tableOf(kChain, {chain({"a"}), chain({"b"})})));
    const Bytes single = SingleSubst{.pairs = {{1, 2}}}.build();
    EXPECT_FALSE(isWorthIt(tableOf(1, {single, single, single})));
    const TTI_LayoutTable table = tableOf(kChain, {chain({"a"}), chain({"b"}), chain({"c"})});
    EXPECT_FALSE(SubTableFilter::isWorthIt(*table.lookup(0), GlyphMemo()));
}

} // namespace
} // namespace KWFontService_NS
