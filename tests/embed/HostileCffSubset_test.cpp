// `CFF ` tables that lie: a writer answers false or what is there, in time and memory that the
// table's own size bounds.

#include "CffOutput.h"
#include "common/KWLimits.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// For what they must not do.
void callBothWriters(const Bytes& table, const Glyphs& glyphs) {
    LoadedCff font(table);
    KWMemStream output;
    subsetCFFRenumbered(font.file(), font, glyphs, output);
    KWMemStream inPlace;
    subsetCFFInPlace(font.file(), glyphs, 1, inPlace);
    // Neither makes much of little.
    EXPECT_LE(output.size(), 64 * table.size() + 4096);
    EXPECT_LE(inPlace.size(), (KWCommonNS::kMaxFillers + 8) * table.size() + 4096);
}

Glyphs everyId() {
    Glyphs all;
    for (unsigned gid = 0; gid <= 0xFFFF; ++gid)
        all.push_back(static_cast<unsigned short>(gid));
    return all;
}

CffSections nameKeyed() {
    CffSections table;
    table.strings = {Bytes::ofText("one"), Bytes::ofText("two")};
    table.topDict = joined(cffInteger(391), Bytes{1});
    table.charset = Bytes{0}.u16s({1, 34, 392});
    table.globalSubrs = {Bytes{140, 11}};
    table.charStrings = {Bytes{14}, Bytes{14}, joined(callOf(0), callOf(0, true), Bytes{14}),
                         Bytes{139, 139, 173, 173, 14}};
    table.privateDict = CffPrivate{.dict = Bytes{140, 20}, .subrs = {Bytes{140, 11}}};
    return table;
}

CffSections cidKeyed() {
    CffCID font;
    for (int i = 0; i < 4; ++i)
        font.glyphs.push_back({static_cast<std::uint16_t>(i), static_cast<std::uint8_t>(i % 2),
                               joined(callOf(0), Bytes{14})});
    const CffFontDict fontDict{
        .dict = Bytes(), .privateDict = CffPrivate{.dict = Bytes{140, 20}, .subrs = {Bytes{11}}}};
    font.fontDicts = {fontDict, fontDict};
    return font.sections();
}

TEST(HostileCffSubset, EveryByteMayBeAnyOther) {
    for (const Bytes& sound : {nameKeyed().build(), cidKeyed().build()}) {
        for (std::size_t at = 0; at < sound.size(); ++at) {
            for (const int byte : {0, 1, 28, 29, 30, 127, 255}) {
                Bytes table = sound;
                table.patchU8At(at, byte);
                callBothWriters(table, {1, 2, 3});
            }
        }
    }
}

TEST(HostileCffSubset, TheTableMayEndAnywhere) {
    for (const Bytes& sound : {nameKeyed().build(), cidKeyed().build()}) {
        for (std::size_t size = 0; size < sound.size(); ++size)
            callBothWriters(Bytes(sound).truncate(size), {1, 2, 3});
    }
}

TEST(HostileCffSubset, ManyBytesMayBeWrong) {
    Rng random(7);
    for (const Bytes& sound : {nameKeyed().build(), cidKeyed().build()}) {
        for (int round = 0; round < 3000; ++round) {
            Bytes table = sound;
            for (int i = 0; i < 4; ++i)
                table.patchU8At(random.below(static_cast<std::uint32_t>(table.size())),
                                random.below(256));
            callBothWriters(table, {1, 2, 3});
        }
    }
}

TEST(HostileCffSubset, ListsOfEveryIdAreTooMuchForAFont) {
    for (const Bytes& table : {nameKeyed().build(), cidKeyed().build()}) {
        EXPECT_EQ(renumbered(table, everyId()), Bytes());
        callBothWriters(table, everyId());
        callBothWriters(table, Glyphs(100000, 65535));
        EXPECT_NE(renumbered(table, Glyphs(100000, 2)), Bytes());
    }
}

