#include "fonts/CmapFixture.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

CmapReading read(const CmapFormat4& table) {
    return CmapReading::of(table.build());
}

TEST(CmapFormat4, AnswersBothEndsOfASegmentAndNothingBesideIt) {
    const CmapReading reading = read(CmapFormat4::of({{'A', 3}, {'B', 4}, {'C', 5}, {0x4E00, 9}}));
    EXPECT_EQ(reading('A'), 3);
    EXPECT_EQ(reading('C'), 5);
    EXPECT_EQ(reading(0x4E00), 9);
    for (const int code : std::initializer_list<int>{'A' - 1, 'D', 0x4DFF, 0x4E01, 0xFFFE})
        EXPECT_EQ(reading(code), kMissing) << code;
}

TEST(CmapFormat4, CodesOutside16BitsAreMissing) {
    const CmapReading reading = read(CmapFormat4::of({{0, 7}, {'A', 3}}));
    for (const int code : {0x10000, 0x10041, 0x110000, 0x7FFFFFFF, -1, -2, -0x10000})
        EXPECT_EQ(reading(code), kMissing) << code;
}

TEST(CmapFormat4, TheDeltaIsAddedModulo65536) {
    const CmapReading reading =
        read({.segments = {{.startCode = 0xF000, .endCode = 0xF001, .idDelta = 0x1005}, {}}});
    EXPECT_EQ(reading(0xF000), 5);
    EXPECT_EQ(reading(0xF001), 6);
}

TEST(CmapFormat4, AGlyphArrayAnswersWithTheDeltaAdded) {
    const CmapReading reading =
        read(CmapFormat4::withGlyphArray({{'A', 3}, {'B', 4}, {'X', 8}}, 100));
    EXPECT_EQ(reading('A'), 3);
    EXPECT_EQ(reading('B'), 4);
    EXPECT_EQ(reading('X'), 8);
}

TEST(CmapFormat4, TheDeltaIsAddedToAnElementOfZeroToo) {
    const CmapReading reading = read(
        {.segments = {{.startCode = 'A', .endCode = 'B', .idDelta = 20, .idRangeOffset = 4}, {}},
         .glyphIdArray = {0, 1}});
    EXPECT_EQ(reading('A'), 20);
    EXPECT_EQ(reading('B'), 21);
}

TEST(CmapFormat4, ARangeOffsetMayPointAnywhereInTheBytesHeld) {
    // Two bytes on from its own place stands the next range offset, which serves as a glyph.
    const CmapReading reading =
        read({.segments = {{.startCode = 'A', .endCode = 'A', .idDelta = 1, .idRangeOffset = 2},
                           {.startCode = 'B', .endCode = 'B', .idDelta = 0, .idRangeOffset = 6},
                           {}},
              .glyphIdArray = {41, 42, 43}});
    EXPECT_EQ(reading('A'), 7);
    EXPECT_EQ(reading('B'), 42);
}

TEST(CmapFormat4, BytesBehindTheSubtableAreHeldAsFarAsItsLengthReaches) {
    const Bytes subtable = CmapFormat4{
        .segments = {{.startCode = 'A', .endCode = 'A', .idDelta = 0, .idRangeOffset = 4},
                     {}}}.build();
    Bytes followed = subtable;
    followed.u16(55);
    EXPECT_EQ(CmapReading::of(followed)('A'), 55);
    EXPECT_EQ(CmapReading::of(subtable)('A'), kMissing);
}

TEST(CmapFormat4, ARangeOffsetOutsideTheBytesHeldIsMissing) {
    for (const int offset : {3, 4, 1000, 0xFFFF}) {
        const CmapReading reading =
            read({.segments = {{.startCode = 'A',
                                .endCode = 'A',
                                .idDelta = 1,
                                .idRangeOffset = static_cast<std::uint16_t>(offset)},
                               {.startCode = 'B', .endCode = 'B', .idDelta = 1}}});
        EXPECT_EQ(reading('A'), kMissing) << offset;
        EXPECT_EQ(reading('B'), 'C') << offset;
    }
}

TEST(CmapFormat4, ASegmentWithoutClosingSegmentAnswersAndTheCodesBehindItAreMissing) {
    const CmapReading reading =
        read({.segments = {{.startCode = 'A', .endCode = 'B', .idDelta = 0}}});
    EXPECT_EQ(reading('B'), 'B');
    EXPECT_EQ(reading('C'), kMissing);
    EXPECT_EQ(reading(0xFFFF), kMissing);
}

TEST(CmapFormat4, NoSegmentsMapNothing) {
    const CmapReading reading = read({});
    EXPECT_TRUE(reading.ok);
    EXPECT_TRUE(reading.cmap.holdsSubtable());
    EXPECT_EQ(reading('A'), kMissing);
    EXPECT_EQ(reading.cmap.embedableCharCount(), 0U);
}

TEST(CmapFormat4, CountsTheCodesBeforeTheClosingSegment) {
    EXPECT_EQ(read(CmapFormat4::of({{'A', 3}, {'B', 4}, {0x4E00, 9}})).cmap.embedableCharCount(),
              3U);
    EXPECT_EQ(read({.segments = {{.startCode = 'A', .endCode = 'C'},
                                 {},
                                 {.startCode = 'D', .endCode = 'Z'}}})
                  .cmap.embedableCharCount(),
              3U)
        << "the first 0xFFFF ends it";
}

