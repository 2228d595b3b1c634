#include "cff/CffFixture.h"

#include <gmock/gmock.h>

#include <optional>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kSubrs = 19;
constexpr int kDefaultWidthX = 20;

CffSections nameKeyed() {
    CffSections table;
    table.strings = {Bytes::ofText("name")};
    table.globalSubrs = {Bytes{1, 11}, Bytes{2, 11}, Bytes{3, 11}};
    table.charStrings = {Bytes{14}, Bytes{139, 139, 21, 14}};
    table.privateDict = CffPrivate{.dict = {140, kDefaultWidthX}, .subrs = {{4, 11}, {5, 11}}};
    return table;
}

CffCID cidKeyed() {
    CffCID font;
    font.glyphs = {{0, 0, {14}}, {1, 0, {14}}, {2, 1, {14}}, {3, 2, {14}}, {4, 1, {14}}};
    font.fontDicts = {
        {.dict = {150, 12, 38}, .privateDict = CffPrivate{.dict = {140, kDefaultWidthX}}},
        {.privateDict = CffPrivate{.dict = {141, kDefaultWidthX}, .subrs = {{7, 11}}}},
        {}};
    return font;
}

std::vector<Bytes> itemsOf(const CFFIndex& index) {
    std::vector<Bytes> items;
    for (std::size_t i = 0; i < index.size(); ++i)
        items.push_back(bytesOf(index[i]));
    return items;
}

// --- Global Subrs -------------------------------------------------------------------------------

std::optional<CFFIndex> globalSubrsOf(const Bytes& table) {
    TableStream stream(table);
    CFFIndex subrs;
    if (!Type1CMap::readGlobalSubrs(stream.table, subrs))
        return std::nullopt;
    return subrs;
}

TEST(Type1CMapFile, GlobalSubrsFollowTheStrings) {
    EXPECT_THAT(itemsOf(globalSubrsOf(nameKeyed().build()).value()),
                ElementsAre(Bytes{1, 11}, Bytes{2, 11}, Bytes{3, 11}));
}

TEST(Type1CMapFile, AFontNeedHaveNoGlobalSubrs) {
    CffSections table = nameKeyed();
    table.globalSubrs.clear();
    EXPECT_TRUE(globalSubrsOf(table.build()).value().empty());
}

TEST(Type1CMapFile, FewGlobalSubrsAreFoundBehindAnEmptyStringIndex) {
    CffSections table = nameKeyed();
    table.strings.clear();
    EXPECT_EQ(globalSubrsOf(table.build()).value().size(), 3U);
}

// An empty INDEX is read like any other, three bytes and the offsets that the third asks for.
TEST(Type1CMapFile, AnEmptyStringIndexBeforeManyGlobalSubrsThrowsTheWalkOff) {
    CffSections table = nameKeyed();
    table.strings.clear();
    table.globalSubrs = std::vector<Bytes>(300, Bytes{11});
    const auto thrownOff = globalSubrsOf(table.build());
    EXPECT_FALSE(thrownOff && thrownOff->size() == 300);
    table.strings = {Bytes::ofText("name")};
    EXPECT_EQ(globalSubrsOf(table.build()).value().size(), 300U);
}

TEST(Type1CMapFile, GlobalSubrsOfATableThatIsCutAreNone) {
    const Bytes whole = nameKeyed().build();
    const std::size_t end = whole.offsetOf("charStrings");
    for (std::size_t size = 0; size < end; ++size)
        EXPECT_FALSE(globalSubrsOf(Bytes(whole).truncate(size))) << size;
}

// --- CharStrings --------------------------------------------------------------------------------

TEST(Type1CMapFile, CharStringsAreReadOneAtATime) {
    const Bytes bytes = nameKeyed().build();
    TableStream stream(bytes);
    CFFIndexHead head;
    const auto at = static_cast<std::uint32_t>(bytes.offsetOf("charStrings"));
    ASSERT_TRUE(Type1CMap::readIndexAt(stream.table, at, head));
    EXPECT_EQ(head.count(), 2U);
    std::vector<std::uint8_t> charString;
    ASSERT_TRUE(Type1CMap::readCharString(stream.table, head, 1, charString));
    EXPECT_THAT(charString, ElementsAre(139, 139, 21, 14));
    EXPECT_FALSE(Type1CMap::readCharString(stream.table, head, 2, charString));
    EXPECT_FALSE(Type1CMap::readCharString(stream.table, head, 0xFFFF, charString));
}

