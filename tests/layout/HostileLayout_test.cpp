// Subtables whose bytes lie: every class cut at every byte and damaged in every word, then asked
// everything. The tables are copied to blocks of their own size, so that a checker sees each step
// outside.

#include "layout/LayoutFixture.h"
#include "layout/SubTableQueries.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Kind = TTI_LayoutTable::Kind;

struct Sample {
    Kind kind;
    int lookupType;
    Bytes bytes;
};

/// One of every class, all with glyphs from 10 to 14.
std::vector<Sample> samples() {
    const RuleSetBytes rules = {
        {{.backtrack = {1}, .input = {2, 3}, .lookahead = {4}, .records = {{0, 1}}},
         {.input = {2}}},
        {{.input = {1}}}};
    const Bytes classes = classDefFormat2({{10, 12, 0}, {13, 14, 1}});
    const Bytes device = deviceTable(8, 12, 2, {0x1234, 0x5000});
    const std::vector<MarkBytes> marks = {
        {.glyph = 10, .anchor = anchorTable(1, 2)},
        {.glyph = 11, .markClass = 1, .anchor = anchorFormat3(1, 2, device, {})}};
    const std::vector<BaseBytes> bases = {{.glyph = 10, .anchors = {anchorTable(1, 2), {}}},
                                          {.glyph = 12, .anchors = {{}, anchorFormat2(1, 2, 3)}}};
    std::vector<Sample> all = {
        {Kind::Gsub, 1, SingleSubst{.format = 1, .pairs = {{10, 20}, {11, 21}}}.build()},
        {Kind::Gsub, 1, SingleSubst{.pairs = {{10, 20}, {12, 21}}, .coverageFormat = 2}.build()},
        {Kind::Gsub, 2, glyphSets({{10, {1, 2}}, {12, {}}})},
        {Kind::Gsub, 3, glyphSets({{10, {1, 2}}, {12, {3}}}, 2)},
        {Kind::Gsub, 4,
         ligatureSubst({{10, {{.glyph = 1, .components = {11, 12}}, {.glyph = 2}}}})},
        {Kind::Gsub, 8, reverseChaining({{10, 1}, {11, 2}}, {{12}}, {{13}, {14}})},
        {Kind::Gpos, 1, singlePosFormat1({10, 11}, 0x15, {1, 2, 3})},
        {Kind::Gpos, 1, singlePosFormat2({10, 11}, 0x0F, {{1, 2, 3, 4}, {5, 6, 7, 8}})},
        {Kind::Gpos, 2,
         pairPosFormat1(4, 0x44, {{10, {{10, {1}, {2, 0}}, {11, {3}, {4, 0}}}}, {11, {}}})},
        {Kind::Gpos, 2,
         pairPosFormat2({10, 13}, 4, 1, classes, classes, 2, 2, {1, 2, 3, 4, 5, 6, 7, 8})},
        {Kind::Gpos, 3,
         cursivePos({{.glyph = 10, .entry = anchorTable(1, 2)},
                     {.glyph = 11, .exit = anchorTable(3, 4)}})},
        {Kind::Gpos, 4, markBasePos(marks, bases, 2)},
        {Kind::Gpos, 5,
         markLigPos(
             marks,
             {{.glyph = 10, .components = {{anchorTable(1, 2), {}}, {{}, anchorTable(1, 2)}}}}, 2)},
        {Kind::Gpos, 6, markBasePos(marks, bases, 2)},
    };
    for (const auto& [kind, first] : {std::pair(Kind::Gsub, 5), std::pair(Kind::Gpos, 7)}) {
        all.push_back({kind, first, contextFormat1({10, 11}, rules)});
        all.push_back({kind, first, contextFormat2({10, 13}, classes, rules)});
        all.push_back({kind, first, contextFormat3({{10}, {11}}, {{0, 1}})});
        all.push_back({kind, first + 1, chainContextFormat1({10, 11}, rules)});
        all.push_back(
            {kind, first + 1, chainContextFormat2({10, 13}, classes, classes, classes, rules)});
        all.push_back(
            {kind, first + 1, chainContextFormat3({{12}}, {{10}, {11}}, {{13}}, {{0, 1}})});
    }
    return all;
}

