#include "embed/CFFSubsetRenumbered.h"

#include "PackedFonts.h"
#include "embed/CFFDictScanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

constexpr int kFirstCustom = 391;
constexpr std::uint16_t kSpaceSID = 1;
constexpr std::uint16_t kASID = 34;
constexpr std::uint16_t kAcuteSID = 125;

TEST(CFFSubsetRenumbered, OfANameKeyedFontHasTheseBytes) {
    const Bytes written = renumbered(nameKeyed(), {3, 2});
    // Strings in use: Notice 394 and two 395 are 391 and 392 now.
    const Bytes topDict =
        joined(Bytes{248, 27, 1},                              // Notice 391
               Bytes{247, 0, 4}, Bytes{28, 0xFF, 0xF6, 12, 2}, // as they stood
               Bytes{28, 0, 58, 15}, Bytes{28, 0, 65, 17}, Bytes{28, 0, 8, 28, 0, 78, 18});
    EXPECT_EQ(written,
              joined(Bytes{1, 0, 4, 2}, cffIndex({Bytes::ofText("F")}), cffIndex({topDict}),
                     cffIndex({Bytes::ofText("Notice"), Bytes::ofText("two")}),
                     Bytes{0, 0},                   // no global subrs
                     Bytes{1, 0, 34, 0, 1, 136, 0}, // A, then 392
                     cffIndex({glyph(0), glyph(2), glyph(3)}),
                     Bytes{140, 20, 141, 21, 28, 0, 8, 19}, Bytes{0, 0}))
        << written.hex();
}

TEST(CFFSubsetRenumbered, OfACIDKeyedFontHasTheseBytes) {
    const CffCID source = cidKeyed();
    const Bytes written = renumbered(source.build(), {4, 3});
    const Bytes topDict =
        joined(cffROS(391, 392, 0), cffInteger(92), Bytes{15}, cffInteger(96), Bytes{12, 37},
               cffInteger(110), Bytes{17}, cffInteger(123), Bytes{12, 36});
    const Bytes first = joined(Bytes{28, 0, 6}, cffInteger(151), Bytes{18});
    const Bytes third = joined(Bytes{248, 27, 12, 38}, Bytes{28, 0, 6}, cffInteger(159), Bytes{18});
    EXPECT_EQ(written,
              joined(Bytes{1, 0, 4, 4}, cffIndex({Bytes::ofText("KWTest-Regular")}),
                     cffIndex({topDict}), cffIndex(source.sections().strings), Bytes{0, 0},
                     Bytes{1, 0, 3, 1},                               // CIDs are the old glyph ids
                     Bytes{3, 0, 3, 0, 0, 0, 0, 1, 1, 0, 2, 0, 0, 3}, // FDSelect
                     cffIndex({glyph(0), glyph(3), glyph(4)}), cffIndex({first, third}),
                     Bytes{140, 20, 28, 0, 6, 19, 0, 0}, Bytes{142, 20, 28, 0, 6, 19, 0, 0}))
        << written.hex();
}

// --- the list -----------------------------------------------------------------------------------

TEST(CFFSubsetRenumbered, OrderAndRepeatsOfTheListDoNotShow) {
    const Bytes table = nameKeyed().build();
    EXPECT_EQ(renumbered(table, {4, 2, 2, 0, 4}), renumbered(table, {2, 4}));
    EXPECT_EQ(renumbered(cidKeyed().build(), {3, 1, 3}), renumbered(cidKeyed().build(), {1, 3}));
}

TEST(CFFSubsetRenumbered, AnEmptyListGivesNothing) {
    EXPECT_EQ(renumbered(nameKeyed(), {}), Bytes());
}

TEST(CFFSubsetRenumbered, GlyphZeroAloneHasACharsetOfOneRange) {
    const WrittenCff written(renumbered(nameKeyed(), {0}));
    EXPECT_EQ(written.table.slice(written.offset(15), 4), (Bytes{1, 0, 0, 0}));
    EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0)));
}