TEST(Type1CMapFile, NoIndexLiesAtOffsetZeroOrOutside) {
    CffSections table = nameKeyed();
    table.header = Bytes{0, 0, 0, 4}; // would be an empty one
    TableStream stream(table.build());
    CFFIndexHead head;
    EXPECT_FALSE(Type1CMap::readIndexAt(stream.table, 0, head));
    EXPECT_FALSE(Type1CMap::readIndexAt(stream.table, 0xFFFFFFFF, head));
    EXPECT_FALSE(Type1CMap::readIndexAt(stream.table, stream.table.size(), head));
}

// --- Private ------------------------------------------------------------------------------------

TEST(Type1CMapFile, APrivateDictIsReadFromItsPlace) {
    TableStream stream({9, 9, 150, kDefaultWidthX, 9});
    KWValue dict(1);
    ASSERT_TRUE(Type1CMap::readPrivateDict(stream.table, 2, 2, dict));
    EXPECT_EQ(dict.getNamedItem(cffKey(FS_Word::defaultWidthX)), KWValue(11));
}

TEST(Type1CMapFile, APrivateDictWithoutSizeOrPlaceIsNull) {
    TableStream stream({9, 9, 150, kDefaultWidthX, 9});
    for (const auto& [offset, size] :
         {std::pair{2U, 0U}, {4U, 2U}, {2U, 0xFFFFFFFFU}, {0xFFFFFFFFU, 2U}, {5U, 1U}}) {
        KWValue dict(1);
        EXPECT_FALSE(Type1CMap::readPrivateDict(stream.table, offset, size, dict)) << offset;
        EXPECT_TRUE(dict.isNull());
    }
}

TEST(Type1CMapFile, LocalSubrsLieBehindThePrivateDict) {
    LoadedCff cff(nameKeyed());
    KWValue dict;
    CFFIndex subrs;
    ASSERT_TRUE(cff.readLocalSubrs(cff.file(), dict, subrs));
    EXPECT_EQ(dict.getNamedItem(cffKey(FS_Word::defaultWidthX)), KWValue(1));
    EXPECT_THAT(itemsOf(subrs), ElementsAre(Bytes{4, 11}, Bytes{5, 11}));
}

TEST(Type1CMapFile, APrivateDictNeedHaveNoSubrs) {
    const LoadedCff before(nameKeyed());
    for (const Bytes& dict : {Bytes{140, kDefaultWidthX}, Bytes{139, kSubrs}}) {
        CffSections table = nameKeyed();
        table.privateDict = CffPrivate{.dict = dict};
        LoadedCff cff(table);
        KWValue privateDict;
        CFFIndex subrs = before.strings;
        ASSERT_FALSE(subrs.empty());
        ASSERT_TRUE(cff.readLocalSubrs(cff.file(), privateDict, subrs));
        EXPECT_TRUE(subrs.empty());
    }
}

TEST(Type1CMapFile, AFontWithoutPrivateHasNoLocalSubrs) {
    CffSections table = nameKeyed();
    table.privateDict.reset();
    LoadedCff cff(table);
    KWValue dict;
    CFFIndex subrs;
    EXPECT_FALSE(cff.readLocalSubrs(cff.file(), dict, subrs));
}

TEST(Type1CMapFile, SubrsOutsideTheTableAreRefused) {
    for (const std::int32_t lie : {-1000, 100000, 0x7FFFFFFF, std::int32_t{-0x7FFFFFFF} - 1}) {
        CffSections table = nameKeyed();
        table.privateDict = CffPrivate{.dict = cffInteger(lie).u8(kSubrs)};
        LoadedCff cff(table);
        KWValue dict;
        CFFIndex subrs;
        EXPECT_FALSE(cff.readLocalSubrs(cff.file(), dict, subrs)) << lie;
    }
}

// --- FDArray ------------------------------------------------------------------------------------

std::optional<std::vector<CFFFontDict>> fontDictsOf(const Bytes& table) {
    LoadedCff cff(table);
    EXPECT_TRUE(cff.ok);
    std::vector<CFFFontDict> fontDicts(1); // of another font
    if (!cff.readFDArray(cff.file(), fontDicts))
        return std::nullopt;
    return fontDicts;
}

