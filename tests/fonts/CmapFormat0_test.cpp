#include "fonts/CmapFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(CmapFormat0, AnswersTheGlyphOfAByte) {
    const CmapReading reading =
        CmapReading::of(CmapFormat0::of({{0, 3}, {255, 200}}).build(), 1, 0);
    EXPECT_EQ(reading(0), 3);
    EXPECT_EQ(reading(255), 200);
    EXPECT_EQ(reading(1), kMissing);
}

TEST(CmapFormat0, CodesOutsideAByteAreMissing) {
    const CmapReading reading =
        CmapReading::of(CmapFormat0::of({{0, 3}, {255, 200}}).build(), 1, 0);
    for (const int ch : {256, 511, 0x10000, -1, -256})
        EXPECT_EQ(reading(ch), kMissing) << ch;
}

TEST(CmapFormat0, CountsOneMoreThanItsGlyphs) {
    EXPECT_EQ(CmapReading::of(CmapFormat0{}.build(), 1, 0).cmap.embedableCharCount(), 1U);
    EXPECT_EQ(
        CmapReading::of(CmapFormat0::of({{1, 9}, {7, 9}}).build(), 1, 0).cmap.embedableCharCount(),
        3U);
}

TEST(CmapFormat0, AShortSubtableIsAReadError) {
    const CmapReading reading = CmapReading::cut(CmapFormat0{}.build(), 261);
    EXPECT_FALSE(reading.ok);
    EXPECT_EQ(reading.complaint(), readError("'cmap' table format 0 read error"));
}

TEST(CmapFormat0, TheLengthFieldDoesNotMatter) {
    auto table = CmapFormat0::of({{'A', 4}});
    table.length = 0;
    EXPECT_EQ(CmapReading::of(table.build(), 1, 0)('A'), 4);
}

} // namespace
} // namespace KWFontService_NS
