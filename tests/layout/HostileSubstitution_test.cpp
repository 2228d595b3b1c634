// Substitution that is given far too much to do. In the end the budget of the call is used up, and
// the rest misses. Where one of these things is not paid for, the rest applies, minutes later.

#include "layout/GsubFixture.h"
#include "layout/LayoutCall.h"
#include "layout/TTI_ContextRules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
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
    unsigned int flag = 0;
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

TEST(HostileSubstitution, AnOutputThatIsMadeAgainForEachRecordIsPaidFor) {
    // The inner context cuts the output, and the next record has all before the glyph made anew.
    LookupRecords records;
    for (std::size_t i = 0; i < kRecords; i += 2)
        records.insert(records.end(), {{0, 1}, {0, 2}});
    std::string run(20000, 'x');
    for (std::size_t i = 0; i < 20; ++i)
        run[9000 + 10 * i] = 'a';
    const auto result = apply({{6, onA(records)}, {6, onA({{0, 2}})}, {1, kSingle}}, run);
    EXPECT_EQ(result.text.size(), run.size());
    const auto left = std::ranges::count(result.text, 'a');
    EXPECT_GT(left, 0);
    EXPECT_LT(left, 20);
}

TEST(HostileSubstitution, GlyphsPassedOverArePaidForByEachRecord) {
    LookupRecords records(kRecords, {1, 9});
    records.emplace_back(0, 1);
    std::string run(8000, 'A');
    run.front() = run.back() = 'a';
    const auto result = apply({{5,
                                contextFormat2({'a'}, speltClasses({{"a", 1}}),
                                               {{}, {{.input = {1}, .records = records}}}),
                                kIgnoreMarks},
                               {1, kSingle}},
                              run);
    EXPECT_FALSE(result.changed);
    EXPECT_EQ(result.text, run);
}

TEST(HostileSubstitution, RulesThatDoNotMatchListNoMoreThanTheRunHas) {
    // Each of a thousand rules passes over all marks, and the glyph behind them is not its own.
    const Bytes classes = speltClasses({{"a", 1}});
    const std::vector<RuleBytes> rules(1000, {.input = {1, 1}, .records = {{0, 0}}});
    GlyphIDArray run;
    run.push_back('a', GlyphClassDef::Base);
    for (int i = 0; i < 500; ++i)
        run.push_back('A', GlyphClassDef::Mark);
    run.push_back('a', GlyphClassDef::Base);
    const TTI_Gdef gdef;
    LayoutCall call(gdef, 1);
    const std::pair<int, Bytes> subtables[] = {
        {5, contextFormat2({'a'}, classes, {{}, rules})},
        {6, chainContextFormat2({'a'}, classes, classes, classes, {{}, rules})}};
    for (const auto& [type, bytes] : subtables) {
        const OneSubTable one = OneSubTable::gsub(type, bytes);
        TTI_LookupRecords records;
        std::vector<int> passed;
        EXPECT_EQ(one.get()->matchContext(call, records, run, 0, kIgnoreMarks, passed), 0);
        EXPECT_FALSE(call.exhausted());
        EXPECT_EQ(passed.size(), static_cast<std::size_t>(run.size()));
    }
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

TEST(HostileSubstitution, SubtablesThatAGlyphRulesOutArePaidFor) {
    // Every glyph of the run is a new question to all of them, and only the last one is followed by
    // what they want.
    constexpr std::uint16_t kGlyphs = 200;
    std::vector<std::uint16_t> starts(kGlyphs);
    std::iota(starts.begin(), starts.end(), std::uint16_t{1});
    const SpeltGsub font(
        {lookupOfOneContext(kChain, 1, kGlyphs, 999), lookupTable(1, {single({{kGlyphs, 'x'}})})});
    const auto changes = [&font](const std::vector<std::uint16_t>& glyphs) {
        GlyphIDArray2 in;
        for (const std::uint16_t gid : glyphs)
            in.glyphs().push_back(gid, GlyphClassDef::None);
        GlyphIDArray2 out;
        return FS_FontInfo::processGSUB3(font.info(), 0, in, out, 1);
    };
    EXPECT_TRUE(changes({kGlyphs, 999}));
    starts.push_back(999);
    EXPECT_FALSE(changes(starts));
}

TEST(HostileSubstitution, ContextsThatCallThemselvesInAFanEnd) {
    const auto result = apply({{6, onA(LookupRecords(60, {0, 0}))}}, std::string(1000, 'a'));
    EXPECT_FALSE(result.changed);
}

} // namespace
} // namespace KWFontService_NS
