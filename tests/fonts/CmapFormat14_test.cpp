#include "fonts/CmapFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

CmapReading read(const CmapFormat14& table) {
    return CmapReading(Cmap{
        .records = {{0, 5, table.build()}, {3, 1, CmapFormat4::of({{'A', 3}, {'B', 4}}).build()}}});
}
unsigned short sequence(const CmapReading& reading, int ch, int selector) {
    return reading.cmap.variationSequence(ch, selector, false);
}

TEST(CmapFormat14, FindsEachSelectorAndItsLists) {
    const CmapReading reading =
        read({.selectors = {{.varSelector = 0xFE00, .mappings = {{'A', 20}, {'C', 21}}},
                            {.varSelector = 0xFE0F, .defaults = {{'A', 1}, {0x3000, 0}}},
                            {.varSelector = 0xE0100,
                             .defaults = {{'A', 0}},
                             .mappings = {{'B', 30}, {0x20000, 31}}}}});
    ASSERT_TRUE(reading.ok);
    EXPECT_EQ(sequence(reading, 'A', 0xFE00), 20);
    EXPECT_EQ(sequence(reading, 'B', 0xFE00), kMissing);
    EXPECT_EQ(sequence(reading, 'C', 0xFE00), 21);
    EXPECT_EQ(sequence(reading, 'A', 0xFE0F), 3);
    EXPECT_EQ(sequence(reading, 'B', 0xFE0F), 4) << "one additional character";
    EXPECT_EQ(sequence(reading, 'C', 0xFE0F), kMissing);
    EXPECT_EQ(sequence(reading, 'A', 0xE0100), 3);
    EXPECT_EQ(sequence(reading, 'B', 0xE0100), 30);
    EXPECT_EQ(sequence(reading, 0x20000, 0xE0100), 31);
    for (const int selector : {0, 0xFE01, 0xE0101, -1, 0x7FFFFFFF})
        EXPECT_EQ(sequence(reading, 'A', selector), kMissing) << selector;
    for (const int ch : {0, -1, 0x1000041, 0x10FFFF})
        EXPECT_EQ(sequence(reading, ch, 0xFE00), kMissing) << ch;
}

TEST(CmapFormat14, ACharacterInBothListsHasItsOrdinaryGlyph) {
    const CmapReading reading =
        read({.selectors = {{.defaults = {{'A', 0}}, .mappings = {{'A', 30}}}}});
    EXPECT_EQ(sequence(reading, 'A', 0xFE00), 3);
}

TEST(CmapFormat14, AGlyphOfItsOwnIsAnsweredAsItStands) {
    const CmapReading reading = read({.selectors = {{.mappings = {{'A', 0}}}}});
    EXPECT_EQ(sequence(reading, 'A', 0xFE00), 0);
}

TEST(CmapFormat14, OffsetsOutsideTheSubtableMiss) {
    for (const std::uint32_t offset : {1U, 9U, 21U, 1000U, 0x80000000U, 0xFFFFFFFFU}) {
        const CmapReading reading = read({.selectors = {{.defaults = {{'A', 0}},
                                                         .mappings = {{'B', 30}},
                                                         .defaultUVSOffset = offset,
                                                         .nonDefaultUVSOffset = offset}}});
        ASSERT_TRUE(reading.ok) << offset;
        (void)sequence(reading, 'A', 0xFE00);
        if (offset != 21) {
            EXPECT_EQ(sequence(reading, 'B', 0xFE00), kMissing) << offset;
        }
    }
}

TEST(CmapFormat14, CountsBeyondTheBytesCoverWhatIsThere) {
    CmapFormat14 table{
        .selectors = {{.mappings = {{'A', 20}, {'B', 21}}, .numUVSMappings = 0xFFFFFFFF}},
        .numVarSelectorRecords = 0xFFFFFFFF};
    const CmapReading reading = read(table);
    ASSERT_TRUE(reading.ok);
    EXPECT_EQ(sequence(reading, 'Z', 0xFE00), kMissing);
    EXPECT_EQ(sequence(reading, 'Z', 0xFFFFFF), kMissing);

    // With a record count that is true the search still finds what a lying list holds.
    table.numVarSelectorRecords.reset();
    EXPECT_EQ(sequence(read(table), 'B', 0xFE00), 21);

    const CmapReading ranges = read(
        {.selectors = {{.defaults = {{'A', 0}, {'B', 0}}, .numUnicodeValueRanges = 0xFFFFFFFF}}});
    EXPECT_EQ(sequence(ranges, 'B', 0xFE00), 4);
}

TEST(CmapFormat14, ALengthWithoutRoomForARecordIsAReadError) {
    CmapFormat14 table{.selectors = {{.mappings = {{'A', 20}}}}};
    for (const std::uint32_t length : {0U, 9U, 10U}) {
        table.length = length;
        EXPECT_EQ(read(table).complaint(), readError("'cmap' table format 14 header error"))
            << length;
    }
    table.length = 11;
    EXPECT_TRUE(read(table).ok);
    EXPECT_EQ(sequence(read(table), 'A', 0xFE00), kMissing);
}

TEST(CmapFormat14, EachPartHasItsReadError) {
    CmapFormat14 table{.selectors = {{.mappings = {{'A', 20}}}}};
    const Bytes bytes = table.build();
    EXPECT_EQ(CmapReading::cut(bytes, 9).complaint(),
              readError("'cmap' table format 14 read error"));
    EXPECT_EQ(CmapReading::cut(bytes, bytes.size() - 1).complaint(),
              readError("'cmap' variation selector read error"));
    table.length = 0xFFFFFFFF;
    EXPECT_EQ(CmapReading::cut(table.build(), bytes.size()).complaint(),
              readError("'cmap' variation selector read error"));
}

} // namespace
} // namespace KWFontService_NS