TEST(HostileCffSubset, OffsetWidthsThatThereAreNotGiveNothing) {
    for (const char* place : {"names", "topDict", "strings", "globalSubrs", "charStrings"}) {
        for (const int offSize : {0, 5, 6, 128, 255}) {
            Bytes table = nameKeyed().build();
            table.patchU8At(table.offsetOf(place) + 2, offSize);
            EXPECT_EQ(renumbered(table, {2}), Bytes()) << place << ' ' << offSize;
            callBothWriters(table, {2});
        }
    }
}

TEST(HostileCffSubset, OffsetsThatDecreaseGiveNothing) {
    Bytes table = nameKeyed().build();
    table.patchU8At(table.offsetOf("charStrings") + 5, 200); // glyph 2 begins behind its end
    EXPECT_EQ(renumbered(table, {2}), Bytes());
    LoadedCff font(table);
    KWMemStream output;
    EXPECT_FALSE(subsetCFFInPlace(font.file(), {2}, 1, output));
}

TEST(HostileCffSubset, EmptyNamesAndStringsDoNotMatter) {
    CffSections source = nameKeyed();
    source.names.clear();
    const WrittenCff withoutNames(renumbered(source, {2}));
    EXPECT_TRUE(withoutNames.names.items.empty());
    EXPECT_EQ(withoutNames.charStrings.items.size(), 2u);
    source = nameKeyed();
    source.strings.clear();
    source.globalSubrs = {Bytes{140, 11}};
    const WrittenCff withoutStrings(renumbered(source, {2}));
    EXPECT_EQ(withoutStrings.strings.items, std::vector<Bytes>{Bytes()}); // the one of Notice
    EXPECT_EQ(withoutStrings.globals.items, std::vector<Bytes>({Bytes{140, 11}}));
}

TEST(HostileCffSubset, ATopDictMayBeLong) {
    CffSections source = nameKeyed();
    Bytes dict;
    for (int i = 0; i < 20000; ++i)
        dict.bytes(Bytes{140, 141, 5});
    source.topDict = dict;
    const WrittenCff written(renumbered(source, {2}));
    EXPECT_EQ(written.topDict().slice(0, dict.size()), dict);
    callBothWriters(source.build(), {2});

    source.topDict = Bytes().fill(70000, 140); // all before one operator
    EXPECT_NE(renumbered(source, {2}), Bytes());
    callBothWriters(source.build(), {2});
    source.topDict = Bytes().u8(30).fill(70000, 0x11).u8(0xFF).u8(5); // one long real
    EXPECT_NE(renumbered(source, {2}), Bytes());
    callBothWriters(source.build(), {2});
}

TEST(HostileCffSubset, ATopDictThatEndsInOperandsEndsWithItsLastOperator) {
    CffSections source = nameKeyed();
    const Bytes sound = source.build();
    // The size of Private as the end: nothing behind it counts.
    Bytes table = sound;
    const Bytes dict = WrittenCff(sound).topDict();
    const std::size_t end = table.offsetOf("topDict") + 5 + dict.size();
    table.patchU8At(end - 1, 140);
    const WrittenCff written(renumbered(table, {1}));
    EXPECT_EQ(WrittenCff::operators(written.topDict()).back(), 17);
    callBothWriters(table, {1, 2});
}

