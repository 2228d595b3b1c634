// Two CFF tables that become one.

#include "MergeFixture.h"

#include "common/KWLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

const Bytes kNothing;

/// The bytes of the charset.
Bytes charsetOf(const WrittenCff& table, std::size_t size) {
    return table.table.slice(table.offset(15), size);
}

TEST(CFFMerge, OfNameKeyedTablesHasTheseBytes) {
    // The strings are those of the font: B has "two" in another place, and "three" besides.
    CffSections a = namedGlyphs({{34, glyph(1)}, {392, glyph(2)}});
    CffSections b = namedGlyphs({{36, glyph(3)}, {391, glyph(4)}, {392, glyph(5)}});
    a.names = {Bytes::ofText("ABCDEF+F")};
    b.names = {Bytes::ofText("GHIJKL+F")};
    a.topDict = joined(cffInteger(392), Bytes{1});
    b.strings = {Bytes::ofText("three"), Bytes::ofText("two")};
    const Bytes topDict = joined(Bytes{248, 28, 1}, cffInteger(68), Bytes{15}, cffInteger(78),
                                 Bytes{17}, cffInteger(4), cffInteger(97), Bytes{18});
    const Bytes merged = mergedNames(a, b);
    EXPECT_EQ(merged,
              joined(Bytes{1, 0, 4, 4}, cffIndex({Bytes::ofText("ABCDEF+F")}), cffIndex({topDict}),
                     cffIndex({Bytes::ofText("one"), Bytes::ofText("two"), Bytes::ofText("three")}),
                     Bytes{0, 0},                             // no global subrs
                     Bytes{1, 0, 34, 0, 0, 36, 0, 1, 136, 1}, // A, C, then 392 and 393
                     cffIndex({glyph(0), glyph(1), glyph(3), glyph(2), glyph(4)}),
                     Bytes{140, 20, 141, 21}))
        << merged.hex();
}

TEST(CFFMerge, OfCIDKeyedTablesHasTheseBytes) {
    CffCID a = cidKeyed();
    a.glyphs = {{0, 0, glyph(0)}, {10, 1, glyph(1)}};
    a.fontDicts.pop_back();
    CffCID b = cidKeyed();
    b.glyphs = {{0, 0, glyph(5)}, {11, 1, glyph(2)}, {30, 2, glyph(3)}};
    const Bytes merged = mergedCids(cidSections(a), cidSections(b));
    const Bytes topDict =
        joined(Bytes{248, 27, 248, 28, 139, 12, 30}, cffInteger(82), Bytes{15}, cffInteger(89),
               Bytes{12, 37}, cffInteger(103), Bytes{17}, cffInteger(119), Bytes{12, 36});
    const auto privateAt = [](int offset) {
        return joined(cffInteger(2), cffInteger(offset), Bytes{18});
    };
    const Bytes matrix{139, 139, 139, 12, 7};
    EXPECT_EQ(
        merged,
        joined(Bytes{1, 0, 4, 4}, cffIndex({Bytes::ofText("KWTest-Regular")}), cffIndex({topDict}),
               cffIndex(cidSections(a).strings), Bytes{0, 0}, Bytes{1, 0, 10, 1, 0, 30, 0},
               Bytes{3, 0, 3, 0, 0, 0, 0, 1, 1, 0, 3, 2, 0, 4}, // FDSelect
               cffIndex({glyph(0), glyph(1), glyph(2), glyph(3)}),
               cffIndex({privateAt(172), joined(Bytes{248, 28, 12, 38}, matrix, privateAt(174)),
                         joined(Bytes{248, 27, 12, 38}, privateAt(176))}),
               Bytes{140, 20, 141, 20, 142, 20}))
        << merged.hex();
}

// --- whether it is one font ---------------------------------------------------------------------

bool doMerge(const std::string& a, const std::string& b) {
    CffSections first = namedGlyphs({{34, glyph(1)}});
    CffSections second = first;
    first.names = {Bytes::ofText(a)};
    second.names = {Bytes::ofText(b)};
    return mergedNames(first, second) != kNothing;
}

