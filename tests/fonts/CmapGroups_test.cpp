#include "fonts/CmapFixture.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

template <class Table>
CmapReading read(const Table& table) {
    return CmapReading::of(table.build(), 3, 10);
}

TEST(CmapFormat12, GlyphsCountUpWithinAGroup) {
    const CmapReading reading =
        read(CmapFormat12{.groups = {{'A', 'C', 10}, {0x1F600, 0x1F610, 500}}});
    EXPECT_EQ(reading('A'), 10);
    EXPECT_EQ(reading('C'), 12);
    EXPECT_EQ(reading(0x1F600), 500);
    EXPECT_EQ(reading(0x1F610), 516);
    for (const int code :
         std::initializer_list<int>{'A' - 1, 'D', 0x1F5FF, 0x1F611, 0x10FFFF, 0x7FFFFFFF, -1, -2})
        EXPECT_EQ(reading(code), kMissing) << code;
}

TEST(CmapFormat12, GlyphsAreTakenModulo65536) {
    const CmapReading reading = read(CmapFormat12{.groups = {{0x20000, 0x2FFFF, 0x1000A}}});
    EXPECT_EQ(reading(0x20000), 10);
    EXPECT_EQ(reading(0x2FFFF), 9);
}

TEST(CmapFormat13, AllCodesOfAGroupShareItsGlyph) {
    const CmapReading reading =
        read(CmapFormat13{.groups = {{'A', 'C', 10}, {0x1F600, 0x1F610, 0x30005}}});
    EXPECT_EQ(reading('A'), 10);
    EXPECT_EQ(reading('C'), 10);
    EXPECT_EQ(reading(0x1F608), 5) << "the low 16 bits";
    EXPECT_EQ(reading('D'), kMissing);
}

TEST(CmapFormat12, CodesCompareAsSignedNumbers) {
    // As unsigned numbers the groups would be out of order, and the search would turn away from A.
    const CmapReading reading =
        read(CmapFormat12{.groups = {{0xFFFFFF00, 0xFFFFFFF0, 1}, {'A', 'B', 10}}});
    EXPECT_EQ(reading('A'), 10);
    EXPECT_EQ(reading(-0x100), 1);
    EXPECT_EQ(reading(-0x10), 0xF1);
    EXPECT_EQ(reading(-1), kMissing);
}

TEST(CmapFormat12, AGroupOfAllCodesIsNeitherStoredNorWalked) {
    const CmapReading reading = read(CmapFormat12{.groups = {{0, 0xFFFFFFFF, 1}, {5, 4, 1}}});
    ASSERT_TRUE(reading.ok);
    EXPECT_EQ(reading.cmap.embedableCharCount(), 0U) << "2^32 codes wrap";
    EXPECT_EQ(reading('A'), kMissing) << "its end is -1";
}

TEST(CmapFormat12, AGroupUpToTheHighestSignedCodeAnswers) {
    const CmapReading reading = read(CmapFormat12{.groups = {{0x10, 0x7FFFFFFF, 1}}});
    EXPECT_EQ(reading(0x10), 1);
    EXPECT_EQ(reading(0x10FFFF), 0xFFF0);
    EXPECT_EQ(reading(0x7FFFFFFF), 0xFFF0);
    EXPECT_EQ(reading(0xF), kMissing);
}

TEST(CmapFormat12, AGlyphThatCountsPastTheHighestIntIsTakenModulo65536) {
    const CmapReading reading = read(CmapFormat12{.groups = {{0x10, 0x7FFFFFFF, 0x20}}});
    EXPECT_EQ(reading(0x7FFFFFFF), 0xF);
}

TEST(CmapFormat12, UnsortedAndOverlappingGroupsAnswerOrMiss) {
    const CmapReading reading = read(CmapFormat12{
        .groups = {{0x300, 0x400, 1}, {0x100, 0x200, 2}, {0x180, 0x350, 3}, {0x90, 0x80, 4}}});
    ASSERT_TRUE(reading.ok);
    for (int code = 0; code < 0x1000; ++code)
        (void)reading(code);
    EXPECT_EQ(reading(0x5000), kMissing);
    EXPECT_EQ(reading.cmap.embedableCharCount(), 0x101U + 0x101U + 0x1D1U - 0xFU);
}

TEST(CmapFormat12, NoGroupsMapNothing) {
    const CmapReading reading = read(CmapFormat12{});
    EXPECT_TRUE(reading.ok);
    EXPECT_TRUE(reading.cmap.holdsSubtable());
    EXPECT_EQ(reading('A'), kMissing);
}

