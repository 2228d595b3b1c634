#include "embed/TableSet.h"

#include "support/Bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace KWFontService_NS {
namespace {

using KWCommonNS::ByteView;
using KWTest::Bytes;
using testing::ElementsAre;

TTI_Directory directoryOf(const std::vector<std::string_view>& tags,
                          std::uint32_t version = 0x00010000) {
    Bytes records;
    for (const std::string_view tag : tags)
        records.tag(tag).u32(1).u32(2).u32(3);
    return TTI_Directory(version, ByteView(records.data(), records.size()), 0);
}

std::vector<std::string> tagsOf(const TableSet& tables) {
    std::vector<std::string> tags;
    for (const TTI_TableRecord& record : tables.records)
        tags.push_back(Bytes().u32(record.tag).str());
    return tags;
}

std::vector<std::string> select(const std::vector<std::string_view>& has,
                                const std::vector<unsigned int>& list) {
    TableSet tables;
    EXPECT_TRUE(selectTables(directoryOf(has), list.data(), tables));
    return tagsOf(tables);
}

TEST(TableSet, NeedsGlyfWithLocaOrCff) {
    TableSet tables;
    EXPECT_FALSE(selectTables(directoryOf({"glyf", "head"}), nullptr, tables));
    EXPECT_FALSE(selectTables(directoryOf({"loca", "head"}), nullptr, tables));
    EXPECT_FALSE(selectTables(directoryOf({"head"}), nullptr, tables));
    EXPECT_TRUE(selectTables(directoryOf({"loca", "glyf"}), nullptr, tables));
    EXPECT_TRUE(selectTables(directoryOf({"CFF "}), nullptr, tables));
}

TEST(TableSet, HeadAloneYieldsGlyfHeadAndLoca) {
    EXPECT_THAT(select({"head", "hhea", "loca", "glyf", "maxp"}, {sfntTag("head"), 0}),
                ElementsAre("glyf", "head", "loca"));
}

TEST(TableSet, AnEmptyListStillTakesTheOutlines) {
    EXPECT_THAT(select({"CFF ", "head", "loca", "glyf"}, {0}), ElementsAre("CFF ", "glyf", "loca"));
}

TEST(TableSet, NoListTakesEveryTable) {
    TableSet tables;
    ASSERT_TRUE(selectTables(directoryOf({"zzzz", "glyf", "loca", "name"}), nullptr, tables));
    EXPECT_THAT(tagsOf(tables), ElementsAre("glyf", "loca", "name", "zzzz"));
}

TEST(TableSet, OrderComesFromTheTagsAndUpperCaseGoesFirst) {
    EXPECT_THAT(select({"post", "cvt ", "OS/2", "head", "loca", "glyf"},
                       {sfntTag("post"), sfntTag("head"), sfntTag("cvt "), sfntTag("OS/2"), 0}),
                ElementsAre("OS/2", "cvt ", "glyf", "head", "loca", "post"));
}

TEST(TableSet, TagsThatTheFontLacksAndRepeatedTagsAddNothing) {
    EXPECT_THAT(select({"head", "loca", "glyf"},
                       {sfntTag("fpgm"), sfntTag("head"), sfntTag("head"), sfntTag("glyf"), 0}),
                ElementsAre("glyf", "head", "loca"));
}

TEST(TableSet, TheDocumentListsAreTheStatedOnes) {
    const std::vector<std::string_view> all{"DSIG", "GSUB", "OS/2", "cmap", "cvt ", "fpgm",
                                            "gasp", "glyf", "head", "hhea", "hmtx", "kern",
                                            "loca", "maxp", "name", "post", "prep"};
    const auto chosen = [&](const unsigned int* list) {
        TableSet tables;
        EXPECT_TRUE(selectTables(directoryOf(all), list, tables));
        return tagsOf(tables);
    };
    EXPECT_THAT(chosen(kDocumentTables.data()),
                ElementsAre("OS/2", "cvt ", "fpgm", "glyf", "head", "hhea", "hmtx", "loca", "maxp",
                            "post", "prep"));
    EXPECT_THAT(chosen(kDocumentTablesWithCmap.data()),
                ElementsAre("OS/2", "cmap", "cvt ", "fpgm", "glyf", "head", "hhea", "hmtx", "loca",
                            "maxp", "post", "prep"));
    EXPECT_THAT(
        chosen(kPostScriptTables.data()),
        ElementsAre("cvt ", "fpgm", "glyf", "head", "hhea", "hmtx", "loca", "maxp", "prep"));
}

TEST(TableSet, SearchFieldsFollowFromTheCount) {
    struct Row {
        int count, searchRange, entrySelector, rangeShift;
    };
    for (const Row& row : {Row{2, 32, 1, 0}, Row{3, 32, 1, 16}, Row{4, 64, 2, 0},
                           Row{11, 128, 3, 48}, Row{16, 256, 4, 0}}) {
        std::vector<std::string> names;
        for (int i = 2; i < row.count; ++i)
            names.push_back("t0" + std::to_string(10 + i));
        std::vector<std::string_view> tags{"glyf", "loca"};
        tags.insert(tags.end(), names.begin(), names.end());
        TableSet tables;
        ASSERT_TRUE(selectTables(directoryOf(tags), nullptr, tables));
        EXPECT_EQ(tables.numTables, row.count);
        EXPECT_EQ(tables.searchRange, row.searchRange) << row.count;
        EXPECT_EQ(tables.entrySelector, row.entrySelector) << row.count;
        EXPECT_EQ(tables.rangeShift, row.rangeShift) << row.count;
    }
}

TEST(TableSet, SearchFieldsKeepTheirLowSixteenBits) {
    Bytes records;
    for (std::uint32_t tag = 0; tag < 0xFFFD; ++tag)
        records.u32(0x20000000 + tag).zero(12);
    records.tag("glyf").zero(12).tag("loca").zero(12);
    TableSet tables;
    ASSERT_TRUE(selectTables(TTI_Directory(0, ByteView(records.data(), records.size()), 0), nullptr,
                             tables));
    EXPECT_EQ(tables.numTables, 0xFFFF);
    EXPECT_EQ(tables.searchRange, 0); // 0x80000
    EXPECT_EQ(tables.entrySelector, 15);
    EXPECT_EQ(tables.rangeShift, 0xFFF0); // 0x7FFF0
}

TEST(TableSet, OneTableHasASearchRangeOfSixteen) {
    TableSet tables;
    ASSERT_TRUE(selectTables(directoryOf({"CFF "}), nullptr, tables));
    EXPECT_EQ(tables.searchRange, 16);
    EXPECT_EQ(tables.entrySelector, 0);
    EXPECT_EQ(tables.rangeShift, 0);
}

TEST(TableSet, TheVersionIsTheSources) {
    TableSet tables;
    ASSERT_TRUE(selectTables(directoryOf({"glyf", "loca"}, sfntTag("true")), nullptr, tables));
    EXPECT_EQ(tables.version, sfntTag("true"));
}

} // namespace
} // namespace KWFontService_NS