TEST(CFFMerge, NamesHaveToBeEqualBehindTheSubsetTag) {
    EXPECT_TRUE(doMerge("ABCDEF+Foo", "GHIJKL+Foo"));
    EXPECT_TRUE(doMerge("Foo", "Foo"));
    EXPECT_FALSE(doMerge("Foo", "Bar"));
    EXPECT_FALSE(doMerge("ABCDEF+Foo", "ABCDEF+Bar"));
    EXPECT_FALSE(doMerge("+Foo", "A+oo"));
    EXPECT_TRUE(doMerge("+Foo", "+Foo"));
}

TEST(CFFMerge, NamesHaveToBeOfOneLengthWithTheTag) {
    EXPECT_FALSE(doMerge("A+Foo", "ABCDEF+Foo"));
    EXPECT_FALSE(doMerge("Foo", "ABCDEF+Foo"));
}

TEST(CFFMerge, NameIndexesHaveToHaveOffsetsOfOneSize) {
    const Bytes table = namedGlyphs({{34, glyph(1)}}).build();
    // The name with offsets of two bytes; what lies behind moves by two.
    CffSections wide = namedGlyphs({{34, glyph(1)}});
    wide.names = {Bytes::ofText("KWTest-Regular??")};
    Bytes other = wide.build();
    const Bytes name = joined(Bytes{0, 1, 2, 0, 1, 0, 15}, Bytes::ofText("KWTest-Regular"));
    for (std::size_t i = 0; i < name.size(); ++i)
        other.patchU8At(4 + i, name[i]);
    EXPECT_NE(mergedCff(other, other, false), kNothing);
    EXPECT_EQ(mergedCff(table, other, false), kNothing);
    EXPECT_EQ(mergedCff(other, table, false), kNothing);
}

TEST(CFFMerge, HeadersHaveToBeEqualAndNoLongerThanFourBytes) {
    const Bytes table = namedGlyphs({{34, glyph(1)}}).build();
    for (std::size_t at = 0; at < 4; ++at) {
        Bytes other = table;
        other.patchU8At(at, 3);
        EXPECT_EQ(mergedCff(table, other, false), kNothing) << at;
        EXPECT_NE(mergedCff(other, other, false), kNothing) << at;
    }
    Bytes longer = table;
    longer.patchU8At(2, 5);
    EXPECT_EQ(mergedCff(longer, longer, false), kNothing);
}

TEST(CFFMerge, FontsOfTheOtherKindDoNotMerge) {
    const Bytes names = namedGlyphs({{34, glyph(1)}}).build();
    const Bytes cids = cidSections(cidKeyed()).build();
    EXPECT_EQ(mergedCff(names, names, true), kNothing);
    EXPECT_EQ(mergedCff(cids, cids, false), kNothing);
    EXPECT_EQ(mergedCff(names, cids, true), kNothing);
    EXPECT_EQ(mergedCff(cids, names, false), kNothing);
}

TEST(CFFMerge, WhatTheTopDictCannotCarryEndsTheMerge) {
    CffSections plain = namedGlyphs({{34, glyph(1)}});
    for (const Bytes& entry : {Bytes{140, 12, 6}, Bytes{139, 12, 20}, Bytes{150, 16}}) {
        CffSections other = plain;
        other.topDict = entry;
        EXPECT_EQ(mergedNames(other, plain), kNothing) << entry.hex();
        EXPECT_EQ(mergedNames(plain, other), kNothing) << entry.hex();
    }
}

TEST(CFFMerge, PredefinedCharsetsDoNotMerge) {
    CffSections plain = namedGlyphs({{34, glyph(1)}});
    CffSections other = plain;
    other.charset.reset();
    EXPECT_EQ(mergedNames(other, plain), kNothing);
    for (const int predefined : {0, 1, 2}) {
        other.topDict = Bytes{139 + predefined, 15};
        EXPECT_EQ(mergedNames(plain, other), kNothing) << predefined;
    }
}

// --- header and offsets -------------------------------------------------------------------------

TEST(CFFMerge, TheOffsetSizeOfANameKeyedFontIsTwoWhenItWasOneAndElseFour) {
    for (const auto& [source, merged] : {std::pair{1, 2}, {2, 4}, {3, 4}, {4, 4}}) {
        CffSections a = namedGlyphs({{34, glyph(1)}});
        a.header = Bytes{1, 0, 4, source};
        const WrittenCff written(mergedNames(a, a));
        EXPECT_EQ(written.table[3], merged) << source;
        EXPECT_EQ(written.charStrings.items.size(), 2u) << source;
    }
}