TEST(Type1CMapFile, FontDictsComeWithTheirPrivateAndSubrs) {
    const auto fontDicts = fontDictsOf(cidKeyed().build()).value();
    ASSERT_EQ(fontDicts.size(), 3U);
    EXPECT_EQ(fontDicts[0].dict.getNamedItem(cffKey(FS_Word::FontName)), KWValue(11));
    EXPECT_EQ(fontDicts[0].privateDict.getNamedItem(cffKey(FS_Word::defaultWidthX)), KWValue(1));
    EXPECT_TRUE(fontDicts[0].localSubrs->empty());
    EXPECT_TRUE(fontDicts[1].dict.getNamedItem(cffKey(FS_Word::FontName)).isNull());
    EXPECT_EQ(fontDicts[1].privateDict.getNamedItem(cffKey(FS_Word::defaultWidthX)), KWValue(2));
    EXPECT_THAT(itemsOf(*fontDicts[1].localSubrs), ElementsAre(Bytes{7, 11}));
    EXPECT_TRUE(fontDicts[2].privateDict.isNull());
    EXPECT_TRUE(fontDicts[2].localSubrs->empty());
}

TEST(Type1CMapFile, FontDictsThatShareAPrivateShareItsSubrs) {
    CffSections table = cidKeyed().sections();
    const Bytes bytes = table.build();
    const Bytes shared =
        cffInteger(8).bytes(cffInteger(static_cast<int>(bytes.offsetOf("private1")))).u8(18);
    table.fontDicts[2].dict = shared; // 11 bytes, which move what follows
    const Bytes moved = table.build();
    table.fontDicts[2].dict =
        cffInteger(8).bytes(cffInteger(static_cast<int>(moved.offsetOf("private1")))).u8(18);
    const auto fontDicts = fontDictsOf(table.build()).value();
    EXPECT_EQ(fontDicts[2].localSubrs, fontDicts[1].localSubrs);
    EXPECT_EQ(fontDicts[2].privateDict, fontDicts[1].privateDict);
    EXPECT_EQ(fontDicts[2].localSubrs->size(), 1U);
}

TEST(Type1CMapFile, APrivateOfSizeZeroFailsTheWholeArray) {
    CffCID font = cidKeyed();
    font.fontDicts[2].privateDict = CffPrivate{};
    EXPECT_FALSE(fontDictsOf(font.build()));
}

TEST(Type1CMapFile, APrivateOutsideTheTableFailsTheWholeArray) {
    CffCID font = cidKeyed();
    font.fontDicts[2].dict = cffInteger(2).bytes(cffInteger(100000)).u8(18);
    EXPECT_FALSE(fontDictsOf(font.build()));
}

TEST(Type1CMapFile, AFontWithoutFDArrayHasNoFontDicts) {
    CffSections table = nameKeyed();
    table.header = Bytes{0, 0, 0, 4}; // would be an empty INDEX
    EXPECT_FALSE(fontDictsOf(table.build()));
}

TEST(Type1CMapFile, SubrsAtTheStartOfTheTableAreNone) {
    for (CffSections table : {nameKeyed(), cidKeyed().sections()}) {
        table.header = Bytes{0, 0, 0, 4}; // would be an empty INDEX
        CffPrivate& dict =
            *(table.privateDict ? table.privateDict : table.fontDicts[0].privateDict);
        dict = CffPrivate{.dict = cffInteger(0).u8(kSubrs)};
        const auto at = static_cast<std::int32_t>(table.build().offsetOf("private0"));
        dict.dict.patchU32At(1, -at);
        LoadedCff cff(table);
        ASSERT_TRUE(cff.ok);
        KWValue privateDict;
        CFFIndex subrs;
        EXPECT_FALSE(cff.readLocalSubrs(cff.file(), privateDict, subrs));
        EXPECT_FALSE(fontDictsOf(table.build()));
    }
}

TEST(Type1CMapFile, FDSelectCanNumberTwoHundredAndFiftySixFontDicts) {
    for (const std::size_t count : {std::size_t{256}, std::size_t{257}}) {
        CffCID font = cidKeyed();
        font.fontDicts = std::vector<CffFontDict>(count);
        EXPECT_EQ(fontDictsOf(font.build()).has_value(), count == 256);
    }
}