TEST(CFFSubsetRenumbered, AGlyphBeyondTheFontGivesNothing) {
    EXPECT_EQ(renumbered(nameKeyed(), {1, 5}), Bytes());
    EXPECT_EQ(renumbered(nameKeyed(), {65535}), Bytes());
    EXPECT_EQ(renumbered(cidKeyed().build(), {1, 65535}), Bytes());
}

TEST(CFFSubsetRenumbered, EveryGlyphIsWritten) {
    EXPECT_EQ(WrittenCff(renumbered(nameKeyed(), {0, 1, 2, 3, 4})).charStrings.items,
              std::vector<Bytes>({glyph(0), glyph(2), glyph(4), glyph(1), glyph(3)}));
}

// --- what stays and what goes -------------------------------------------------------------------

TEST(CFFSubsetRenumbered, CharstringTypeOneIsCopiedWhole) {
    CffSections source = nameKeyed();
    source.topDict.bytes(Bytes{140, 12, 6});
    EXPECT_EQ(renumbered(source, {2}), source.build());
    source.topDict = Bytes{141, 12, 6};
    EXPECT_NE(renumbered(source, {2}), source.build());
    source = cidKeyed().sections();
    source.topDict.bytes(Bytes{140, 12, 6});
    EXPECT_EQ(renumbered(source, {2}), source.build());
}

TEST(CFFSubsetRenumbered, OfSeveralTopDictsTheFirstIsKept) {
    CffSections source = cidKeyed().sections();
    source.charset.reset();
    const Bytes plain = source.build();
    const Bytes dict = WrittenCff(plain).topDict();
    // The second one moves everything that the first one points at.
    const Bytes second = Bytes().fill(9, 140).u8(5);
    const std::size_t more = second.size() + 1;
    Bytes moved = dict;
    for (CFFDictScanner scan(viewOf(dict)); scan.next();)
        if (scan.op() != cffEscape(30))
            moved.patchU32At(
                scan.last().begin + 1,
                static_cast<std::uint32_t>(WrittenCff::operand(dict, scan.op()) + more));
    const std::size_t topDictAt = plain.offsetOf("topDict");
    const std::size_t stringsAt = plain.offsetOf("strings");
    Bytes table = joined(plain.slice(0, topDictAt), cffIndex({moved, second}),
                         plain.slice(stringsAt, plain.size() - stringsAt));
    // Private DICTs of Font DICTs moved, too.
    for (const char* const label : {"private0", "private1", "private2"}) {
        const Bytes old = Bytes().u8(29).u32(plain.offsetOf(label)).u8(18);
        const std::size_t at = table.str().find(old.str());
        ASSERT_NE(at, std::string::npos);
        table.patchU32At(at + 1, static_cast<std::uint32_t>(plain.offsetOf(label) + more));
    }
    EXPECT_EQ(renumbered(table, {1, 3}), renumbered(plain, {1, 3}));
    EXPECT_FALSE(renumbered(table, {1, 3}).empty());
}

// Without one CIDs are glyph ids, which the packing changes.
TEST(CFFSubsetRenumbered, ACIDKeyedFontWithoutCharsetGetsOne) {
    CffSections source = cidKeyed().sections();
    source.charset.reset();
    const WrittenCff written(renumbered(source, {1, 3}));
    EXPECT_EQ(WrittenCff::operators(written.topDict()).back(), 15);
    EXPECT_EQ(written.table.slice(written.offset(15), 7), (Bytes{1, 0, 1, 0, 0, 3, 0}));
    EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0), glyph(1), glyph(3)));
    LoadedCff loaded(written.table);
    ASSERT_TRUE(loaded.ok);
    EXPECT_EQ(loaded.getGlyphOfCID(3), 2);
}