TEST(CmapFormat4, ALengthTooShortForItsSegmentsOrOddIsAFileError) {
    auto table = CmapFormat4::of({{'A', 3}});
    ASSERT_EQ(table.segments.size(), 2U);
    table.glyphIdArray.resize(20);
    for (const int length : {0, 14, 16, 17, 19, 33}) {
        table.length = static_cast<std::uint16_t>(length);
        EXPECT_EQ(read(table).complaint(), fileError("'cmap' table format length error")) << length;
    }
    table.length = 18; // 2 segments of 8 bytes, and the padding word
    EXPECT_TRUE(read(table).ok);
    EXPECT_EQ(read(table)('A'), 3);
}

TEST(CmapFormat4, AShortHeaderIsAReadError) {
    const Bytes table = CmapFormat4::of({{'A', 3}}).build();
    EXPECT_EQ(CmapReading::cut(table, 13).complaint(),
              readError("'cmap' table format 4 read error"));
}

TEST(CmapFormat4, ASegmentReadThatEndsBeforeTheTableIsAReadError) {
    const Bytes table = CmapFormat4::of({{'A', 3}}).build();
    EXPECT_EQ(CmapReading::cut(table, table.size() - 1).complaint(),
              readError("'cmap' table segment read error"));
}

TEST(CmapFormat4, ALengthFourteenTooLargePassesWhenTheFileGoesOn) {
    auto table = CmapFormat4::of({{'A', 3}});
    const std::size_t size = table.build().size();
    table.length = static_cast<std::uint16_t>(size + 14);
    Bytes followed = table.build();
    followed.zero(14);
    EXPECT_EQ(CmapReading::of(followed)('A'), 3);
    EXPECT_EQ(CmapReading::of(followed).complaint(), kNoComplaint);
    EXPECT_EQ(read(table).complaint(), readError("'cmap' table segment read error"));
}

TEST(CmapFormat4, SegmentsOfWhichNotEveryFieldIsThereAreMissing) {
    // One segment needs 10 bytes behind the header; a length of 10 asks for none.
    auto table = CmapFormat4{.segments = {{.startCode = 'A', .endCode = 'A', .idDelta = 1}}};
    table.length = 10;
    const Bytes subtable = table.build();
    for (std::size_t kept = 14; kept <= subtable.size(); ++kept) {
        const CmapReading reading = CmapReading::cut(subtable, kept);
        EXPECT_TRUE(reading.ok) << kept;
        EXPECT_EQ(reading('A'), kept == subtable.size() ? 'B' : kMissing) << kept;
    }
}

TEST(CmapFormat4, UnsortedAndOverlappingSegmentsAnswerOrMiss) {
    const CmapReading reading =
        read({.segments = {{.startCode = 0x100, .endCode = 0x200, .idDelta = 1},
                           {.startCode = 0x50, .endCode = 0x60, .idDelta = 2},
                           {.startCode = 0x1F0, .endCode = 0x180, .idDelta = 3},
                           {}}});
    for (int code = 0; code <= 0xFFFF; ++code)
        (void)reading(code);
    EXPECT_EQ(reading(0x9000), kMissing);
}

TEST(CmapFormat4, OfOverlappingSegmentsTheFirstThatEndsLateEnoughAnswers) {
    const CmapReading reading = read({.segments = {{.startCode = 10, .endCode = 20, .idDelta = 100},
                                                   {.startCode = 15, .endCode = 30, .idDelta = 200},
                                                   {.startCode = 5, .endCode = 30, .idDelta = 300},
                                                   {}}});
    EXPECT_EQ(reading(15), 115);
    EXPECT_EQ(reading(20), 120);
    EXPECT_EQ(reading(21), 221);
    EXPECT_EQ(reading(7), kMissing) << "the first candidate alone is tried";
}

TEST(CmapFormat4, EverySegmentIsFoundWhereverTheBlocksOfTheIndexLie) {
    Rng rng(4);
    CmapMap glyphs;
    for (int i = 0; i < 3000; ++i)
        glyphs[rng.below(0xFFFF)] = static_cast<std::uint16_t>(1 + rng.below(0xFFFE));
    const CmapReading reading = read(CmapFormat4::of(glyphs));
    ASSERT_TRUE(reading.ok);
    for (std::uint32_t code = 0; code < 0xFFFF; ++code) {
        const auto it = glyphs.find(code);
        ASSERT_EQ(reading(static_cast<int>(code)), it == glyphs.end() ? kMissing : it->second)
            << code;
    }
    EXPECT_EQ(reading.cmap.embedableCharCount(), glyphs.size());
}

TEST(CmapFormat4, SymbolRangeIsThatOfTheFirstSegment) {
    const CmapReading symbol =
        CmapReading::of(CmapFormat4::of({{0xF041, 5}, {0xF042, 6}}).build(), 3, 0);
    EXPECT_EQ(symbol(0x41), 5);
    EXPECT_EQ(symbol(0xF041), 5) << "used as it is";
    const CmapReading latin =
        CmapReading::of(CmapFormat4::of({{'A', 5}, {0xF042, 6}}).build(), 3, 0);
    EXPECT_EQ(latin('A'), 5);
    EXPECT_EQ(latin('B'), kMissing);
}

} // namespace
} // namespace KWFontService_NS
