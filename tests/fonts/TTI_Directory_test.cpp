#include "fonts/TTI_Directory.h"
#include "support/Bytes.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using KWCommonNS::ByteView;
using KWTest::Bytes;

Bytes record(std::string_view tag, std::uint32_t checkSum, std::uint32_t offset,
             std::uint32_t length) {
    return Bytes().tag(tag).u32(checkSum).u32(offset).u32(length);
}

TTI_Directory directoryOf(const Bytes& records, std::uint32_t rebase = 0) {
    return TTI_Directory(0x00010000, ByteView(records), rebase);
}

TEST(Directory, FindsATableByItsTag) {
    Bytes records = record("head", 1, 100, 54);
    records.bytes(record("OS/2", 2, 200, 96));
    const TTI_Directory directory = directoryOf(records);
    const TTI_TableRecord* os2 = directory.find(sfntTag("OS/2"));
    ASSERT_NE(os2, nullptr);
    EXPECT_EQ(os2->checkSum, 2U);
    EXPECT_EQ(os2->offset, 200U);
    EXPECT_EQ(os2->length, 96U);
    EXPECT_EQ(directory.find(sfntTag("glyf")), nullptr);
    EXPECT_TRUE(directory.has(sfntTag("head")));
    EXPECT_EQ(directory.version(), 0x00010000U);
}

TEST(Directory, RecordsAreSortedByTagUpperCaseFirst) {
    Bytes records = record("head", 0, 0, 0);
    records.bytes(record("cmap", 0, 0, 0)).bytes(record("OS/2", 0, 0, 0));
    const TTI_Directory directory = directoryOf(records);
    ASSERT_EQ(directory.records().size(), 3U);
    EXPECT_EQ(directory.records()[0].tag, sfntTag("OS/2"));
    EXPECT_EQ(directory.records()[1].tag, sfntTag("cmap"));
    EXPECT_EQ(directory.records()[2].tag, sfntTag("head"));
}

TEST(Directory, OfARepeatedTagTheFirstRecordStays) {
    Bytes records = record("head", 0, 1, 0);
    records.bytes(record("cmap", 0, 2, 0)).bytes(record("head", 0, 3, 0));
    const TTI_Directory directory = directoryOf(records);
    EXPECT_EQ(directory.records().size(), 2U);
    EXPECT_EQ(directory.find(sfntTag("head"))->offset, 1U);
}

TEST(Directory, OffsetsAreRebasedWhereTheyCountFromTheFont) {
    EXPECT_EQ(directoryOf(record("head", 0, 100, 0), 260).find(sfntTag("head"))->offset, 360U);
}

TEST(Directory, ARebasedOffsetThatWouldWrapAroundIsPastEveryFile) {
    const auto rebased = [](std::uint32_t offset, std::uint32_t rebase) {
        return directoryOf(record("head", 0, offset, 0), rebase).find(sfntTag("head"))->offset;
    };
    EXPECT_EQ(rebased(0xFFFFFF00U, 0xFF), 0xFFFFFFFFU);
    EXPECT_EQ(rebased(0xFFFFFF00U, 0x100), 0xFFFFFFFFU);
    EXPECT_EQ(rebased(1, 0xFFFFFFFFU), 0xFFFFFFFFU);
    EXPECT_EQ(rebased(0xFFFFFF00U, 0xFE), 0xFFFFFFFEU);
}

TEST(Directory, AnUnfinishedRecordIsLeftOut) {
    Bytes records = record("head", 0, 0, 0);
    records.tag("cmap");
    EXPECT_EQ(directoryOf(records).records().size(), 1U);
}

} // namespace
} // namespace KWFontService_NS
