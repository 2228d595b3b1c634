// Subtables whose bytes lie: every class cut at every byte and damaged in every word, then asked
// everything and applied to a run. The tables are copied to blocks of their own size, so that a
// checker sees each step outside.

#include "layout/LayoutSamples.h"
#include "layout/LookupRuns.h"
#include "layout/SubTableQueries.h"
#include "layout/TTI_Gdef.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Kind = TTI_LayoutTable::Kind;

/// Reads a table that ends with these bytes as the sample's subtable, asks that for all glyphs of
/// the samples and applies the lookups to a run of them. How often one applied.
std::size_t readAndApply(const LayoutSample& sample, const Bytes& bytes) {
    TTI_LayoutTable table;
    table.read(sample.table(bytes).build().vector(), sample.kind);
    const TTI_SubTable* subtable = table.lookup(1)->subtables[0].get();
    if (subtable == nullptr)
        return 0;
    for (const unsigned short gid :
         std::initializer_list<unsigned short>{0, 10, 11, 12, 13, 14, 0xFFFF})
        SubTableQueries(gid).ask(*subtable);
    const TTI_Gdef gdef;
    LookupRuns runs(gdef, kSampleRun);
    runs.apply(table.lookups(), *table.lookup(1), sample.kind);
    return runs.applied();
}

TEST(HostileLayout, SoundSamplesAreSubtablesAndApply) {
    for (const LayoutSample& sample : layoutSamples()) {
        const OneSubTable one(sample.kind, sample.lookupType, sample.bytes);
        ASSERT_NE(one.get(), nullptr) << sample.lookupType << ' ' << sample.bytes.hex();
        SubTableQueries queries(10);
        queries.ask(*one.get());
        EXPECT_GT(queries.sum(), 0U);
        EXPECT_EQ(readAndApply(sample, sample.bytes) > 0, sample.applies)
            << sample.lookupType << ' ' << sample.bytes.hex();
    }
}

TEST(HostileLayout, EveryClassCanBeCutAtEveryByte) {
    for (const LayoutSample& sample : layoutSamples()) {
        for (std::size_t size = 0; size < sample.bytes.size(); ++size)
            readAndApply(sample, sample.bytes.slice(0, size));
    }
}

TEST(HostileLayout, EveryClassCanBeDamagedInEveryWord) {
    for (const LayoutSample& sample : layoutSamples()) {
        for (std::size_t at = 0; at + 2 <= sample.bytes.size(); at += 2) {
            for (const int value : {0, 1, 2, 7, 0x7FFF, 0x8000, 0xFFFE, 0xFFFF}) {
                Bytes damaged = sample.bytes;
                readAndApply(sample, damaged.patchU16At(at, value));
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