TEST(CFFMerge, OffsetsAndThePrivateSizeHaveThatWidth) {
    CffSections a = namedGlyphs({{34, glyph(1)}});
    a.header = Bytes{1, 0, 4, 1};
    const WrittenCff written(mergedNames(a, a));
    const Bytes& dict = written.topDict();
    const auto operand = [](std::size_t value) {
        return Bytes{28}.u16(static_cast<std::uint16_t>(value));
    };
    EXPECT_EQ(dict, joined(operand(written.offset(15)), Bytes{15}, operand(written.offset(17)),
                           Bytes{17}, operand(4), operand(written.table.size() - 4), Bytes{18}));
}

TEST(CFFMerge, OffsetsThatTwoBytesDoNotHoldMakeItFour) {
    CffSections a = namedGlyphs({{34, Bytes().fill(20000, 140).u8(14)}});
    CffSections b = namedGlyphs({{36, Bytes().fill(20000, 141).u8(14)}});
    a.header = b.header = Bytes{1, 0, 4, 1};
    const WrittenCff written(mergedNames(a, b));
    EXPECT_EQ(written.table[3], 4);
    EXPECT_EQ(written.charStrings.items.size(), 3u);
    EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{140, 20, 141, 21}));
}

TEST(CFFMerge, TheOffsetSizeOfACIDKeyedFontIsFour) {
    CffSections a = cidSections(cidKeyed());
    for (const int offSize : {1, 2, 4}) {
        a.header = Bytes{1, 0, 4, offSize};
        EXPECT_EQ(mergedCids(a, a)[3], 4) << offSize;
    }
}

TEST(CFFMerge, IndexesHaveTheOffsetSizeThatTheirDataAsks) {
    for (const auto& [size, offSize] : {std::pair{250, 1}, {251, 2}, {65530, 2}, {65531, 3}}) {
        // With glyph 0 of two bytes and one of two of A.
        CffSections a = namedGlyphs({{34, glyph(1)}});
        CffSections b =
            namedGlyphs({{36, Bytes().fill(static_cast<std::size_t>(size) - 1, 140).u8(14)}});
        const WrittenCff written(mergedNames(a, b));
        EXPECT_EQ(written.charStrings.offSize, static_cast<std::size_t>(offSize)) << size;
        EXPECT_EQ(written.charStrings.items.back().size(), static_cast<std::size_t>(size));
    }
}

// --- strings ------------------------------------------------------------------------------------

TEST(CFFMerge, StringsOfBothAreThereOnceWithThoseOfTheFirstInTheirPlaces) {
    CffSections a = namedGlyphs({{391, glyph(1)}});
    CffSections b = namedGlyphs({{391, glyph(2)}, {392, glyph(3)}, {393, glyph(4)}});
    a.strings = {Bytes::ofText("x"), Bytes::ofText("x"), Bytes::ofText("y")};
    b.strings = {Bytes::ofText("z"), Bytes::ofText("x"), Bytes::ofText("z")};
    const WrittenCff written(mergedNames(a, b));
    EXPECT_EQ(written.strings.items, std::vector<Bytes>({Bytes::ofText("x"), Bytes::ofText("x"),
                                                         Bytes::ofText("y"), Bytes::ofText("z")}));
    // x of A, then z of B by its first glyph.
    EXPECT_EQ(charsetOf(written, 7), (Bytes{1, 1, 135, 0, 1, 138, 0}));
    EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0), glyph(1), glyph(2)));
}

TEST(CFFMerge, GlyphNamesWithoutAStringEndTheMerge) {
    const CffSections a = namedGlyphs({{392, glyph(1)}});
    const CffSections b = namedGlyphs({{393, glyph(1)}});
    EXPECT_EQ(mergedNames(a, b), kNothing);
    EXPECT_EQ(mergedNames(b, a), kNothing);
}