TEST(Type1CMapFile, PrivatesThatOverlapAreReadNoFurtherThanTheTableIsLong) {
    // Every Font DICT has a Private of 60000 bytes, each a byte further than the one before.
    const auto fontOf = [](std::size_t count, int at) {
        CffCID font = cidKeyed();
        font.fontDicts.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const auto offset = at + static_cast<int>(i);
            font.fontDicts.push_back({.dict = cffInteger(60000).bytes(cffInteger(offset)).u8(18)});
        }
        font.fontDicts.push_back({.privateDict = CffPrivate{.dict = Bytes().fill(70000, 139)}});
        return font.sections();
    };
    for (const std::size_t count : {std::size_t{1}, std::size_t{255}}) {
        const auto at =
            static_cast<int>(fontOf(count, 0).build().offsetOf("private" + std::to_string(count)));
        CffSections table = fontOf(count, at);
        table.fontDicts.back().privateDict.reset();
        table.privateDict = CffPrivate{.dict = Bytes().fill(70000, 139)};
        EXPECT_EQ(fontDictsOf(table.build()).has_value(), count == 1);
    }
}

TEST(Type1CMapFile, FontDictsThatOverlapAreReadNoFurtherThanTheTableIsLong) {
    const auto tableOf = [](unsigned count) {
        CffSections table = nameKeyed();
        table.topDict = cffInteger(0).u8(12).u8(36);
        const auto at = static_cast<std::int32_t>(table.build().size());
        table.topDict = cffInteger(at).u8(12).u8(36);
        // Items of 60000 bytes in turn with items that go back to where they began.
        Bytes bytes = table.build().u16(2 * count - 1).u8(4);
        for (unsigned i = 0; i < count; ++i)
            bytes.u32(1).u32(60001);
        return bytes.fill(60000, 139);
    };
    EXPECT_TRUE(fontDictsOf(tableOf(1)));
    EXPECT_FALSE(fontDictsOf(tableOf(2)));
}

TEST(Type1CMapFile, SubrsThatOverlapAreReadNoFurtherThanTheTableIsLong) {
    // INDEXes of 65535 subrs without bytes, a quarter of a megabyte of offsets each, that begin
    // three bytes behind each other.
    const auto fontOf = [](int count, std::int64_t distance) {
        CffCID font = cidKeyed();
        font.fontDicts.clear();
        for (int i = 0; i < count; ++i) {
            constexpr int kPrivateSize = 6;
            const auto subrs = static_cast<std::int32_t>(distance + (3 - kPrivateSize) * i);
            font.fontDicts.push_back(
                {.privateDict = CffPrivate{.dict = cffInteger(subrs).u8(kSubrs)}});
        }
        return font.build();
    };
    for (const int count : {1, 2}) {
        const Bytes before = fontOf(count, 0);
        Bytes table = fontOf(count, static_cast<std::int64_t>(before.size()) -
                                        static_cast<std::int64_t>(before.offsetOf("private0")));
        for (int i = 0; i < count; ++i)
            table.u16(0xFFFF).u8(4);
        for (int i = 0; i < 0x10000 * 4 / 3 + 200; ++i)
            table.u24(1);
        EXPECT_EQ(fontDictsOf(table).has_value(), count == 1);
    }
}

// --- FDSelect -----------------------------------------------------------------------------------

/// What a CID-keyed font of `glyphs` glyphs has in this FDSelect.
struct Selected {
    bool ok = false;
    std::vector<FDRange> ranges{{1, 2, 3}};

    explicit Selected(const Bytes& fdSelect, std::size_t glyphs = 5) {
        CffCID font = cidKeyed();
        font.glyphs.resize(glyphs, {9, 0, {14}});
        CffSections table = font.sections();
        table.fdSelect = fdSelect;
        LoadedCff cff(table);
        EXPECT_TRUE(cff.ok);
        ok = cff.readFDSelect(cff.file(), ranges);
    }
};

TEST(FDSelect, Format3HasRanges) {
    const Selected selected(Bytes{3}.u16(3).u16(0).u8(2).u16(3).u8(0).u16(4).u8(1).u16(5));
    EXPECT_TRUE(selected.ok);
    EXPECT_THAT(selected.ranges, ElementsAre(FDRange{0, 2, 2}, FDRange{3, 3, 0}, FDRange{4, 4, 1}));
}

TEST(FDSelect, Format3WithoutRangesOrCutOffIsRefused) {
    EXPECT_FALSE(Selected(Bytes{3}.u16(0).u16(0).zero(10)).ok);
    CffSections table = cidKeyed().sections();
    const Bytes whole = table.build();
    LoadedCff cff(table);
    std::vector<FDRange> ranges;
    EXPECT_TRUE(cff.readFDSelect(cff.file(), ranges));
    for (std::size_t size = whole.offsetOf("fdSelect"); size < whole.offsetOf("charStrings");
         ++size) {
        TableStream cut(Bytes(whole).truncate(size));
        EXPECT_FALSE(cff.readFDSelect(cut.table, ranges)) << size;
    }
}