TEST(CFFSubsetRenumbered, TheVersionAndTheEncodingAreLeftOut) {
    CffSections source = nameKeyed();
    source.encoding = Bytes{0, 4, 65, 66, 67, 68};
    EXPECT_THAT(WrittenCff::operators(WrittenCff(renumbered(source, {1})).topDict()),
                ElementsAre(1, 4, cffEscape(2), 15, 17, 18));
}

TEST(CFFSubsetRenumbered, OfCustomEncodingIsNotClosedOverAccents) {
    CffSections source;
    source.charset = Bytes{0}.u16s({kSpaceSID, kASID, kAcuteSID});
    source.charStrings = {glyph(0), Bytes{139, 139, 139 + 65, 247, 86, 14}, glyph(2), glyph(3)};
    source.encoding = Bytes{0, 3, 65, 66, 67};
    EXPECT_EQ(WrittenCff(renumbered(source, {1})).charStrings.items.size(), 2u);
    source.encoding.reset();
    EXPECT_EQ(WrittenCff(renumbered(source, {1})).charStrings.items.size(), 4u);
}

// Without the accents' own accents: such a glyph has none.
TEST(CFFSubsetRenumbered, AccentsAreOnePass) {
    CffSections source;
    source.charset = Bytes{0}.u16s({kSpaceSID, kASID, kAcuteSID});
    source.charStrings = {glyph(0), Bytes{139, 139, 139 + 65, 139 + 65, 14},
                          Bytes{139, 139, 247, 86, 247, 86, 14}, glyph(3)};
    EXPECT_THAT(WrittenCff(renumbered(source, {1})).charStrings.items,
                ElementsAre(source.charStrings[0], source.charStrings[1], source.charStrings[2]));
}

// Operators leave the numbers where accents are looked for, so other glyphs come along at times.
TEST(CFFSubsetRenumbered, TheLastOperandsOfAnyGlyphCountAsAccents) {
    CffSections source;
    source.charset = Bytes{0}.u16s({kSpaceSID, kASID});
    source.charStrings = {glyph(0), Bytes{140, 141, 21, 139 + 65, 139 + 32, 5, 14}, glyph(2)};
    EXPECT_THAT(WrittenCff(renumbered(source, {2})).charStrings.items.size(), 2u);
    // 65 is A; 32 is the space, the glyph itself.
    EXPECT_THAT(WrittenCff(renumbered(source, {1})).charStrings.items,
                ElementsAre(glyph(0), source.charStrings[1], glyph(2)));
}

TEST(CFFSubsetRenumbered, GlyphZeroIsNotLookedAtForAccentsUnlessListed) {
    CffSections source;
    source.charset = Bytes{0}.u16s({kSpaceSID, kASID});
    source.charStrings = {Bytes{139, 139, 139 + 65, 139 + 65, 14}, glyph(1), glyph(2)};
    EXPECT_EQ(WrittenCff(renumbered(source, {1})).charStrings.items.size(), 2u);
    EXPECT_EQ(WrittenCff(renumbered(source, {1, 0})).charStrings.items.size(), 3u);
}

// The predefined charset is not known: all glyphs have string id 0 then.
TEST(CFFSubsetRenumbered, OfANameKeyedFontWithoutCharsetHasGlyphZeroOnly) {
    CffSections source = nameKeyed();
    source.charset.reset();
    const WrittenCff written(renumbered(source, {1, 2, 3}));
    EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0)));
    EXPECT_EQ(written.offset(15), 0u);
}

TEST(CFFSubsetRenumbered, GlyphsOfOneNameBecomeTheFirst) {
    CffSections source = nameKeyed();
    source.charset = Bytes{0}.u16s({393, kASID, 393, 391});
    EXPECT_THAT(WrittenCff(renumbered(source, {1, 2, 3})).charStrings.items,
                ElementsAre(glyph(0), glyph(2), glyph(1)));
}