TEST(CFFMerge, MoreStringsThanThereAreNumbersEndTheMerge) {
    const auto stringsFrom = [](int first, int count) {
        CffSections table = namedGlyphs({{34, glyph(1)}});
        table.strings.clear();
        for (int i = first; i < first + count; ++i)
            table.strings.push_back(Bytes::ofText(std::to_string(i)));
        return table;
    };
    constexpr int kMost = 65536 - 391;
    EXPECT_NE(mergedNames(stringsFrom(0, 60000), stringsFrom(1, kMost - 1)), kNothing);
    EXPECT_EQ(mergedNames(stringsFrom(0, 60000), stringsFrom(2, kMost - 1)), kNothing);
}

// --- glyphs -------------------------------------------------------------------------------------

TEST(CFFMerge, AGlyphOfBothComesFromTheFirst) {
    const CffSections a = namedGlyphs({{34, glyph(1)}, {35, glyph(2)}});
    const CffSections b = namedGlyphs({{35, glyph(3)}, {36, glyph(4)}});
    EXPECT_THAT(WrittenCff(mergedNames(a, b)).charStrings.items,
                ElementsAre(glyph(0), glyph(1), glyph(2), glyph(4)));
    EXPECT_THAT(WrittenCff(mergedNames(b, a)).charStrings.items,
                ElementsAre(glyph(0), glyph(1), glyph(3), glyph(4)));
}

TEST(CFFMerge, GlyphZeroComesFromTheFirst) {
    CffSections a = namedGlyphs({{34, glyph(1)}});
    CffSections b = a;
    b.charStrings[0] = glyph(9);
    EXPECT_EQ(WrittenCff(mergedNames(a, b)).charStrings.items[0], glyph(0));
    EXPECT_EQ(WrittenCff(mergedNames(b, a)).charStrings.items[0], glyph(9));
}

TEST(CFFMerge, GlyphsComeByAscendingValueWhateverTheirOrderWas) {
    const CffSections a = namedGlyphs({{90, glyph(1)}, {34, glyph(2)}});
    const CffSections b = namedGlyphs({{60, glyph(3)}, {35, glyph(4)}});
    const WrittenCff written(mergedNames(a, b));
    EXPECT_EQ(charsetOf(written, 10), (Bytes{1, 0, 34, 1, 0, 60, 0, 0, 90, 0}));
    EXPECT_THAT(written.charStrings.items,
                ElementsAre(glyph(0), glyph(2), glyph(4), glyph(3), glyph(1)));
}

TEST(CFFMerge, GlyphZeroAloneInBothIsNothingToMerge) {
    const Bytes alone = renumbered(nameKeyed(), {0});
    const Bytes one = renumbered(nameKeyed(), {1});
    ASSERT_NE(alone, kNothing);
    EXPECT_EQ(mergedCff(alone, alone, false), kNothing);
    EXPECT_EQ(WrittenCff(mergedCff(alone, one, false)).charStrings.items.size(), 2u);
    EXPECT_EQ(WrittenCff(mergedCff(one, alone, false)).charStrings.items.size(), 2u);
}

CffSections numberedCids(int first, int count, int step = 1) {
    CffCID font;
    font.glyphs = {{0, 0, glyph(0)}};
    for (int i = 0; i < count; ++i)
        font.glyphs.push_back({static_cast<std::uint16_t>(first + i * step), 0, glyph(1)});
    font.fontDicts = {{.dict = Bytes(), .privateDict = CffPrivate{.dict = Bytes{140, 20}}}};
    return cidSections(font);
}

TEST(CFFMerge, ARunOf256ValuesIsOneRange) {
    const WrittenCff written(mergedCids(numberedCids(1, 200), numberedCids(201, 56)));
    EXPECT_EQ(charsetOf(written, 4), (Bytes{1, 0, 1, 255}));
    EXPECT_EQ(written.charStrings.items.size(), 257u);
}

// Readers of merged fonts know the wrapped count, so a longer run is not split.
TEST(CFFMerge, ALongerRunIsNotSplitAndItsCountWraps) {
    const WrittenCff written(mergedCids(numberedCids(1, 200), numberedCids(201, 100)));
    EXPECT_EQ(written.offset(cffEscape(37)) - written.offset(15), 4u);
    EXPECT_EQ(charsetOf(written, 4), (Bytes{1, 0, 1, 299 - 256}));
    EXPECT_EQ(written.charStrings.items.size(), 301u);
}