// A font with format 0 is read, but who wants to cut it down is told that it cannot be.
TEST(FDSelect, Format0IsFilledButForTheLastGlyphAndAnswersFalse) {
    const Selected selected(Bytes{0, 2, 2, 0, 1, 1});
    EXPECT_FALSE(selected.ok);
    EXPECT_THAT(selected.ranges, ElementsAre(FDRange{0, 0, 2}, FDRange{1, 1, 2}, FDRange{2, 2, 0},
                                             FDRange{3, 3, 1}));
}

TEST(FDSelect, Format0CutOffHasWhatIsThere) {
    CffSections table = cidKeyed().sections();
    table.fdSelect.reset();
    table.topDict.bytes(cffInteger(0)).u8(12).u8(37);
    const std::size_t size = table.build().size();
    table.topDict.patchU32At(table.topDict.size() - 6, size);
    LoadedCff cff(table.build().u8(0).u8(2).u8(1));
    std::vector<FDRange> ranges;
    EXPECT_FALSE(cff.readFDSelect(cff.file(), ranges));
    EXPECT_THAT(ranges, ElementsAre(FDRange{0, 0, 2}, FDRange{1, 1, 1}));
}

TEST(FDSelect, Format0OfOneGlyphIsEmpty) {
    const Selected selected(Bytes{0, 2}, 1);
    EXPECT_FALSE(selected.ok);
    EXPECT_THAT(selected.ranges, IsEmpty());
}

TEST(FDSelect, AnyOtherFormatAndNoneAreRefused) {
    for (const int format : {1, 2, 4, 255})
        EXPECT_FALSE(Selected(Bytes{format}.u16(1).u16(0).u8(0).u16(5)).ok) << format;
    CffSections none = nameKeyed();
    none.header = Bytes{3, 0, 1, 0}; // would be a range
    LoadedCff cff(none);
    std::vector<FDRange> ranges{{1, 2, 3}};
    EXPECT_FALSE(cff.readFDSelect(cff.file(), ranges));
    EXPECT_THAT(ranges, IsEmpty());
}

TEST(FDSelect, ARangeThatEndsBeforeItBeginsHoldsNoGlyph) {
    const Selected selected(
        Bytes{3}.u16(4).u16(0).u8(1).u16(3).u8(2).u16(1).u8(3).u16(1).u8(4).u16(5));
    EXPECT_TRUE(selected.ok);
    EXPECT_THAT(selected.ranges, ElementsAre(FDRange{0, 2, 1}, FDRange{1, 4, 4}));
}

TEST(FDSelect, RangesOutOfOrderAreReadAndSomeAreFound) {
    const Selected selected(Bytes{3}.u16(3).u16(5).u8(1).u16(8).u8(2).u16(0).u8(3).u16(3));
    EXPECT_TRUE(selected.ok);
    EXPECT_THAT(selected.ranges, ElementsAre(FDRange{5, 7, 1}, FDRange{0, 2, 3}));
    for (std::uint16_t gid = 0; gid < 10; ++gid) {
        const std::uint8_t found = getFDOfGlyph(selected.ranges, gid, 255);
        EXPECT_TRUE(found == 255 || found == (gid < 3 ? 3 : 1)) << gid;
    }
}

TEST(FDSelect, AGlyphFindsItsFontDict) {
    const std::vector<FDRange> ranges{{0, 2, 7}, {3, 3, 0}, {6, 9, 1}};
    EXPECT_EQ(getFDOfGlyph(ranges, 0, 255), 7);
    EXPECT_EQ(getFDOfGlyph(ranges, 2, 255), 7);
    EXPECT_EQ(getFDOfGlyph(ranges, 3, 255), 0);
    EXPECT_EQ(getFDOfGlyph(ranges, 4, 255), 255);
    EXPECT_EQ(getFDOfGlyph(ranges, 9, 255), 1);
    EXPECT_EQ(getFDOfGlyph(ranges, 10, 255), 255);
    EXPECT_EQ(getFDOfGlyph({}, 0, 255), 255);
    EXPECT_EQ(getFDOfGlyph({{5, 9, 1}}, 4, 9), 9);
}

} // namespace
} // namespace KWFontService_NS
