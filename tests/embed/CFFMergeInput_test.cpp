#include "embed/CFFMergeInput.h"

#include "MergeFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;
using Entry = MergeCharset::Entry;

struct ReadCharset : MergeCharset {
    bool ok;
    ReadCharset(const Bytes& bytes, std::size_t glyphCount) {
        TableStream stream(joined(Bytes{9, 9, 9}, bytes));
        ok = getCharsets(stream.table, 3, glyphCount, *this);
    }
};

TEST(GetCharsets, FormatZeroHasAValueForEachGlyphFromOneOn) {
    const ReadCharset charset(Bytes{0}.u16s({5, 3, 400}), 4);
    EXPECT_TRUE(charset.ok);
    EXPECT_THAT(charset.entries, ElementsAre(Entry{3, 2}, Entry{5, 1}, Entry{400, 3}));
    EXPECT_FALSE(charset.hasZero);
    EXPECT_FALSE(ReadCharset(Bytes{0}.u16s({5, 3}), 4).ok) << "cut off";
}

TEST(GetCharsets, FormatOneHasRangesUpToTheLastGlyph) {
    const ReadCharset charset(Bytes{1, 0, 7, 1, 0, 3, 9}, 5);
    EXPECT_TRUE(charset.ok);
    EXPECT_THAT(charset.entries, ElementsAre(Entry{3, 3}, Entry{4, 4}, Entry{7, 1}, Entry{8, 2}));
    EXPECT_FALSE(ReadCharset(Bytes{1, 0, 7, 1}, 5).ok) << "cut off";
    EXPECT_FALSE(ReadCharset(Bytes{1, 0, 7}, 5).ok);
}

TEST(GetCharsets, ARangeFromZeroHasNoEntryForZeroItself) {
    const ReadCharset charset(Bytes{1, 0, 0, 2}, 4);
    EXPECT_TRUE(charset.ok);
    EXPECT_TRUE(charset.hasZero);
    EXPECT_THAT(charset.entries, ElementsAre(Entry{1, 2}, Entry{2, 3}));
}

TEST(GetCharsets, ASubsetOfGlyphZeroAloneHasARangeOfZeroAndNoEntry) {
    const ReadCharset charset(Bytes{1, 0, 0, 0}, 1);
    EXPECT_TRUE(charset.ok);
    EXPECT_TRUE(charset.hasZero);
    EXPECT_TRUE(charset.entries.empty());
    EXPECT_TRUE(ReadCharset(Bytes{1}, 1).ok) << "and needs none";
}

TEST(GetCharsets, FormatTwoIsNotHandled) {
    MergeCharset charset;
    charset.entries = {{1, 1}};
    TableStream stream(Bytes{9, 2, 0, 7, 0, 1});
    EXPECT_FALSE(getCharsets(stream.table, 1, 3, charset));
    EXPECT_TRUE(charset.entries.empty());
    EXPECT_FALSE(ReadCharset(Bytes{3, 0, 7, 0, 1}, 3).ok);
    EXPECT_FALSE(ReadCharset(Bytes{}, 3).ok);
}

TEST(GetCharsets, OfAValueThatComesTwiceTheFirstGlyphCounts) {
    EXPECT_THAT(ReadCharset(Bytes{0}.u16s({5, 3, 5}), 4).entries,
                ElementsAre(Entry{3, 2}, Entry{5, 1}));
    EXPECT_THAT(ReadCharset(Bytes{1, 0, 7, 1, 0, 7, 1}, 5).entries,
                ElementsAre(Entry{7, 1}, Entry{8, 2}));
}

TEST(GetCharsets, ValuesEndAtTheHighest) {
    EXPECT_THAT(ReadCharset(Bytes{1, 0xFF, 0xFE, 9, 0, 1, 0}, 12).entries,
                ElementsAre(Entry{1, 11}, Entry{0xFFFE, 1}, Entry{0xFFFF, 2}));
}

std::vector<FDRange> fdSelectOf(const Bytes& bytes, std::size_t glyphCount) {
    TableStream stream(joined(Bytes{9}, bytes));
    std::vector<FDRange> ranges;
    if (!getFDSelect(stream.table, 1, glyphCount, ranges))
        return {};
    return ranges;
}