TEST(CFFMerge, ACharsetOfFormatTwoEndsTheMerge) {
    CffCID source;
    source.glyphs = {{0, 0, glyph(0)}};
    for (int i = 1; i <= 300; ++i)
        source.glyphs.push_back({static_cast<std::uint16_t>(i), 0, glyph(1)});
    source.fontDicts = {{.dict = Bytes(), .privateDict = CffPrivate{.dict = Bytes{140, 20}}}};
    Glyphs all;
    for (unsigned short gid = 1; gid <= 300; ++gid)
        all.push_back(gid);
    const Bytes wide = renumbered(source.build(), all);
    const Bytes narrow = renumbered(source.build(), {1, 2});
    ASSERT_EQ(charsetOf(WrittenCff(wide), 1), Bytes{2});
    EXPECT_EQ(mergedCff(wide, narrow, true), kNothing);
    EXPECT_EQ(mergedCff(narrow, wide, true), kNothing);
    EXPECT_NE(mergedCff(narrow, narrow, true), kNothing);
}

TEST(CFFMerge, MoreGlyphsThanAnIndexHoldsEndTheMerge) {
    const auto cids = [](int first, int count) {
        CffSections table = numberedCids(first, 1);
        table.charset = Bytes{0};
        table.charStrings = {Bytes{14}};
        for (int i = 0; i < count; ++i) {
            table.charset->u16(static_cast<std::uint16_t>(first + i));
            table.charStrings.push_back(Bytes{14});
        }
        table.fdSelect = Bytes{3, 0, 1, 0, 0, 0}.u16(static_cast<std::uint16_t>(count + 1));
        return table;
    };
    EXPECT_NE(mergedCids(cids(1, 40000), cids(40001, 25534)), kNothing);
    EXPECT_EQ(mergedCids(cids(1, 40000), cids(40001, 25535)), kNothing);
}

// --- charstrings --------------------------------------------------------------------------------

TEST(CFFMerge, AMergedFontHoldsNoSubrCalls) {
    CffSections a = namedGlyphs({{34, joined(callOf(0), callOf(0, true), Bytes{14})}});
    a.globalSubrs = {Bytes{141, 7, 11}};
    a.privateDict->subrs = {Bytes{140, 22, 11}};
    CffSections b = namedGlyphs({{35, joined(callOf(1), Bytes{14})}, {36, callOf(0, true)}});
    b.globalSubrs = {joined(callOf(0), Bytes{11})};
    b.privateDict->subrs = {Bytes{150, 22, 14}, joined(callOf(0, true), Bytes{11})};
    const WrittenCff written(mergedNames(a, b));
    EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0), (Bytes{140, 22, 141, 7, 14}),
                                                       (Bytes{150, 22, 14}), (Bytes{150, 22, 14})));
    EXPECT_TRUE(written.globals.items.empty());
    EXPECT_THAT(WrittenCff::operators(written.privateOf(written.topDict())), ElementsAre(20, 21));
}

TEST(CFFMerge, GlyphsCallTheSubrsOfTheirFontDict) {
    CffCID a = cidKeyed();
    a.fontDicts[1].privateDict->subrs = {Bytes{140, 22, 11}};
    a.fontDicts[2].privateDict->subrs = {Bytes{141, 22, 11}};
    a.glyphs[1].charstring = a.glyphs[3].charstring = joined(callOf(0), Bytes{14});
    const WrittenCff written(mergedCids(cidSections(a), cidSections(a)));
    EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0), (Bytes{140, 22, 14}), glyph(2),
                                                       (Bytes{141, 22, 14}), glyph(4)));
}

// --- Private and Font DICTs ---------------------------------------------------------------------

TEST(CFFMerge, TheLongerPrivateOfTwoNameKeyedFontsIsTaken) {
    CffSections a = namedGlyphs({{34, glyph(1)}});
    CffSections b = namedGlyphs({{35, glyph(1)}});
    const auto privateOf = [](const CffSections& first, const CffSections& second) {
        const WrittenCff written(mergedNames(first, second));
        return written.privateOf(written.topDict());
    };
    b.privateDict->dict = Bytes{150, 20, 151, 21};
    EXPECT_EQ(privateOf(a, b), (Bytes{140, 20, 141, 21})) << "of one length";
    EXPECT_EQ(privateOf(b, a), (Bytes{150, 20, 151, 21}));
    b.privateDict->dict = Bytes{150, 20, 151, 21, 140, 10};
    EXPECT_EQ(privateOf(a, b), b.privateDict->dict);
    EXPECT_EQ(privateOf(b, a), b.privateDict->dict);
    a.privateDict->subrs = {Bytes{11}, Bytes{11}};
    EXPECT_EQ(privateOf(a, b), b.privateDict->dict) << "Subrs does not count";
}

