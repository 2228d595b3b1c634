#include "fonts/TTI_VerticalMetrics.h"

#include "fonts/TableFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const Complaint kVmtxError = readError("'vmtx' table metric read error");
const Complaint kVorgError = readError("'VORG' table read error");

struct VorgReading {
    explicit VorgReading(const Bytes& table) {
        TableInStream file("VORG", table);
        SfntReader reader = file.reader();
        ok = vertical.readVorg(reader, file.record());
        complaint = file.complaint();
    }

    TTI_VerticalMetrics vertical;
    bool ok = false;
    Complaint complaint;
};

TEST(VerticalMetrics, ReadsAdvances) {
    TableInStream file("vmtx", Vmtx{.metrics = {{1000, -5}, {800, 6}}}.build());
    SfntReader reader = file.reader();
    TTI_VerticalMetrics vertical;
    EXPECT_FALSE(vertical.hasAdvances());
    ASSERT_TRUE(vertical.readVmtx(reader, file.record(), 2));
    EXPECT_TRUE(vertical.hasAdvances());
    EXPECT_EQ(vertical.advance(0), 1000);
    EXPECT_EQ(vertical.vMetrics[0].sideBearing, -5);
    EXPECT_EQ(vertical.advance(1), 800);
    EXPECT_EQ(vertical.advance(2), 800);
    EXPECT_EQ(vertical.advance(0xFFFE), 800);
}

TEST(VerticalMetrics, ShortAdvancesAreReportedByTheCheckAndByTheReading) {
    const Bytes whole = Vmtx{.metrics = {{1000, 0}, {800, 0}}}.build();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        TableInStream checked("vmtx", Bytes(whole).truncate(size));
        SfntReader checker = checked.reader();
        EXPECT_FALSE(TTI_VerticalMetrics::checkVmtx(checker, checked.record(), 2)) << size;
        EXPECT_EQ(checked.complaint(), kVmtxError) << size;

        TableInStream read("vmtx", Bytes(whole).truncate(size));
        SfntReader reader = read.reader();
        TTI_VerticalMetrics vertical;
        EXPECT_FALSE(vertical.readVmtx(reader, read.record(), 2)) << size;
        EXPECT_EQ(read.complaint(), kVmtxError) << size;
        EXPECT_FALSE(vertical.hasAdvances()) << size;
    }
}

TEST(VerticalMetrics, TheCheckAcceptsATableThatIsThere) {
    TableInStream file("vmtx", Vmtx{.metrics = {{1000, 0}, {800, 0}}}.build());
    SfntReader reader = file.reader();
    EXPECT_TRUE(TTI_VerticalMetrics::checkVmtx(reader, file.record(), 2));
    EXPECT_TRUE(TTI_VerticalMetrics::checkVmtx(reader, file.record(), 0));
    EXPECT_EQ(file.complaint(), kNoComplaint);
}

TEST(VerticalMetrics, AnOriginIsTheGlyphsOwnElseTheDefault) {
    const VorgReading read(
        Vorg{.defaultVertOriginY = 880, .origins = {{2, 900}, {4, -32768}, {9, 0}}}.build());
    ASSERT_TRUE(read.ok) << read.complaint;
    EXPECT_EQ(read.vertical.vertOriginY(1), 880);
    EXPECT_EQ(read.vertical.vertOriginY(2), 900);
    EXPECT_EQ(read.vertical.vertOriginY(3), 880);
    EXPECT_EQ(read.vertical.vertOriginY(4), -32768);
    EXPECT_EQ(read.vertical.vertOriginY(9), 0);
    EXPECT_EQ(read.vertical.vertOriginY(0xFFFF), 880);
}

TEST(VerticalMetrics, WithoutVorgEveryOriginIsZero) {
    EXPECT_EQ(TTI_VerticalMetrics().vertOriginY(3), 0);
}

TEST(VerticalMetrics, VorgWithoutRecordsHasItsDefault) {
    const VorgReading read(Vorg{.defaultVertOriginY = -7}.build());
    EXPECT_TRUE(read.ok);
    EXPECT_EQ(read.vertical.vertOriginY(3), -7);
}

TEST(VerticalMetrics, ShortVorgIsReported) {
    const Bytes whole = Vorg{.defaultVertOriginY = 880, .origins = {{2, 900}, {4, 910}}}.build();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const VorgReading read(Bytes(whole).truncate(size));
        EXPECT_FALSE(read.ok) << size;
        EXPECT_EQ(read.complaint, kVorgError) << size;
        EXPECT_EQ(read.vertical.vertOriginY(2), size < 8 ? 0 : 880) << size;
    }
}

TEST(VerticalMetrics, VorgIsReadOnce) {
    TableInStream file("VORG", Vorg{.defaultVertOriginY = 880, .origins = {{2, 900}}}.build());
    SfntReader reader = file.reader();
    TTI_VerticalMetrics vertical;
    EXPECT_TRUE(vertical.readVorg(reader, file.record()));
    EXPECT_TRUE(vertical.readVorg(reader, file.record()));
    EXPECT_EQ(vertical.vertOriginYMetrics.size(), 1U);
}

} // namespace
} // namespace KWFontService_NS