/// Reads the subtable as the last thing of a table and asks it for all glyphs of the samples.
void readAndAsk(const Sample& sample, const Bytes& bytes) {
    const OneSubTable one(sample.kind, sample.lookupType, bytes);
    const TTI_SubTable* subtable = one.get();
    if (subtable == nullptr)
        return;
    for (const unsigned short gid :
         std::initializer_list<unsigned short>{0, 10, 11, 12, 13, 14, 0xFFFF})
        SubTableQueries(gid).ask(*subtable);
}

TEST(HostileLayout, SoundSamplesAreSubtables) {
    for (const Sample& sample : samples()) {
        const OneSubTable one(sample.kind, sample.lookupType, sample.bytes);
        ASSERT_NE(one.get(), nullptr) << sample.lookupType << ' ' << sample.bytes.hex();
        SubTableQueries queries(10);
        queries.ask(*one.get());
        EXPECT_GT(queries.sum(), 0U);
    }
}

TEST(HostileLayout, EveryClassCanBeCutAtEveryByte) {
    for (const Sample& sample : samples()) {
        for (std::size_t size = 0; size < sample.bytes.size(); ++size)
            readAndAsk(sample, sample.bytes.slice(0, size));
    }
}

TEST(HostileLayout, EveryClassCanBeDamagedInEveryWord) {
    for (const Sample& sample : samples()) {
        for (std::size_t at = 0; at + 2 <= sample.bytes.size(); at += 2) {
            for (const int value : {0, 1, 2, 7, 0x7FFF, 0x8000, 0xFFFE, 0xFFFF}) {
                Bytes damaged = sample.bytes;
                readAndAsk(sample, damaged.patchU16At(at, value));
            }
        }
    }
}

TEST(HostileLayout, RulesOfAContextThatAreReadOverAndOverAreAnError) {
    // 4000 class sets that are one, with 4000 rules that are one.
    constexpr std::size_t kCount = 4000;
    Bytes set;
    set.u16(kCount);
    for (std::size_t i = 0; i < kCount; ++i)
        set.u16(2 + 2 * kCount);
    set.u16s({2, 0, 3});
    Bytes table = Bytes().u16(2).u16(0, "coverage").u16(0).u16(kCount);
    for (std::size_t i = 0; i < kCount; ++i)
        table.u16(8 + 2 * kCount);
    table.bytes(set).patchU16At("coverage", table.size()).bytes(coverageTable({10}));
    TTI_LayoutTable layout;
    const LayoutBytes bytes{
        .lookups = lookupList(
            {lookupTable(5, {table}), lookupTable(1, {SingleSubst{.pairs = {{3, 30}}}.build()})})};
    EXPECT_EQ(layout.read(bytes.build().vector(), Kind::Gsub),
              std::vector{TTI_LayoutTable::List::Lookups});
    EXPECT_EQ(layout.lookup(0)->subtables[0], nullptr);
}

TEST(HostileLayout, ACoverageThatIsReadOverAndOverIsAnError) {
    // 10000 subtables that are one, with a coverage of 20000 glyphs: 200 MB out of 60 KB.
    constexpr std::size_t kCount = 10000;
    Bytes lookup = Bytes().u16(1).u16(0).u16(kCount);
    for (std::size_t i = 0; i < kCount; ++i)
        lookup.u16(6 + 2 * kCount);
    lookup.u16s({1, 6, 1}).u16(1).u16(20000).zero(40000);
    TTI_LayoutTable layout;
    const LayoutBytes bytes{.lookups = lookupList({lookup})};
    EXPECT_EQ(layout.read(bytes.build().vector(), Kind::Gsub),
              std::vector{TTI_LayoutTable::List::Lookups});
    ASSERT_EQ(layout.lookup(0)->subtables.size(), kCount);
    EXPECT_NE(layout.lookup(0)->subtables.front(), nullptr) << "read before the budget ended";
    EXPECT_EQ(layout.lookup(0)->subtables.back(), nullptr);
}

} // namespace
} // namespace KWFontService_NS