TEST(CFFMerge, ThePrivateOfOneIsTakenWhenTheOtherHasNone) {
    CffSections a = namedGlyphs({{34, glyph(1)}});
    CffSections b = namedGlyphs({{35, glyph(1)}});
    b.privateDict.reset();
    for (const auto& [first, second] : {std::pair{a, b}, {b, a}}) {
        const WrittenCff written(mergedNames(first, second));
        EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{140, 20, 141, 21}));
    }
    const WrittenCff without(mergedNames(b, b));
    EXPECT_THAT(WrittenCff::operators(without.topDict()), ElementsAre(15, 17));
}

struct CidGlyph {
    std::uint16_t cid;
    int width; ///< `defaultWidthX` of its Private
};

/// A CID-keyed table whose glyphs have Font DICTs of their own.
CffSections cidsWithWidths(const std::vector<CidGlyph>& glyphs) {
    CffCID font;
    font.fontDicts.clear();
    for (const CidGlyph& cid : glyphs) {
        font.glyphs.push_back(
            {cid.cid, static_cast<std::uint8_t>(font.fontDicts.size()), glyph(cid.cid % 100)});
        font.fontDicts.push_back(
            {.dict = Bytes(), .privateDict = CffPrivate{.dict = Bytes{139 + cid.width, 20}}});
    }
    return cidSections(font);
}

/// What the Private of each glyph says, by CID.
std::vector<std::pair<int, std::size_t>> widthsOf(const Bytes& table) {
    const WrittenCff written(table);
    const WrittenCff::Index dicts = written.indexAt(written.offset(cffEscape(36)));
    LoadedCff font(table);
    std::vector<FDRange> ranges;
    EXPECT_TRUE(font.ok && font.readFDSelect(font.file(), ranges));
    std::vector<std::pair<int, std::size_t>> widths;
    for (std::uint16_t gid = 0; gid < written.charStrings.items.size(); ++gid) {
        const Bytes& dict = dicts.items.at(getFDOfGlyph(ranges, gid, 255));
        widths.emplace_back(font.getSIDOfGlyph(gid),
                            WrittenCff::operand(written.privateOf(dict), 20));
    }
    return widths;
}

TEST(CFFMerge, EachGlyphKeepsThePrivateThatItHad) {
    const CffSections a = cidsWithWidths({{0, 1}, {7, 2}, {9, 3}});
    const CffSections b = cidsWithWidths({{0, 4}, {5, 3}, {8, 5}, {9, 6}, {12, 1}});
    using Width = std::pair<int, std::size_t>;
    EXPECT_THAT(widthsOf(mergedCids(a, b)), ElementsAre(Width{0, 1}, Width{5, 3}, Width{7, 2},
                                                        Width{8, 5}, Width{9, 3}, Width{12, 1}));
    EXPECT_THAT(widthsOf(mergedCids(b, a)), ElementsAre(Width{0, 4}, Width{5, 3}, Width{7, 2},
                                                        Width{8, 5}, Width{9, 6}, Width{12, 1}));
}

TEST(CFFMerge, FontDictsWithTheSameEntriesAndPrivateAreThereOnce) {
    const CffSections a = cidsWithWidths({{0, 1}, {7, 2}});
    const WrittenCff written(mergedCids(a, cidsWithWidths({{0, 1}, {8, 2}, {9, 3}})));
    EXPECT_EQ(written.indexAt(written.offset(cffEscape(36))).items.size(), 3u);
    CffCID named = cidKeyed();
    named.fontDicts = {
        {.dict = joined(cffInteger(391), Bytes{12, 38}), .privateDict = CffPrivate{Bytes{140, 20}}},
        {.dict = joined(cffInteger(392), Bytes{12, 38}), .privateDict = CffPrivate{Bytes{140, 20}}},
        {.dict = joined(cffInteger(391), Bytes{12, 38}),
         .privateDict = CffPrivate{Bytes{141, 20}}}};
    const WrittenCff names(mergedCids(cidSections(named), cidSections(named)));
    const WrittenCff::Index dicts = names.indexAt(names.offset(cffEscape(36)));
    ASSERT_EQ(dicts.items.size(), 3u);
    EXPECT_EQ(WrittenCff::operand(dicts.items[0], 18), WrittenCff::operand(dicts.items[1], 18))
        << "and equal Private DICTs, too";
    EXPECT_NE(WrittenCff::operand(dicts.items[0], 18), WrittenCff::operand(dicts.items[2], 18));
}

