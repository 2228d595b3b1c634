#include "fonts/TTI_Metrics.h"

#include "fonts/TableFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// `hmtx` as `count` metrics say, of a font with `glyphs` glyphs.
struct Reading {
    Reading(const Bytes& table, int count, int glyphs) {
        TableInStream file("hmtx", table);
        SfntReader reader = file.reader();
        ok = metrics.read(reader, file.record(), count, glyphs);
        complaint = file.complaint();
    }

    TTI_Metrics metrics;
    bool ok = false;
    Complaint complaint;
};

std::uint16_t mostCommonOf(std::initializer_list<std::uint16_t> advances) {
    Hmtx hmtx;
    for (const std::uint16_t advance : advances)
        hmtx.metrics.push_back({advance, 0});
    const int count = static_cast<int>(advances.size());
    return Reading(hmtx.build(), count, count).metrics.mostCommonAdvance;
}

TEST(Metrics, ReadsAdvancesAndSideBearings) {
    const Hmtx hmtx{.metrics = {{500, -10}, {65535, 20}}, .bearings = {-32768, 7}};
    const Reading read(hmtx.build(), 2, 4);
    ASSERT_TRUE(read.ok) << read.complaint;
    ASSERT_EQ(read.metrics.hMetrics.size(), 2U);
    EXPECT_EQ(read.metrics.hMetrics[0].advance, 500);
    EXPECT_EQ(read.metrics.hMetrics[0].sideBearing, -10);
    EXPECT_EQ(read.metrics.hMetrics[1].advance, 65535);
    EXPECT_EQ(read.metrics.hMetrics[1].sideBearing, 20);
    EXPECT_EQ(read.metrics.leftSideBearings, (std::vector<std::int16_t>{-32768, 7}));
}

TEST(Metrics, GlyphsPastTheLastMetricShareItsAdvance) {
    const Reading read(Hmtx{.metrics = {{500, 0}, {600, 0}}, .bearings = {0}}.build(), 2, 3);
    EXPECT_EQ(read.metrics.advance(0), 500);
    EXPECT_EQ(read.metrics.advance(1), 600);
    EXPECT_EQ(read.metrics.advance(2), 600);
    EXPECT_EQ(read.metrics.advance(0xFFFE), 600);
}

TEST(Metrics, WithoutMetricsEveryAdvanceIsZero) {
    const TTI_Metrics none;
    EXPECT_EQ(none.advance(0), 0);
    EXPECT_EQ(none.advance(5), 0);
    EXPECT_EQ(none.mostCommonAdvance, 0);
}

TEST(Metrics, TheMostCommonAdvanceIsTheOneThatOccursMostOften) {
    EXPECT_EQ(mostCommonOf({700}), 700);
    EXPECT_EQ(mostCommonOf({500, 600, 600, 500, 500}), 500);
    EXPECT_EQ(mostCommonOf({500, 600, 600, 600, 500}), 600);
}

TEST(Metrics, ATieStaysWithTheAdvanceThatReachedTheCountFirst) {
    EXPECT_EQ(mostCommonOf({500, 500, 600, 600}), 500);
    EXPECT_EQ(mostCommonOf({500, 600, 600, 500}), 600);
    EXPECT_EQ(mostCommonOf({900, 100}), 900);
}

TEST(Metrics, ShortMetricsAreReported) {
    const Bytes whole = Hmtx{.metrics = {{500, 0}, {600, 0}}}.build();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Reading read(Bytes(whole).truncate(size), 2, 2);
        EXPECT_FALSE(read.ok) << size;
        EXPECT_EQ(read.complaint, readError("'hmtx' table metric read error")) << size;
        EXPECT_EQ(read.metrics.advance(0), 0) << size;
    }
}

TEST(Metrics, ShortSideBearingsAreReportedAndTheAdvancesStay) {
    const Bytes table = Hmtx{.metrics = {{500, 0}}, .bearings = {1, 2}}.build();
    const Reading read(Bytes(table).truncate(table.size() - 1), 1, 3);
    EXPECT_FALSE(read.ok);
    EXPECT_EQ(read.complaint, readError("'hmtx' left side bearing read error"));
    EXPECT_EQ(read.metrics.advance(2), 500);
}

TEST(Metrics, WithoutAGlyphCountNoSideBearingIsRead) {
    const Reading read(Hmtx{.metrics = {{500, 0}, {600, 0}}}.build(), 2, 0);
    EXPECT_TRUE(read.ok);
    EXPECT_TRUE(read.metrics.leftSideBearings.empty());
}

} // namespace
} // namespace KWFontService_NS
