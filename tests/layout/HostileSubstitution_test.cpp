// Substitution that is given far too much to do. In the end the budget of the call is used up, and
// the rest misses. Where one of these things is not paid for, the rest applies, minutes later.

#include "layout/GsubFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using LookupRecords = std::vector<std::pair<std::uint16_t, std::uint16_t>>;

Bytes onA(const LookupRecords& records) {
    return chainContextFormat3({}, {{'a'}}, {}, records);
}

/// Lookups of one subtable each, in extensions so that they may be long.
struct FarLookup {
    int type = 0;
    Bytes subtable{};
    int flag = 0;
};
std::vector<Bytes> farLookups(const std::vector<FarLookup>& lookups) {
    constexpr std::size_t kSize = 16; // of a lookup with its extension
    std::vector<Bytes> tables;
    std::size_t before = 0;
    for (const FarLookup& lookup : lookups) {
        const std::size_t left = (lookups.size() - tables.size()) * kSize;
        tables.push_back(Bytes()
                             .u16(7)
                             .u16(lookup.flag)
                             .u16(1)
                             .u16(8)
                             .u16(1)
                             .u16(lookup.type)
                             .u32(static_cast<std::uint32_t>(left - 8 + before)));
        before += lookup.subtable.size();
    }
    for (const FarLookup& lookup : lookups)
        tables.back().bytes(lookup.subtable);
    return tables;
}

/// Applies the first lookup to a run and answers what came of it.
SpeltGsub::Result apply(const std::vector<FarLookup>& lookups, const std::string& run) {
    return SpeltGsub(farLookups(lookups)).whole(run);
}

const Bytes kSingle = SingleSubst{.pairs = {{'a', 'b'}}}.build();
constexpr std::size_t kRecords = 15900; // as many as leave 16 bits for the offset behind them

TEST(HostileSubstitution, InsertionsBeforeALongOutputArePaidFor) {
    LookupRecords records = {{0, 1}};
    records.insert(records.end(), kRecords, {0, 2});
    const auto result = apply({{6, onA(records)},
                               {2, glyphSets({{'a', std::vector<std::uint16_t>(30000, 'b')}})},
                               {2, glyphSets({{'a', {'a', 'b'}}})}},
                              std::string(100, 'a'));
    EXPECT_FALSE(result.changed);
}

TEST(HostileSubstitution, AnOutputThatIsMadeAgainAtEachGlyphIsPaidFor) {
    // The inner context cuts the output, and the next record has all before the glyph made anew;
    // in the second half of the run nothing is left of it.
    constexpr std::ptrdiff_t kMany = 200000;
    const auto result = apply({{6, onA({{0, 1}, {0, 2}})}, {6, onA({{0, 2}})}, {1, kSingle}},
                              std::string(kMany, 'a'));
    EXPECT_EQ(result.text.size(), static_cast<std::size_t>(kMany));
    const auto changed = std::ranges::count(result.text, 'b');
    EXPECT_GT(changed, 1000);
    EXPECT_LT(changed, kMany / 2);
}

TEST(HostileSubstitution, GlyphsPassedOverArePaidForByEachRecord) {
    constexpr int kIgnoreMarkGlyphs = 8;
    LookupRecords records(kRecords, {1, 9});
    records.emplace_back(0, 1);
    std::string run(8000, 'A');
    run.front() = run.back() = 'a';
    const auto result = apply({{5,
                                contextFormat2({'a'}, speltClasses({{"a", 1}}),
                                               {{}, {{.input = {1}, .records = records}}}),
                                kIgnoreMarkGlyphs},
                               {1, kSingle}},
                              run);
    EXPECT_FALSE(result.changed);
    EXPECT_EQ(result.text, run);
}

TEST(HostileSubstitution, TheOutputOfAContextGrowsNoFurtherThanARun) {
    const auto result = apply({{6, onA({{0, 1}, {0, 2}})},
                               {2, glyphSets({{'a', std::vector<std::uint16_t>(40000, 'b')}})},
                               {2, glyphSets({{'a', std::vector<std::uint16_t>(40000, 'c')}})}},
                              "a");
    EXPECT_TRUE(result.changed);
    EXPECT_EQ(result.text, std::string(40000, 'b'));
}

TEST(HostileSubstitution, ManyDroppedGlyphsGoToAnOwnerFarBefore) {
    std::string run(200000, 'a');
    run.front() = 'b';
    const auto result =
        apply({{2, glyphSets({{'a', {}}, {'b', std::vector<std::uint16_t>(60000, 'c')}})}}, run);
    EXPECT_EQ(result.text, std::string(60000, 'c'));
    EXPECT_EQ(result.words.front(), 200000);
    EXPECT_EQ(std::ranges::count(result.words, 0), 59999);
}

TEST(HostileSubstitution, ContextsThatCallThemselvesInAFanEnd) {
    const auto result = apply({{6, onA(LookupRecords(60, {0, 0}))}}, std::string(1000, 'a'));
    EXPECT_FALSE(result.changed);
}

} // namespace
} // namespace KWFontService_NS