TEST(CFFMerge, NamesOfFontDictsAreKnownByTheirTexts) {
    CffCID a = cidKeyed();
    a.glyphs = {{0, 0, glyph(0)}, {1, 0, glyph(1)}};
    a.fontDicts = {{.dict = joined(cffInteger(391), Bytes{12, 38}),
                    .privateDict = CffPrivate{Bytes{140, 20}}}};
    CffSections first = cidSections(a);
    CffSections second = first;
    second.strings = {first.strings[1], first.strings[0]};
    second.topDict = cffROS(392, 391, 0);
    const auto dictsOf = [](const Bytes& table) {
        const WrittenCff written(table);
        return written.indexAt(written.offset(cffEscape(36))).items;
    };
    EXPECT_EQ(dictsOf(mergedCids(first, second)).size(), 2u) << "391 there is 392 here";
    second.fontDicts[0].dict = joined(cffInteger(392), Bytes{12, 38});
    EXPECT_EQ(dictsOf(mergedCids(first, second)).size(), 1u);
}

TEST(CFFMerge, AFontDictWithoutEntriesInItsPrivateStatesTheDefaultWidth) {
    CffCID source = cidKeyed();
    source.glyphs = {{0, 0, glyph(0)}, {1, 0, joined(callOf(0), Bytes{14})}};
    source.fontDicts = {{.dict = Bytes(), .privateDict = CffPrivate{.subrs = {Bytes{11}}}}};
    const Bytes merged = mergedCids(cidSections(source), cidSections(source));
    const WrittenCff written(merged);
    const Bytes dict = written.indexAt(written.offset(cffEscape(36))).items.at(0);
    EXPECT_EQ(written.privateOf(dict), (Bytes{139, 20}));
    EXPECT_NE(renumbered(merged, {1}), kNothing);
}

TEST(CFFMerge, AFontDictWithoutPrivateStaysWithout) {
    CffCID source = cidKeyed();
    source.glyphs = {{0, 0, glyph(0)}, {1, 0, glyph(1)}};
    source.fontDicts = std::vector<CffFontDict>(1);
    const WrittenCff written(mergedCids(cidSections(source), cidSections(source)));
    EXPECT_EQ(written.indexAt(written.offset(cffEscape(36))).items, std::vector<Bytes>(1));
}

TEST(CFFMerge, MoreFontDictsThanFDSelectNumbersEndTheMerge) {
    const auto many = [](int first, int count) {
        std::vector<CidGlyph> glyphs{{0, 0}};
        for (int i = 0; i < count; ++i)
            glyphs.push_back({static_cast<std::uint16_t>(1 + first + i), 0});
        CffSections table = cidsWithWidths(glyphs);
        for (int i = 0; i <= count; ++i)
            table.fontDicts[static_cast<std::size_t>(i)].privateDict->dict =
                Bytes{28}.u16(static_cast<std::uint16_t>(i == 0 ? 0 : first + i)).u8(20);
        return table;
    };
    EXPECT_NE(mergedCids(many(0, 200), many(200, 55)), kNothing);
    EXPECT_EQ(mergedCids(many(0, 200), many(200, 56)), kNothing);
    EXPECT_NE(mergedCids(many(0, 200), many(100, 155)), kNothing) << "most of them the same";
}

TEST(CFFMerge, FDSelectMayHaveAByteForEachGlyph) {
    CffSections a = cidsWithWidths({{0, 1}, {7, 2}, {9, 3}});
    const Bytes ranges = mergedCids(a, a);
    a.fdSelect = Bytes{0, 0, 1, 2};
    EXPECT_EQ(mergedCids(a, a), ranges);
}