TEST(CFFSubsetRenumbered, OfManyGlyphsOfOneNameItIsTheFirst) {
    CffSections source;
    source.charset = Bytes{0};
    source.charStrings = {glyph(0)};
    for (int i = 1; i < 100; ++i) {
        source.charset->u16(1 + i % 3);
        source.charStrings.push_back(glyph(i));
    }
    Glyphs all;
    for (unsigned short gid = 99; gid > 0; --gid)
        all.push_back(gid);
    EXPECT_THAT(WrittenCff(renumbered(source, all)).charStrings.items,
                ElementsAre(glyph(0), glyph(3), glyph(1), glyph(2)));
}

TEST(CFFSubsetRenumbered, StringsOfTheFontAndItsGlyphsAreRenumberedInStep) {
    const std::vector<CFFOperator> all{
        1, 2, 3, 4, cffEscape(0), cffEscape(21), cffEscape(22), cffEscape(38)};
    for (const CFFOperator op : all) {
        CffSections source = nameKeyed();
        source.topDict = joined(cffInteger(394), op > 255 ? Bytes{12, op & 255} : Bytes{op});
        const WrittenCff written(renumbered(source, {4, 3}));
        EXPECT_THAT(
            written.strings.items,
            ElementsAre(Bytes::ofText("three"), Bytes::ofText("Notice"), Bytes::ofText("two")));
        EXPECT_EQ(written.offset(op), 392u) << op;
        EXPECT_EQ(written.table.slice(written.offset(15), 4), (Bytes{1, 1, 135, 0}));
        EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0), glyph(4), glyph(3)));
    }
}

TEST(CFFSubsetRenumbered, StandardStringsOfTheFontStay) {
    CffSections source = nameKeyed();
    source.topDict = joined(cffInteger(390), Bytes{1});
    const WrittenCff written(renumbered(source, {2}));
    EXPECT_EQ(written.offset(1), 390u);
    EXPECT_EQ(written.strings.end, written.topDicts.end + 2);
}

TEST(CFFSubsetRenumbered, AStringThatTheFontDoesNotHaveIsEmpty) {
    CffSections source = nameKeyed();
    source.topDict = joined(cffInteger(500), Bytes{1});
    EXPECT_THAT(WrittenCff(renumbered(source, {2})).strings.items, ElementsAre(Bytes()));
}

// --- widths of numbers --------------------------------------------------------------------------

TEST(CFFSubsetRenumbered, ALongTableHasLongOffsets) {
    CffSections source = nameKeyed();
    source.charStrings[4].fill(0x7FFF, 139);
    source.charStrings[4].truncate(0x7FFF - (source.build().size() - 0x7FFF) + 2);
    ASSERT_EQ(source.build().size(), 0x7FFFu);
    EXPECT_EQ(renumbered(source, {2}).u8At(3), 2u);
    source.charStrings[4].u8(139);
    const WrittenCff written(renumbered(source, {2}));
    EXPECT_EQ(written.table.u8At(3), 4u);
    EXPECT_THAT(written.charStrings.items, ElementsAre(glyph(0), glyph(2)));
    const Bytes expected = joined(Bytes().u8(29).u32(written.offset(15)).u8(15),
                                  Bytes().u8(29).u32(written.offset(17)))
                               .u8(17);
    EXPECT_NE(written.topDict().str().find(expected.str()), std::string::npos);
}

// Two bytes have a sign for other readers.
TEST(CFFSubsetRenumbered, AShortTableThatGrowsHasLongOffsets) {
    CffSections source = nameKeyed();
    source.strings.clear();
    source.topDict = Bytes();
    source.charset = Bytes{0};
    source.charStrings = {glyph(0)};
    // Single names far apart: three bytes a glyph in place of two.
    for (int i = 0; i < 6000; ++i) {
        source.charset->u16(i * 2 + 2);
        source.charStrings.push_back(glyph(i % 100));
    }
    for (Bytes& charString : source.charStrings)
        charString.u8(14);
    source.strings = std::vector<Bytes>(12000);
    CffSections cut = source;
    const std::size_t room = 0x7FFF;
    while (cut.build().size() > room) {
        cut.charStrings.resize(cut.charStrings.size() - 100);
        cut.charset->truncate(1 + 2 * (cut.charStrings.size() - 1));
        cut.strings.resize(2 * cut.charStrings.size());
    }
    Glyphs all;
    for (unsigned gid = 0; gid < cut.charStrings.size(); ++gid)
        all.push_back(static_cast<unsigned short>(gid));
    const WrittenCff written(renumbered(cut, all));
    EXPECT_EQ(written.charStrings.items.size(), cut.charStrings.size());
    EXPECT_EQ(written.table.u8At(3), written.table.size() > room ? 4 : 2);
}

