#include "layout/TTI_Mort.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TTI_Mort read(const Bytes& bytes) {
    TTI_Mort mort;
    mort.read(viewOf(bytes));
    return mort;
}
TTI_Mort read(const Mort& table) {
    return read(table.build());
}

const std::vector<GlyphSubstitution> kPairs = {{3, 30}, {5, 50}, {9, 90}};

TEST(MortTable, AnswersTheSubstituteOfEachPair) {
    const TTI_Mort mort = read(Mort::vertical(kPairs));
    EXPECT_FALSE(mort.empty());
    EXPECT_EQ(mort.substitute(3), 30);
    EXPECT_EQ(mort.substitute(5), 50);
    EXPECT_EQ(mort.substitute(9), 90);
    for (const unsigned short gid : std::initializer_list<unsigned short>{0, 2, 4, 8, 10, 0xFFFF})
        EXPECT_EQ(mort.substitute(gid), kNoGlyph) << gid;
}

TEST(MortTable, TheFeatureEntriesOfAChainArePassedOver) {
    Mort table = Mort::vertical(kPairs);
    for (const std::uint16_t count : std::initializer_list<std::uint16_t>{0, 1, 7}) {
        table.chains[0].featureCount = count;
        EXPECT_EQ(read(table).substitute(5), 50) << count;
    }
}

TEST(MortTable, OnlyAVerticalNonContextualSubtableIsWanted) {
    for (const int coverage : {0x0004, 0x8000, 0x8001, 0x8002, 0x8005, 0x4004}) {
        Mort table = Mort::vertical(kPairs);
        table.chains[0].subtables[0].coverage = static_cast<std::uint16_t>(coverage);
        EXPECT_TRUE(read(table).empty()) << coverage;
    }
    Mort table = Mort::vertical(kPairs);
    table.chains[0].subtables[0].coverage = 0xE00C; // only three bits tell the type
    EXPECT_FALSE(read(table).empty());
}

TEST(MortTable, AVerticalSubtableThatIsSecondInItsChainIsNotSeen) {
    MortSubtable first;
    first.coverage = 0x0004;
    first.pairs = kPairs;
    MortSubtable second;
    second.pairs = kPairs;
    EXPECT_TRUE(read(Mort{.chains = {{.subtables = {first, second}}}}).empty());
}

TEST(MortTable, ALaterChainIsLookedAt) {
    MortSubtable horizontal;
    horizontal.coverage = 0x0004;
    horizontal.pairs = {{3, 31}};
    MortSubtable vertical;
    vertical.pairs = kPairs;
    EXPECT_EQ(read(Mort{.chains = {{.subtables = {horizontal}}, {.subtables = {vertical}}}})
                  .substitute(3),
              30);
}

TEST(MortTable, AnotherLookupFormatEndsTheSearchWithoutAList) {
    MortSubtable array;
    array.lookupFormat = 0;
    MortSubtable vertical;
    vertical.pairs = kPairs;
    EXPECT_TRUE(read(Mort{.chains = {{.subtables = {array}}, {.subtables = {vertical}}}}).empty());
}

TEST(MortTable, AListOfNoUnitsIsEmpty) {
    EXPECT_TRUE(read(Mort::vertical({})).empty());
}

TEST(MortTable, AChainWithoutSubtablesHasNone) {
    MortSubtable vertical;
    vertical.pairs = kPairs;
    EXPECT_EQ(read(Mort{.chains = {{}, {.subtables = {vertical}}}}).substitute(3), 30);
}

TEST(MortTable, ACountOfUnitsBeyondTheBytesCoversWhatIsThere) {
    Mort table = Mort::vertical(kPairs);
    table.chains[0].subtables[0].nUnits = 0xFFFF;
    const TTI_Mort mort = read(table);
    EXPECT_FALSE(mort.empty());
    EXPECT_EQ(mort.substitute(3), 30);
}

TEST(MortTable, ChainsThatLoopOrLeaveTheTableEndTheWalk) {
    for (const std::uint32_t length : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        MortSubtable horizontal;
        horizontal.coverage = 0x0004;
        Mort table{.chains = {{.subtables = {horizontal}, .chainLength = length}}};
        table.nChains = 0xFFFFFFFF;
        EXPECT_TRUE(read(table).empty()) << length;
    }
}

TEST(MortTable, EveryLengthCanBeRead) {
    const Bytes whole = Mort::vertical(kPairs).build();
    for (std::size_t size = 0; size < whole.size(); ++size)
        (void)read(whole.slice(0, size)).substitute(5);
    EXPECT_TRUE(read(Bytes{}).empty());
}

} // namespace
} // namespace KWFontService_NS