TEST(GetFDSelect, ReadsARangeForEachFontDict) {
    EXPECT_THAT(fdSelectOf(Bytes{3, 0, 2, 0, 0, 7, 0, 2, 8, 0, 4}, 4),
                ElementsAre(FDRange{0, 1, 7}, FDRange{2, 3, 8}));
}

TEST(GetFDSelect, ReadsAByteForEachGlyph) {
    EXPECT_THAT(fdSelectOf(Bytes{0, 7, 7, 8, 7}, 4),
                ElementsAre(FDRange{0, 1, 7}, FDRange{2, 2, 8}, FDRange{3, 3, 7}));
    EXPECT_THAT(fdSelectOf(Bytes{0, 7, 7, 8}, 4), ElementsAre()) << "cut off";
}

TEST(GetFDSelect, OtherFormatsAndTheOffsetZeroAreNone) {
    EXPECT_THAT(fdSelectOf(Bytes{4, 0, 2, 0, 0, 7, 0, 2}, 2), ElementsAre());
    TableStream stream(Bytes{3, 0, 1, 0, 0, 7, 0, 2});
    std::vector<FDRange> ranges;
    EXPECT_FALSE(getFDSelect(stream.table, 0, 2, ranges));
    EXPECT_FALSE(getFDSelect(stream.table, 100, 2, ranges));
}

std::string nameOf(const std::string& name) {
    CffSections table = nameKeyed();
    table.names = {Bytes::ofText(name)};
    TableStream stream(table.build());
    CFFMergeInput input(stream.table);
    EXPECT_TRUE(input.readHead());
    return std::string(input.fontName());
}

TEST(CFFMergeInput, TheNameIsWhatStandsBehindTheFirstPlus) {
    EXPECT_EQ(nameOf("ABCDEF+Foo"), "Foo");
    EXPECT_EQ(nameOf("A+Foo+Bar"), "Foo+Bar");
    EXPECT_EQ(nameOf("Foo"), "Foo");
    EXPECT_EQ(nameOf("Foo+"), "");
}

TEST(CFFMergeInput, ANameThatBeginsWithAPlusKeepsIt) {
    EXPECT_EQ(nameOf("+Foo"), "+Foo");
    EXPECT_EQ(nameOf("+A+Foo"), "+A+Foo");
}

TEST(CFFMergeInput, EmptyStringsBeforeManyGlobalSubrsAreTwoBytes) {
    CffSections table = nameKeyed();
    table.strings = {};
    table.topDict = Bytes();
    table.charset = Bytes{0}.u16s({1, 2, 3, 4});
    table.globalSubrs = std::vector<Bytes>(300, Bytes{11}); // their count begins with 1
    table.globalSubrs[0] = Bytes{150, 22, 11};
    table.charStrings[1] = joined(callOf(0, true), Bytes{14});
    TableStream stream(table.build());
    CFFMergeInput input(stream.table);
    ASSERT_TRUE(input.readHead());
    ASSERT_TRUE(input.readGlyphs(MergedSIDs(), false));
    std::string out;
    EXPECT_TRUE(input.addCharString(1, out));
    EXPECT_EQ(Bytes::ofText(out), (Bytes{150, 22, 14}));
}

TEST(CFFMergeInput, FontDictsThatShareAPrivateDictShareItsEntries) {
    const Bytes plain = cidSections(cidKeyed()).build();
    // The third Font DICT names the Private DICT of the second.
    const Bytes third = Bytes().u8(29).u32(plain.offsetOf("private2")).u8(18);
    Bytes table = plain;
    const std::size_t at = table.str().find(third.str());
    ASSERT_NE(at, std::string::npos);
    table.patchU32At(at + 1, static_cast<std::uint32_t>(plain.offsetOf("private1")));
    TableStream stream(table);
    CFFMergeInput input(stream.table);
    ASSERT_TRUE(input.readHead());
    ASSERT_TRUE(input.readGlyphs(MergedSIDs({391, 392}), true));
    ASSERT_EQ(input.fontDicts.size(), 3u);
    EXPECT_EQ(input.fontDicts[1].privateDict, input.fontDicts[2].privateDict);
    EXPECT_NE(input.fontDicts[0].privateDict, input.fontDicts[1].privateDict);
}

} // namespace
} // namespace KWFontService_NS