// --- charset ------------------------------------------------------------------------------------

/// A CID-keyed font of so many glyphs, all alike.
CffSections manyGlyphs(std::size_t count) {
    CffCID font;
    for (std::size_t i = 0; i < count; ++i)
        font.glyphs.push_back({static_cast<std::uint16_t>(i), 0, Bytes{14}});
    font.fontDicts[0].privateDict = CffPrivate{.dict = Bytes{140, 20}};
    return font.sections();
}

Glyphs upTo(unsigned count) {
    Glyphs all;
    for (unsigned gid = 0; gid < count; ++gid)
        all.push_back(static_cast<unsigned short>(gid));
    return all;
}

TEST(CFFSubsetRenumbered, CharsetFormatTwoStartsWithARunOf257) {
    const CffSections source = manyGlyphs(600);
    const auto charsetOf = [&source](const Glyphs& glyphs, std::size_t size) {
        const WrittenCff written(renumbered(source, glyphs));
        return written.table.slice(written.offset(15), size);
    };
    EXPECT_EQ(charsetOf(upTo(256), 4), (Bytes{1, 0, 1, 254}));
    EXPECT_EQ(charsetOf(upTo(257), 4), (Bytes{1, 0, 1, 255}));
    EXPECT_EQ(charsetOf(upTo(258), 5), (Bytes{2, 0, 1, 1, 0}));
    // Many glyphs alone do not make it so.
    Glyphs twoRuns;
    for (unsigned short gid = 1; gid <= 500; ++gid)
        if (gid != 250)
            twoRuns.push_back(gid);
    EXPECT_EQ(charsetOf(twoRuns, 7), (Bytes{1, 0, 1, 248, 0, 251, 249}));
    twoRuns.push_back(550);
    twoRuns.push_back(250);
    EXPECT_EQ(charsetOf(twoRuns, 9), (Bytes{2, 0, 1, 1, 243, 2, 38, 0, 0}));
}

// --- Font DICTs ---------------------------------------------------------------------------------

TEST(CFFSubsetRenumbered, FontDictsArePackedInTheirOrder) {
    const WrittenCff written(renumbered(cidKeyed().build(), {2, 3}));
    const auto fontDicts = written.indexAt(written.offset(cffEscape(36))).items;
    ASSERT_EQ(fontDicts.size(), 3u); // 0 for glyph 0
    EXPECT_EQ(written.table.slice(written.offset(cffEscape(37)), 14),
              (Bytes{3, 0, 3, 0, 0, 0, 0, 1, 1, 0, 2, 2, 0, 3}));
    EXPECT_EQ(written.privateOf(fontDicts[1]), (Bytes{141, 20, 28, 0, 6, 19}));
}

// FontMatrix is among what is dropped.
TEST(CFFSubsetRenumbered, OfAFontDictStayNameAndPrivate) {
    const WrittenCff written(renumbered(cidKeyed().build(), {1}));
    const auto fontDicts = written.indexAt(written.offset(cffEscape(36))).items;
    ASSERT_EQ(fontDicts.size(), 2u);
    EXPECT_THAT(WrittenCff::operators(fontDicts[0]), ElementsAre(18));
    EXPECT_THAT(WrittenCff::operators(fontDicts[1]), ElementsAre(cffEscape(38), 18));
    EXPECT_EQ(WrittenCff::operand(fontDicts[1], cffEscape(38)), 392u);
}

