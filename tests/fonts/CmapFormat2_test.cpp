#include "fonts/CmapFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// Read with (3, 1), so that a code is looked up as it is given.
CmapReading read(const CmapFormat2& table) {
    return CmapReading::of(table.build());
}

TEST(CmapFormat2, AnswersOneAndTwoByteCodes) {
    const CmapReading reading =
        read(CmapFormat2::of({{'A', 5}, {'B', 6}, {0x8140, 7}, {0x8142, 8}, {0x9FFC, 9}}));
    ASSERT_TRUE(reading.ok);
    EXPECT_EQ(reading('A'), 5);
    EXPECT_EQ(reading('B'), 6);
    EXPECT_EQ(reading(0x8140), 7);
    EXPECT_EQ(reading(0x8142), 8);
    EXPECT_EQ(reading(0x9FFC), 9);
}

TEST(CmapFormat2, CodesOutsideTheRangeOfTheirHighByteAreMissing) {
    const CmapReading reading = read(CmapFormat2::of({{'A', 5}, {0x8140, 7}, {0x8142, 8}}));
    for (const int code : std::initializer_list<int>{'A' - 1, 'A' + 1, 0x813F, 0x8143, 0x8240,
                                                     0xFFFF, 0x10041, 0x108140, -1})
        EXPECT_EQ(reading(code), kMissing) << code;
}

TEST(CmapFormat2, GlyphZeroIsMissing) {
    const CmapReading reading = read(CmapFormat2::of({{0x8140, 7}, {0x8142, 8}}));
    EXPECT_EQ(reading(0x8141), kMissing);
    EXPECT_EQ(reading.withGlyphZero(0x8141), kMissing);
}

TEST(CmapFormat2, TheDeltaIsAddedModulo65536) {
    auto table = CmapFormat2::of({{0x8140, 7}, {0x8141, 0xFFFE}});
    table.subHeaders[1].idDelta = 3;
    const CmapReading reading = read(table);
    EXPECT_EQ(reading(0x8140), 10);
    EXPECT_EQ(reading(0x8141), 1);
    EXPECT_EQ(reading(0x8142), kMissing);
}

TEST(CmapFormat2, AnAbsentGlyphTakesNoDelta) {
    auto table = CmapFormat2::of({{0x8140, 7}, {0x8142, 8}});
    table.subHeaders[1].idDelta = 3;
    EXPECT_EQ(read(table)(0x8141), kMissing);
}

TEST(CmapFormat2, ASubHeaderWithoutRangeOffsetHasNoGlyphs) {
    auto table = CmapFormat2::of({{'A', 5}, {0x8140, 7}});
    table.subHeaders[1].idRangeOffset = 0;
    const CmapReading reading = read(table);
    EXPECT_EQ(reading(0x8140), kMissing);
    EXPECT_EQ(reading('A'), 5);
}

TEST(CmapFormat2, ARangeOffsetOutsideTheArrayIsMissing) {
    for (const int offset : {1, 2, 200, 0xFFFF}) {
        auto table = CmapFormat2::of({{'A', 5}, {0x8140, 7}});
        table.subHeaders[0].idRangeOffset = static_cast<std::uint16_t>(offset);
        const CmapReading reading = read(table);
        ASSERT_TRUE(reading.ok);
        EXPECT_EQ(reading('A'), kMissing) << offset;
        EXPECT_EQ(reading(0x8140), 7) << offset;
    }
}

TEST(CmapFormat2, AKeyOfASubHeaderThatIsNotThereIsMissing) {
    auto table = CmapFormat2::of({{0x8140, 7}});
    table.subHeaderKeys[0x81] = 8 * 200;
    const CmapReading reading = read(table);
    ASSERT_TRUE(reading.ok);
    EXPECT_EQ(reading(0x8140), kMissing);
}

TEST(CmapFormat2, HighByteZeroHasASubHeaderThoughItsKeyIsZero) {
    EXPECT_EQ(read(CmapFormat2::of({{'A', 5}}))('A'), 5);
}

TEST(CmapFormat2, CountsTheEntriesOfAllHighBytes) {
    EXPECT_EQ(read(CmapFormat2::of({{'A', 5}, {'C', 6}, {0x8140, 7}, {0x9040, 8}}))
                  .cmap.embedableCharCount(),
              5U);
}

TEST(CmapFormat2, ALengthThatEndsBeforeTheArrayLeavesNoGlyphs) {
    auto table = CmapFormat2::of({{'A', 5}});
    for (const int length : {0, 517, 526}) {
        table.length = static_cast<std::uint16_t>(length);
        const CmapReading reading = read(table);
        EXPECT_TRUE(reading.ok) << length;
        EXPECT_EQ(reading('A'), kMissing) << length;
    }
}

TEST(CmapFormat2, EachPartHasItsReadError) {
    const Bytes table = CmapFormat2::of({{'A', 5}, {0x8140, 7}}).build();
    EXPECT_EQ(CmapReading::cut(table, 517).complaint(),
              readError("'cmap' table format 2 read error"));
    EXPECT_EQ(CmapReading::cut(table, 518 + 15).complaint(),
              readError("'cmap' table format 2 SubHeaders read error"));
    EXPECT_EQ(CmapReading::cut(table, table.size() - 1).complaint(),
              readError("'cmap' table format 2 glyphIndexArray read error"));
}

} // namespace
} // namespace KWFontService_NS
