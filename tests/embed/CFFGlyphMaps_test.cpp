#include "embed/CFFGlyphMaps.h"

#include "EmbedFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;

TEST(CharsetRuns, GoOnWithTheNextValueAlone) {
    std::vector<CharsetRun> runs;
    for (const int value : {1, 2, 3, 5, 6, 0xFFFF})
        addToRuns(runs, static_cast<std::uint16_t>(value));
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(runs[0].first, 1);
    EXPECT_EQ(runs[0].more, 2);
    EXPECT_EQ(runs[1].first, 5);
    EXPECT_EQ(runs[1].more, 1);
    EXPECT_EQ(runs[2].first, 0xFFFF);
    EXPECT_EQ(runs[2].more, 0);
}

TEST(CharsetRuns, MayHoldEveryValue) {
    std::vector<CharsetRun> runs;
    for (unsigned value = 0; value <= 0xFFFF; ++value)
        addToRuns(runs, static_cast<std::uint16_t>(value));
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].more, 0xFFFF);
}

TEST(FDSelectWriter, BeginsARangeWhereTheFontDictChanges) {
    FDSelectWriter writer;
    for (const int fontDict : {2, 2, 0, 0, 0, 2, 255})
        writer.add(static_cast<std::uint8_t>(fontDict));
    KWMemStream output;
    writer.write(output);
    EXPECT_EQ(KWTest::bytesOf(output),
              (Bytes{3, 0, 4, 0, 0, 2, 0, 2, 0, 0, 5, 2, 0, 6, 255, 0, 7}));
}

} // namespace
} // namespace KWFontService_NS