TEST(CmapFormat12, CountsTheCodesOfAllGroups) {
    EXPECT_EQ(
        read(CmapFormat12{.groups = {{'A', 'C', 1}, {'F', 'F', 1}}}).cmap.embedableCharCount(), 4U);
    EXPECT_EQ(
        read(CmapFormat13{.groups = {{'A', 'C', 1}, {'F', 'F', 1}}}).cmap.embedableCharCount(), 4U);
}

TEST(CmapFormat12, EveryGroupIsFoundWhereverTheBlocksOfTheIndexLie) {
    Rng rng(12);
    CmapMap glyphs;
    for (int i = 0; i < 3000; ++i) {
        glyphs[rng.below(0x10000)] = static_cast<std::uint16_t>(1 + rng.below(0xFFFE));
        glyphs[rng.below(0x110000)] = static_cast<std::uint16_t>(1 + rng.below(0xFFFE));
    }
    const CmapReading reading = read(CmapFormat12::of(glyphs));
    ASSERT_TRUE(reading.ok);
    for (std::uint32_t code = 0; code < 0x110200; ++code) {
        const auto it = glyphs.find(code);
        ASSERT_EQ(reading(static_cast<int>(code)), it == glyphs.end() ? kMissing : it->second)
            << code;
    }
}

TEST(CmapFormat12, MoreGroupsThanTheIndexTakesAreFoundAllTheSame) {
    CmapFormat12 table;
    for (std::uint32_t i = 0; i < 70000; ++i)
        table.groups.push_back({3 * i, 3 * i, i % 1000 + 1});
    const CmapReading reading = read(table);
    for (int i = 0; i < 70000; ++i) {
        ASSERT_EQ(reading(3 * i), i % 1000 + 1);
        ASSERT_EQ(reading(3 * i + 1), kMissing);
    }
}

template <class Table>
class CmapGroups : public testing::Test {
public:
    static std::string name(const char* what) {
        return std::string("'cmap' table format ") +
               (std::is_same_v<Table, CmapFormat12> ? "12" : "13") + what;
    }
};
using GroupFormats = testing::Types<CmapFormat12, CmapFormat13>;
TYPED_TEST_SUITE(CmapGroups, GroupFormats);

TYPED_TEST(CmapGroups, ALengthTooShortForItsGroupsIsAFileError) {
    TypeParam table{.groups = {{'A', 'B', 1}, {'D', 'E', 1}}};
    for (const std::uint32_t length : {0U, 12U, 16U, 39U}) {
        table.length = length;
        EXPECT_EQ(read(table).complaint(), fileError(this->name(" length error"))) << length;
    }
    table.length = 40;
    EXPECT_TRUE(read(table).ok);
}

TYPED_TEST(CmapGroups, ACountNearTwoToThe32IsAFileErrorAndTakesNoMemory) {
    TypeParam table{.groups = {{'A', 'B', 1}}};
    for (const std::uint32_t nGroups : {0x15555556U, 0x80000000U, 0xFFFFFFFFU}) {
        table.nGroups = nGroups; // times 12 it would wrap
        table.length = 0xFFFFFFFF;
        EXPECT_EQ(read(table).complaint(), fileError(this->name(" length error"))) << nGroups;
    }
    table.nGroups = 0x15555553; // fits the length, but not the file
    EXPECT_EQ(read(table).complaint(), readError("'cmap' table group read error"));
}

TYPED_TEST(CmapGroups, EachPartHasItsReadError) {
    const Bytes table = TypeParam{.groups = {{'A', 'B', 1}}}.build();
    EXPECT_EQ(CmapReading::cut(table, 15).complaint(), readError(this->name(" read error")));
    EXPECT_EQ(CmapReading::cut(table, 27).complaint(), readError("'cmap' table group read error"));
}

TYPED_TEST(CmapGroups, SymbolRangeIsThatOfTheFirstGroup) {
    const CmapReading symbol =
        CmapReading::of(TypeParam{.groups = {{0xF041, 0xF041, 5}}}.build(), 3, 0);
    EXPECT_EQ(symbol(0x41), 5);
    EXPECT_EQ(symbol(0xF041), 5);
    const CmapReading high =
        CmapReading::of(TypeParam{.groups = {{0x1F041, 0x1F041, 5}}}.build(), 3, 1);
    EXPECT_EQ(high.cmap.convertToCode(0x41), 0xF041) << "bits 8 to 15 alone count";
    EXPECT_EQ(high.cmap.convertToCode(0x10041), 0x1F041);
    const CmapReading latin =
        CmapReading::of(TypeParam{.groups = {{0x41, 0x41, 5}, {0xF042, 0xF042, 6}}}.build(), 3, 0);
    EXPECT_EQ(latin(0x42), kMissing);
}

} // namespace
} // namespace KWFontService_NS