TEST(HostileCffSubset, StringsThatLieOverEachOtherGiveNothing) {
    CffSections source = nameKeyed();
    source.strings.clear();
    source.charset = Bytes{0};
    source.charStrings = {Bytes{14}};
    Bytes index = Bytes().u16(2001).u8(4).u32(1);
    for (int i = 0; i < 1000; ++i) {
        index.u32(20001).u32(1);
        source.charset->u16(391 + 2 * i);
        source.charStrings.push_back(Bytes{14});
    }
    index.u32(20001).fill(20000, 'x');
    source.charset->truncate(1 + 2 * (source.charStrings.size() - 1));
    const Bytes plain = source.build();
    const std::size_t at = plain.offsetOf("strings");
    // What lies behind moves by what the strings take.
    const auto grown = static_cast<std::uint32_t>(index.size() - 2);
    Bytes dict = WrittenCff(plain).topDict();
    std::size_t place = 0;
    while (place + 5 < dict.size()) {
        if (dict[place] == 29 &&
            (dict[place + 5] == 15 || dict[place + 5] == 17 || dict[place + 5] == 18)) {
            dict.patchU32At(place + 1, dict.u32At(place + 1) + grown);
            place += 5;
        }
        ++place;
    }
    Bytes table = joined(plain.slice(0, plain.offsetOf("topDict")), cffIndex({dict}), index,
                         plain.slice(at + 2, plain.size() - at - 2));
    Glyphs all;
    for (unsigned gid = 0; gid <= 1000; ++gid)
        all.push_back(static_cast<unsigned short>(gid));
    EXPECT_EQ(renumbered(table, all), Bytes());
    EXPECT_NE(renumbered(table, {1}), Bytes()); // one of them may be that long
}

TEST(HostileCffSubset, FDSelectMayBeOutOfOrderAndHaveHoles) {
    for (const Bytes& fdSelect :
         {Bytes{3, 0, 2, 0, 3, 0, 0, 1, 1, 0, 4}, Bytes{3, 0, 2, 0, 0, 0, 0, 3, 9, 0, 4},
          Bytes{3, 0, 0, 0, 0, 0, 0, 4}, Bytes{3, 255, 255, 0, 0, 0, 0, 4}, Bytes{1}, Bytes{255}}) {
        CffSections source = cidKeyed();
        source.fdSelect = fdSelect;
        callBothWriters(source.build(), {1, 2, 3});
    }
}

TEST(HostileCffSubset, MoreFontDictsThanFDSelectNumbersGiveNothing) {
    CffCID font;
    font.glyphs = {{0, 0, Bytes{14}}, {1, 0, Bytes{14}}};
    font.fontDicts = std::vector<CffFontDict>(257);
    const Bytes table = font.build();
    EXPECT_EQ(renumbered(table, {1}), Bytes());
    LoadedCff loaded(table);
    KWMemStream output;
    EXPECT_FALSE(subsetCFFInPlace(loaded.file(), {1}, 1, output));
    font.fontDicts.pop_back();
    EXPECT_NE(renumbered(font.build(), {1}), Bytes());
}

TEST(HostileCffSubset, APrivateOutsideTheTableGivesNothing) {
    for (const Bytes& sound : {nameKeyed().build(), cidKeyed().build()}) {
        const Bytes privateAt = Bytes().u8(29).u32(sound.offsetOf("private0")); // as a DICT has it
        const std::size_t at = sound.str().find(privateAt.str());
        ASSERT_NE(at, std::string::npos);
        for (const std::uint32_t lie :
             {0x7FFFFFF0U, 0xFFFFFFF0U, static_cast<std::uint32_t>(sound.size())}) {
            Bytes table = sound;
            table.patchU32At(at + 1, lie);
            EXPECT_EQ(renumbered(table, {1}), Bytes());
            callBothWriters(table, {1});
        }
    }
}

TEST(HostileCffSubset, APrivateThatCannotMoveGivesNothingInPlace) {
    const Bytes sound = nameKeyed().build();
    const std::size_t at =
        sound.str().find(Bytes().u8(29).u32(sound.offsetOf("private0")).u8(18).str());
    ASSERT_NE(at, std::string::npos);
    const auto works = [&](std::size_t place) {
        Bytes table = sound;
        table.patchU32At(at + 1, static_cast<std::uint32_t>(place));
        TableStream stream(table);
        KWMemStream output;
        return subsetCFFInPlace(stream.table, {1}, 1, output);
    };
    EXPECT_TRUE(works(sound.offsetOf("private0")));
    EXPECT_FALSE(works(sound.size()));
    EXPECT_FALSE(works(0x7FFFFFF0));
    // Amid the charstrings, of which some go.
    EXPECT_FALSE(works(sound.offsetOf("charStrings")));
    EXPECT_FALSE(works(sound.offsetOf("private0") - 1));
}