TEST(CFFSubsetRenumbered, NeighboursOfOneFontDictShareARange) {
    const WrittenCff written(renumbered(manyGlyphs(10), {1, 2, 5}));
    EXPECT_EQ(written.table.slice(written.offset(cffEscape(37)), 8),
              (Bytes{3, 0, 1, 0, 0, 0, 0, 4}));
}

TEST(CFFSubsetRenumbered, AFontDictWithoutPrivateHasNone) {
    CffCID font = cidKeyed();
    font.fontDicts[0].privateDict.reset();
    const WrittenCff written(renumbered(font.build(), {3}));
    const auto fontDicts = written.indexAt(written.offset(cffEscape(36))).items;
    ASSERT_EQ(fontDicts.size(), 2u);
    EXPECT_EQ(fontDicts[0], Bytes());
    EXPECT_EQ(written.privateOf(fontDicts[1]), (Bytes{142, 20, 28, 0, 6, 19}));
}

TEST(CFFSubsetRenumbered, FDSelectFormatZeroGivesNothing) {
    CffSections source = cidKeyed().sections();
    source.fdSelect = Bytes{0, 0, 1, 1, 2, 0};
    EXPECT_EQ(renumbered(source, {1}), Bytes());
}

TEST(CFFSubsetRenumbered, AGlyphOfNoFontDictGivesNothing) {
    CffSections source = cidKeyed().sections();
    source.fdSelect = Bytes{3, 0, 1, 0, 0, 0, 0, 3}; // up to glyph 2
    EXPECT_NE(renumbered(source, {2}), Bytes());
    EXPECT_EQ(renumbered(source, {3}), Bytes());
    source.fdSelect = Bytes{3, 0, 1, 0, 0, 3, 0, 5}; // there is no Font DICT 3
    EXPECT_EQ(renumbered(source, {1}), Bytes());
}

// --- Private DICTs ------------------------------------------------------------------------------

TEST(CFFSubsetRenumbered, EveryEntryOfAPrivateDictIsWrittenByItsKey) {
    CffSections source = nameKeyed();
    // In the order of the operators.
    source.privateDict->dict = joined(
        Bytes{140, 141, 6}, Bytes{142, 143, 7}, Bytes{144, 145, 8}, Bytes{146, 147, 9},
        Bytes{148, 10}, Bytes{149, 11}, Bytes{150, 20}, Bytes{151, 21},
        joined(cffReal("0.039625"), Bytes{12, 9}), Bytes{152, 12, 10}, Bytes{153, 12, 11},
        Bytes{154, 155, 12, 12}, Bytes{156, 157, 12, 13}, Bytes{140, 12, 14}, Bytes{140, 12, 17},
        joined(cffReal("0.06"), Bytes{12, 18}), Bytes{158, 12, 19}, Bytes{159, 12, 20});
    const WrittenCff written(renumbered(source, {1}));
    const Bytes dict = written.privateOf(written.topDict());
    EXPECT_EQ(dict, joined(Bytes{153, 12, 11},                               // BlueFuzz
                           cffReal("0.039625"), Bytes{12, 9},                // BlueScale
                           Bytes{152, 12, 10},                               // BlueShift
                           Bytes{140, 141, 6},                               // BlueValues
                           cffReal("0.06"), Bytes{12, 18},                   // ExpansionFactor
                           Bytes{144, 145, 8}, Bytes{146, 147, 9},           // family's blues
                           Bytes{140, 12, 14},                               // ForceBold
                           Bytes{140, 12, 17},                               // LanguageGroup
                           Bytes{142, 143, 7},                               // OtherBlues
                           Bytes{148, 10}, Bytes{149, 11},                   // StdHW, StdVW
                           Bytes{154, 155, 12, 12}, Bytes{156, 157, 12, 13}, // StemSnap
                           Bytes{150, 20}, Bytes{158, 12, 19}, Bytes{151, 21})
                        .u8(28)
                        .u16(dict.size())
                        .u8(19))
        << dict.hex();
}

