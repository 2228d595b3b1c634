#include "common/KWLimits.h"
#include "embed/GlyphReader.h"

#include "GlyphFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWCommonNS::ByteView;
using KWTest::Bytes;
using KWTest::GlyfLoca;
using KWTest::GlyphFile;
using KWTest::locaOf;
using testing::ElementsAre;
using testing::Pair;

Bytes bytesOf(ByteView view) {
    return Bytes(std::vector<std::uint8_t>(view.data(), view.data() + view.size()));
}

/// Glyphs of 10, 0, 11, 12, 3000 and 13 bytes, each filled with its id.
GlyfLoca sixGlyphs() {
    GlyfLoca outlines{.longLoca = true, .alignment = 1};
    std::uint8_t id = 0;
    for (const std::size_t length : {10u, 0u, 11u, 12u, 3000u, 13u})
        outlines.add(Bytes().fill(length, id++));
    return outlines;
}

using Runs = std::vector<std::pair<std::vector<std::uint16_t>, std::size_t>>;

/// The ids and sizes of the runs that a visit shows.
Runs runsOf(GlyphFile& file, const std::vector<std::uint16_t>& glyphs, std::uint32_t maxGap) {
    Runs runs;
    EXPECT_TRUE(file.reader.visit(glyphs, maxGap, [&](const GlyphRun& run) {
        runs.emplace_back(std::vector<std::uint16_t>(run.glyphs.begin(), run.glyphs.end()),
                          run.bytes.size());
    }));
    return runs;
}

TEST(GlyphReader, ShowsNeighboursAsOneRun) {
    GlyphFile file(sixGlyphs());
    EXPECT_THAT(runsOf(file, {0, 1, 2, 3}, 0), ElementsAre(Pair(ElementsAre(0, 1, 2, 3), 33u)));
    EXPECT_THAT(runsOf(file, {0, 2, 3}, 0), ElementsAre(Pair(ElementsAre(0, 2, 3), 33u)));
}

TEST(GlyphReader, ABytelessGapIsNoGapAndAnotherCutsTheRun) {
    GlyphFile file(sixGlyphs());
    for (const std::uint32_t maxGap : {0u, 1024u, 100000u})
        EXPECT_THAT(runsOf(file, {0, 3, 5}, maxGap),
                    ElementsAre(Pair(ElementsAre(0), 10u), Pair(ElementsAre(3), 12u),
                                Pair(ElementsAre(5), 13u)))
            << maxGap;
}

TEST(GlyphReader, ShowsNothingOfGlyphsWithoutBytes) {
    GlyphFile file(sixGlyphs());
    EXPECT_THAT(runsOf(file, {1}, 0), ElementsAre());
    EXPECT_THAT(runsOf(file, {1, 6, 500}, 1024), ElementsAre());
    EXPECT_THAT(runsOf(file, {}, 0), ElementsAre());
}

TEST(GlyphReader, SplitsARunIntoItsGlyphs) {
    const GlyfLoca outlines = sixGlyphs();
    for (const std::uint32_t maxGap : {0u, 1024u, 100000u}) {
        GlyphFile file(outlines);
        std::map<int, Bytes> seen;
        EXPECT_TRUE(file.reader.visit(
            std::vector<std::uint16_t>{0, 1, 2, 4, 5}, maxGap, [&](const GlyphRun& run) {
                file.reader.split(run, [&](std::uint16_t gid, ByteView glyph) {
                    EXPECT_TRUE(seen.emplace(gid, bytesOf(glyph)).second);
                });
            }));
        EXPECT_EQ(seen.size(), 4u);
        for (const auto& [gid, bytes] : seen)
            EXPECT_EQ(bytes, outlines.glyphs[static_cast<std::size_t>(gid)]) << gid;
    }
}

TEST(GlyphReader, ReadsGlyphsThatAreLargerThanAPiece) {
    GlyfLoca outlines{.longLoca = true};
    outlines.add(Bytes().fill(200000, 1)).add(Bytes().fill(60000, 2)).add(Bytes().fill(60000, 3));
    GlyphFile file(outlines);
    std::size_t total = 0;
    EXPECT_TRUE(file.reader.visit(std::vector<std::uint16_t>{0, 1, 2}, 0, [&](const GlyphRun& run) {
        for (std::size_t i = 0; i < run.bytes.size(); i += 1000)
            EXPECT_EQ(run.bytes.u8(i), run.glyphs[0] + 1);
        total += run.bytes.size();
    }));
    EXPECT_EQ(total, 320000u);
}

TEST(GlyphReader, GlyphsInAnotherOrderThanTheirBytesAreReadAllTheSame) {
    GlyphFile file(Bytes().fill(20, 7).fill(20, 8), locaOf({20, 40, 0, 20}, true), true, 3);
    EXPECT_THAT(runsOf(file, {0, 1, 2}, 1024),
                ElementsAre(Pair(ElementsAre(0, 1), 20u), Pair(ElementsAre(2), 20u)));
}

TEST(GlyphReader, FailsWhereAGlyphLeavesTheFile) {
    GlyphFile file(Bytes().zero(40), locaOf({0, 10, 41, 0xFFFFFFFF}, true), true, 3);
    const auto ignore = [](const GlyphRun&) {};
    EXPECT_TRUE(file.reader.visit(std::vector<std::uint16_t>{0}, 0, ignore));
    EXPECT_FALSE(file.reader.visit(std::vector<std::uint16_t>{1}, 0, ignore));
    EXPECT_FALSE(file.reader.visit(std::vector<std::uint16_t>{2}, 0, ignore));
}

TEST(GlyphReader, FailsOnGlyphsThatOverlapBeyondWhatTheFileJustifies) {
    std::vector<std::uint32_t> offsets;
    std::vector<std::uint16_t> glyphs;
    for (std::uint16_t i = 0; i < 200; ++i) {
        offsets.insert(offsets.end(), {0, 1000});
        glyphs.push_back(static_cast<std::uint16_t>(2 * i));
    }
    GlyphFile file(Bytes().zero(1000), locaOf(offsets, true), true, 400);
    std::size_t shown = 0;
    EXPECT_FALSE(
        file.reader.visit(glyphs, 0, [&](const GlyphRun& run) { shown += run.bytes.size(); }));
    EXPECT_LE(shown, KWCommonNS::kMaxEmbedReadFactor * (1000u + GlyphFile::kGlyfOffset));
}

} // namespace
} // namespace KWFontService_NS