TEST(HostileCffSubset, APrivateThatIsTooLongForItsSizeGivesNothing) {
    CffSections source = nameKeyed();
    Bytes array;
    for (int i = 0; i < 513; ++i)
        array.bytes(cffReal("1.2345678901234567"));
    source.privateDict->dict = joined(array, Bytes{6}, array, Bytes{7});
    EXPECT_NE(renumbered(source, {1}), Bytes());
    source.privateDict->dict.bytes(joined(array, Bytes{8}, array, Bytes{9}, array, Bytes{12, 12}));
    EXPECT_NE(renumbered(source, {1}), Bytes());
    source.privateDict->dict.bytes(joined(array, Bytes{12, 13}));
    EXPECT_EQ(renumbered(source, {1}), Bytes());
    callBothWriters(source.build(), {1});
}

/// Subrs of which each calls the next one so many times.
std::vector<Bytes> fanOut(int depth, int times) {
    std::vector<Bytes> subrs;
    for (int i = 0; i < depth; ++i) {
        Bytes subr{140, 141, 1};
        for (int k = 0; k < times && i + 1 < depth; ++k)
            subr.bytes(callOf(i + 1));
        subrs.push_back(subr.u8(11));
    }
    return subrs;
}

TEST(HostileCffSubset, FanOutOfLegalDepthCostsWhatTheBytesCost) {
    // 50^9 calls, and stems that grow with every one.
    CffSections source = nameKeyed();
    source.privateDict->subrs = fanOut(10, 50);
    source.charStrings[1] = joined(callOf(0), Bytes{19, 255, 14});
    callBothWriters(source.build(), {1, 2});
    source.privateDict->subrs = fanOut(40, 60);
    callBothWriters(source.build(), {1, 2});
}

TEST(HostileCffSubset, SubrsThatCallThemselvesAreFollowedSoFar) {
    CffSections source = nameKeyed();
    source.privateDict->subrs = {joined(callOf(0), callOf(0), callOf(0, true), Bytes{11})};
    source.globalSubrs = {joined(callOf(0), callOf(0, true), Bytes{11})};
    const WrittenCff written(renumbered(source, {2}));
    EXPECT_EQ(written.globals.items, source.globalSubrs);
    EXPECT_EQ(written.subrsOf(written.topDict()).items, source.privateDict->subrs);
}

TEST(HostileCffSubset, TooManyStatesOfSubrsGiveNothing) {
    // Every call finds other counts, again and again, in subrs that do so themselves.
    CffSections source = nameKeyed();
    source.privateDict->subrs.clear();
    for (int i = 0; i < 12; ++i) {
        Bytes subr;
        for (int k = 0; k < 400; ++k)
            subr.u8(140 + k % 50).bytes(callOf(i + 1));
        source.privateDict->subrs.push_back(subr.u8(11));
    }
    source.charStrings[2] = joined(callOf(0), Bytes{14});
    callBothWriters(source.build(), {2});
}

// What is remembered to find accents takes more room than the rest.
TEST(HostileCffSubset, MasksAndNumbersThatAreCutOffEndTheirGlyph) {
    CffSections source = nameKeyed();
    Bytes stems;
    for (int i = 0; i < 40; ++i)
        stems.bytes(Bytes{140, 141});
    for (const Bytes& end :
         {joined(stems, Bytes{18, 19, 1}), Bytes{28, 1}, Bytes{255, 1, 2}, Bytes{250}, Bytes{12},
          joined(stems, stems, stems, stems, stems, stems, stems, stems, Bytes{18, 20})}) {
        source.charStrings[2] = joined(callOf(0), end);
        EXPECT_EQ(WrittenCff(renumbered(source, {2})).charStrings.items.back(),
                  source.charStrings[2]);
    }
}