TEST(CFFMerge, AGlyphWithoutAFontDictEndsTheMerge) {
    CffSections a = cidsWithWidths({{0, 1}, {7, 2}});
    CffSections b = a;
    b.fdSelect = Bytes{3, 0, 1, 0, 0, 9, 0, 2};
    EXPECT_EQ(mergedCids(b, a), kNothing);
    EXPECT_NE(mergedCids(a, b), kNothing) << "whose glyphs are all in A";
}

TEST(CFFMerge, CIDCountIsTheHigherOfTheTwo) {
    CffSections a = cidSections(cidKeyed());
    CffSections b = a;
    const auto countOf = [](const Bytes& table) {
        return WrittenCff::operand(WrittenCff(table).topDict(), cffEscape(34));
    };
    EXPECT_EQ(countOf(mergedCids(a, b)), 0u) << "as neither says";
    a.topDict.bytes(joined(cffInteger(100), Bytes{12, 34}));
    b.topDict.bytes(joined(cffInteger(20000), Bytes{12, 34}));
    EXPECT_EQ(countOf(mergedCids(a, b)), 20000u);
    EXPECT_EQ(countOf(mergedCids(b, a)), 20000u);
    EXPECT_EQ(countOf(mergedCids(a, cidSections(cidKeyed()))), 8720u) << "what no entry stands for";
}

TEST(CFFMerge, TheTopDictIsThatOfTheFirst) {
    CffSections a = namedGlyphs({{34, glyph(1)}});
    CffSections b = namedGlyphs({{35, glyph(1)}});
    a.topDict = Bytes{28, 0xFF, 0xF6, 12, 2};
    b.topDict = Bytes{150, 12, 3};
    EXPECT_THAT(WrittenCff::operators(WrittenCff(mergedNames(a, b)).topDict()),
                ElementsAre(cffEscape(2), 15, 17, 18));
}

// --- results ------------------------------------------------------------------------------------

// The header of a subset of a small font tells of shorter offsets than that of a merged one.
TEST(CFFMerge, AMergedFontAndASmallSubsetHaveDifferentHeaders) {
    const Bytes subset = renumbered(nameKeyed(), {1});
    const Bytes merged = mergedCff(subset, subset, false);
    ASSERT_EQ(subset[3], 2);
    ASSERT_EQ(merged[3], 4);
    EXPECT_EQ(mergedCff(merged, subset, false), kNothing);
    EXPECT_NE(mergedCff(merged, merged, false), kNothing);
}

TEST(CFFMerge, AMergedFontIsLoadedAndCutAndMergedAgain) {
    const auto pair = [](unsigned short a, unsigned short b) {
        return mergedCff(renumbered(nameKeyed(), {a}), renumbered(nameKeyed(), {b}), false);
    };
    const Bytes all = mergedCff(mergedCff(pair(1, 2), pair(2, 3), false), pair(1, 4), false);
    const LoadedCff font(all);
    ASSERT_TRUE(font.ok);
    std::vector<std::string> names;
    for (unsigned short gid = 1; gid < 5; ++gid)
        names.emplace_back(font.getStringOfSID(font.getSIDOfGlyph(gid)));
    std::ranges::sort(names);
    EXPECT_THAT(names, ElementsAre("A", "one", "three", "two"));
    EXPECT_EQ(WrittenCff(renumbered(all, {1})).charStrings.items.size(), 2u);

    const Bytes cids = cidKeyed().build();
    const Bytes merged = mergedCff(mergedCff(renumbered(cids, {1, 2}), renumbered(cids, {3}), true),
                                   renumbered(cids, {4}), true);
    EXPECT_EQ(WrittenCff(renumbered(merged, {1, 2, 3, 4})).charStrings.items,
              WrittenCff(renumbered(cids, {1, 2, 3, 4})).charStrings.items);
}

TEST(CFFMerge, OfASubsetWithItselfIsTheSubsetWithoutSubrs) {
    const WrittenCff source(renumbered(nameKeyed(), {1, 2, 3, 4}));
    const WrittenCff merged(mergedCff(source.table, source.table, false));
    EXPECT_EQ(merged.charStrings.items, source.charStrings.items);
    EXPECT_EQ(merged.strings.items, source.strings.items);
    EXPECT_EQ(charsetOf(merged, 7), charsetOf(source, 7));
}

} // namespace
} // namespace KWFontService_NS