TEST(CFFSubsetRenumbered, ForceBoldOfZeroIsZero) {
    CffSections source = nameKeyed();
    source.privateDict->dict = Bytes{139, 12, 14};
    const WrittenCff written(renumbered(source, {1}));
    EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{139, 12, 14, 28, 0, 7, 19}));
}

TEST(CFFSubsetRenumbered, AnArrayEndsWhereAnOperandIsMissing) {
    CffSections source = nameKeyed();
    source.privateDict->dict = Bytes{140, 255, 141, 6}; // 255 stands for no operand
    const WrittenCff written(renumbered(source, {1}));
    EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{140, 6, 28, 0, 6, 19}));
}

TEST(CFFSubsetRenumbered, AShortIntegerLosesItsSign) {
    CffSections source = nameKeyed();
    source.privateDict->dict = Bytes{28, 0xFF, 0x6A, 21};
    const WrittenCff written(renumbered(source, {1}));
    EXPECT_EQ(written.privateOf(written.topDict()),
              joined(cffInteger(65386), Bytes{21, 28, 0, 10, 19}));
}

TEST(CFFSubsetRenumbered, WithoutLocalSubrsPointsAtAnEmptyIndexBehindThePrivate) {
    const WrittenCff written(renumbered(nameKeyed(), {1}));
    const Bytes dict = written.privateOf(written.topDict());
    EXPECT_EQ(WrittenCff::operand(dict, 19), dict.size());
    EXPECT_EQ(written.table.slice(written.table.size() - 2, 2), (Bytes{0, 0}));
}

TEST(CFFSubsetRenumbered, ANameKeyedFontWithoutPrivateHasNone) {
    CffSections source = nameKeyed();
    source.privateDict.reset();
    const WrittenCff written(renumbered(source, {1}));
    EXPECT_EQ(written.table.size(), written.charStrings.end);
    source.topDict.bytes(Bytes{139, 139, 18}); // nothing at 0
    const WrittenCff ofNothing(renumbered(source, {1}));
    EXPECT_EQ(ofNothing.table.size(), ofNothing.charStrings.end);
    EXPECT_EQ(WrittenCff::operand(ofNothing.topDict(), 18, 1), 0u);
}

// --- output -------------------------------------------------------------------------------------

TEST(CFFSubsetRenumbered, IsAppendedToWhatIsThere) {
    const Bytes table = nameKeyed().build();
    for (const Bytes& source : {table, cidKeyed().build()}) {
        LoadedCff font(source);
        KWCommonNS::KWMemStream output;
        output.append("abc");
        ASSERT_TRUE(subsetCFFRenumbered(font.file(), font, {1, 2}, output));
        EXPECT_EQ(bytesOf(output), joined(Bytes::ofText("abc"), renumbered(source, {1, 2})));
    }
}

TEST(CFFSubsetRenumbered, SaysNoToAnOutputThatCannotBeWritten) {
    for (const Bytes& source : {nameKeyed().build(), cidKeyed().build()}) {
        LoadedCff font(source);
        KWCommonNS::KWMemStream output;
        output.setstate(std::ios::badbit);
        EXPECT_FALSE(subsetCFFRenumbered(font.file(), font, {1}, output));
        EXPECT_EQ(output.size(), 0u);
    }
}

TEST(CFFSubsetRenumbered, CanBeLoadedAndCutAgain) {
    const Bytes once = renumbered(nameKeyed(), {1, 2, 4});
    EXPECT_EQ(renumbered(once, {0, 1, 2, 3}), once);
    const Bytes cid = renumbered(cidKeyed().build(), {1, 2, 3, 4});
    EXPECT_EQ(renumbered(cid, {1, 2, 3, 4}), cid);
    LoadedCff loaded(cid);
    ASSERT_TRUE(loaded.ok);
    EXPECT_EQ(loaded.getGlyphOfCID(3), 3);
}

} // namespace
} // namespace KWFontService_NS