TEST(HostileCffSubset, StacksMayRunOverAndUnder) {
    CffSections source = nameKeyed();
    source.charStrings[2] = joined(Bytes().fill(5000, 140), callOf(0), Bytes{14});
    EXPECT_NE(renumbered(source, {2}), Bytes());
    source.charStrings[2] = Bytes{10, 29, 10, 12, 18, 12, 18, 1, 19, 0, 10, 14};
    EXPECT_EQ(WrittenCff(renumbered(source, {2})).charStrings.items.back(), source.charStrings[2]);
}

TEST(HostileCffSubset, ALongSpaceDoesNotMakeALongTable) {
    CffSections source;
    source.charStrings = std::vector<Bytes>(60000);
    source.charStrings[1] = Bytes().fill(60000, 140);
    const Bytes table = source.build();
    TableStream stream(table);
    KWMemStream output;
    EXPECT_FALSE(subsetCFFInPlace(stream.table, {59999}, 1, output));
    EXPECT_EQ(output.size(), 0u);
    EXPECT_TRUE(subsetCFFInPlace(stream.table, {59999}, 2, output));
}

TEST(HostileCffSubset, FontDictsThatLieOverEachOtherGiveNothingInPlace) {
    CffCID font;
    font.glyphs = {{0, 0, Bytes{14}}, {1, 1, Bytes{14}}};
    font.fontDicts.resize(3, CffFontDict{.privateDict = CffPrivate{.dict = Bytes{140, 20}}});
    Bytes table = font.build();
    const auto works = [&table] {
        TableStream stream(table);
        KWMemStream output;
        return subsetCFFInPlace(stream.table, {1}, 1, output);
    };
    EXPECT_TRUE(works());
    const std::size_t offsets = table.offsetOf("fdArray") + 3;
    ASSERT_EQ(table[offsets - 1], 1); // bytes of an offset
    const std::uint8_t end = table[offsets + 3];
    // One has all the data, the next one no sense.
    table.patchU8At(offsets + 1, end).patchU8At(offsets + 2, 1);
    EXPECT_FALSE(works());
    table.patchU8At(offsets + 2, end); // the others nothing
    EXPECT_TRUE(works());
}

TEST(HostileCffSubset, AFontDictMayNameItsPrivateOverAndOver) {
    constexpr int kTimes = 200000;
    constexpr int kBehindAll = 0x00FFFFFF;
    const auto privates = [](int offset) {
        Bytes dict;
        for (int i = 0; i < kTimes; ++i)
            dict.u8(139).u8(29).u32(static_cast<std::uint32_t>(offset)).u8(18);
        return dict;
    };
    CffCID font;
    font.glyphs = {{0, 0, Bytes{14}}, {1, 0, Bytes{14}}, {2, 0, Bytes().fill(99, 139).u8(14)}};
    font.fontDicts = {{.dict = privates(kBehindAll)}};
    const Bytes table = font.build();
    TableStream stream(table);
    KWMemStream output;
    ASSERT_TRUE(subsetCFFInPlace(stream.table, {1}, 1, output));
    const WrittenCff written(bytesOf(output));
    const Bytes dict = written.indexAt(written.offset(cffEscape(36))).items.at(0);
    const int moves = static_cast<int>(output.size()) - static_cast<int>(table.size());
    EXPECT_LT(moves, -90);
    const Bytes expected = privates(kBehindAll + moves);
    EXPECT_TRUE(dict.slice(0, expected.size()) == expected);
}

TEST(HostileCffSubset, SectionsThatLieOverEachOtherGiveNothing) {
    // FDArray inside CharStrings, before they end.
    const Bytes sound = cidKeyed().build();
    const Bytes at = Bytes().u8(29).u32(sound.offsetOf("fdArray")).u8(12).u8(36);
    const std::size_t place = sound.str().find(at.str());
    ASSERT_NE(place, std::string::npos);
    Bytes table = sound;
    table.patchU32At(place + 1, sound.offsetOf("charStrings"));
    LoadedCff font(table);
    KWMemStream output;
    EXPECT_FALSE(subsetCFFInPlace(font.file(), {1}, 1, output));
    callBothWriters(table, {1});
}

} // namespace
} // namespace KWFontService_NS
