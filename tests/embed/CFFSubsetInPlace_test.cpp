#include "embed/CFFSubsetInPlace.h"

#include "CffOutput.h"
#include "embed/CFFDictScanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

constexpr std::uint16_t kSpace = 1;

/// A glyph of so many bytes, which tell it apart.
Bytes glyph(int number, std::size_t size = 20) {
    return Bytes().fill(size - 1, static_cast<std::uint8_t>(139 + number)).u8(14);
}

/// Glyphs .notdef, space and five more, with the sections that fonts have.
CffSections nameKeyed() {
    CffSections table;
    table.topDict = Bytes{28, 0xFF, 0xF6, 12, 2};
    table.strings = {Bytes::ofText("x"), Bytes::ofText("y")};
    table.globalSubrs = {Bytes{11}};
    table.charset = Bytes{1, 0, 1, 5};
    table.charStrings = {glyph(0), glyph(1, 4), glyph(2), glyph(3), glyph(4), glyph(5), glyph(6)};
    table.privateDict = CffPrivate{.dict = Bytes{140, 20}, .subrs = {Bytes{140, 11}, Bytes{11}}};
    return table;
}

/// The same, CID-keyed.
CffSections cidKeyed() {
    CffCID font;
    for (int i = 0; i < 7; ++i)
        font.glyphs.push_back({static_cast<std::uint16_t>(i), static_cast<std::uint8_t>(i % 2),
                               glyph(i, i == 1 ? 4 : 20)});
    font.fontDicts = {
        {.dict = Bytes{140, 12, 99},
         .privateDict = CffPrivate{.dict = Bytes{140, 20}, .subrs = {Bytes{140, 11}}}},
        {.dict = Bytes(), .privateDict = CffPrivate{.dict = Bytes{141, 20}}}};
    return font.sections();
}

Bytes inPlace(const Bytes& table, const Glyphs& glyphs, std::uint16_t space = kSpace) {
    TableStream stream(table);
    KWCommonNS::KWMemStream output;
    if (!subsetCFFInPlace(stream.table, glyphs, space, output))
        return {};
    CFFInPlaceSubset subset(stream.table);
    EXPECT_TRUE(subset.plan(glyphs, space));
    EXPECT_EQ(subset.size(), output.size()); // what the directory of the file will say
    return bytesOf(output);
}
Bytes inPlace(const CffSections& table, const Glyphs& glyphs) {
    return inPlace(table.build(), glyphs);
}

/// The bytes of a table from one label up to another or the end.
Bytes section(const Bytes& table, const char* from, const char* to = nullptr) {
    const std::size_t begin = table.offsetOf(from);
    return table.slice(begin, (to != nullptr ? table.offsetOf(to) : table.size()) - begin);
}

TEST(CFFSubsetInPlace, OfANameKeyedFontHasTheseBytes) {
    const Bytes source = nameKeyed().build();
    const Bytes written = inPlace(source, {3});
    const Bytes charStrings = cffIndex({glyph(0), glyph(1, 4), glyph(1, 4), glyph(3)});
    const std::size_t gone = section(source, "charStrings", "private0").size() - charStrings.size();
    Bytes topDict = section(source, "topDict", "strings");
    topDict.patchU32At(topDict.size() - 5, source.offsetOf("private0") - gone);
    EXPECT_EQ(written, joined(Bytes{1, 0, 4, 3}, section(source, "names", "topDict"), topDict,
                              section(source, "strings", "charStrings"), charStrings,
                              section(source, "private0")))
        << written.hex();
}

TEST(CFFSubsetInPlace, OfACIDKeyedFontHasTheseBytes) {
    const Bytes source = cidKeyed().build();
    const Bytes written = inPlace(source, {2, 3});
    const Bytes charStrings = cffIndex({glyph(0), glyph(1, 4), glyph(2), glyph(3)});
    const std::size_t gone = section(source, "charStrings", "fdArray").size() - charStrings.size();
    Bytes topDict = section(source, "topDict", "strings");
    topDict.patchU32At(topDict.size() - 6, source.offsetOf("fdArray") - gone);
    Bytes fontDicts = section(source, "fdArray", "private0");
    fontDicts.patchU32At(fontDicts.size() - 5, source.offsetOf("private1") - gone);
    fontDicts.patchU32At(fontDicts.size() - 16, source.offsetOf("private0") - gone);
    EXPECT_EQ(written, joined(Bytes{1, 0, 4, 3}, section(source, "names", "topDict"), topDict,
                              section(source, "strings", "charStrings"), charStrings, fontDicts,
                              section(source, "private0")))
        << written.hex();
}

// --- glyphs -------------------------------------------------------------------------------------

TEST(CFFSubsetInPlace, GlyphsInBetweenAreSpaces) {
    CffSections source = nameKeyed();
    EXPECT_THAT(
        WrittenCff(inPlace(source, {5})).charStrings.items,
        ElementsAre(glyph(0), glyph(1, 4), glyph(1, 4), glyph(1, 4), glyph(1, 4), glyph(5)));
}

TEST(CFFSubsetInPlace, NothingIsWrittenBeyondTheHighestGlyph) {
    EXPECT_THAT(WrittenCff(inPlace(nameKeyed(), {2})).charStrings.items,
                ElementsAre(glyph(0), glyph(1, 4), glyph(2)));
    EXPECT_THAT(WrittenCff(inPlace(nameKeyed(), {0})).charStrings.items, ElementsAre(glyph(0)));
}

TEST(CFFSubsetInPlace, OrderAndRepeatsOfTheListDoNotShow) {
    const Bytes table = nameKeyed().build();
    EXPECT_EQ(inPlace(table, {6, 2, 2, 0, 6}), inPlace(table, {2, 6}));
}

TEST(CFFSubsetInPlace, EveryGlyphGivesTheTableBack) {
    for (const Bytes& source : {nameKeyed().build(), cidKeyed().build()}) {
        Bytes expected = source;
        EXPECT_EQ(inPlace(source, {0, 1, 2, 3, 4, 5, 6}), expected.patchU8At(3, 3));
    }
}

TEST(CFFSubsetInPlace, AnEmptyListGivesNothing) {
    EXPECT_EQ(inPlace(nameKeyed(), {}), Bytes());
}

TEST(CFFSubsetInPlace, AGlyphBeyondTheFontGivesNothing) {
    EXPECT_EQ(inPlace(nameKeyed(), {7}), Bytes());
    EXPECT_EQ(inPlace(nameKeyed(), {2, 65535}), Bytes());
}

TEST(CFFSubsetInPlace, WithoutSpaceOtherGlyphsDrawNothing) {
    const Bytes table = nameKeyed().build();
    for (const std::uint16_t space : {std::uint16_t{FS_NO_GLYPH}, std::uint16_t{7}})
        EXPECT_THAT(WrittenCff(inPlace(table, {3}, space)).charStrings.items,
                    ElementsAre(glyph(0), Bytes{14}, Bytes{14}, glyph(3)));
}

// Accents in place are the caller's to list.
TEST(CFFSubsetInPlace, IsNotClosedOverAccents) {
    CffSections source = nameKeyed();
    source.charset = Bytes{0}.u16s({1, 34, 35, 125, 36, 37});
    source.charStrings[5] = Bytes{139, 139, 139 + 65, 247, 86, 14};
    EXPECT_THAT(WrittenCff(inPlace(source, {5})).charStrings.items[2], glyph(1, 4));
}

TEST(CFFSubsetInPlace, OffsetsAreAsWideAsTheDataAsks) {
    const auto offSizeOf = [](std::size_t dataSize) {
        CffSections source = nameKeyed();
        source.charStrings[0] = Bytes{14};
        source.charStrings[1] = Bytes().fill(dataSize - 1, 139);
        const WrittenCff written(inPlace(source, {1}));
        EXPECT_EQ(written.charStrings.items.size(), 2u);
        return written.charStrings.offSize;
    };
    EXPECT_EQ(offSizeOf(254), 1u);
    EXPECT_EQ(offSizeOf(255), 2u);
    EXPECT_EQ(offSizeOf(65534), 2u);
    EXPECT_EQ(offSizeOf(65535), 3u);
    EXPECT_EQ(offSizeOf(0xFFFFFE), 3u);
    EXPECT_EQ(offSizeOf(0xFFFFFF), 4u);
}

// --- what surrounds the charstrings -------------------------------------------------------------

TEST(CFFSubsetInPlace, FDSelectFormatZeroIsCopied) {
    CffSections source = cidKeyed();
    source.fdSelect = Bytes{0, 0, 1, 0, 1, 0, 1, 0};
    const WrittenCff written(inPlace(source, {3}));
    EXPECT_EQ(written.table.slice(written.offset(cffEscape(37)), 8), *source.fdSelect);
}

TEST(CFFSubsetInPlace, CharsetAndFDSelectStillDescribeTheWholeFont) {
    const CffSections source = cidKeyed();
    const WrittenCff written(inPlace(source, {3}));
    EXPECT_EQ(written.table.slice(written.offset(15), source.charset->size()), *source.charset);
    EXPECT_EQ(written.table.slice(written.offset(cffEscape(37)), source.fdSelect->size()),
              *source.fdSelect);
}

TEST(CFFSubsetInPlace, SubrsMoveWithTheirPrivate) {
    const WrittenCff name(inPlace(nameKeyed(), {3}));
    EXPECT_THAT(name.subrsOf(name.topDict()).items, ElementsAre(Bytes{140, 11}, Bytes{11}));
    EXPECT_THAT(name.globals.items, ElementsAre(Bytes{11}));
    const WrittenCff cid(inPlace(cidKeyed(), {3}));
    const auto fontDicts = cid.indexAt(cid.offset(cffEscape(36))).items;
    ASSERT_EQ(fontDicts.size(), 2u);
    EXPECT_THAT(cid.subrsOf(fontDicts[0]).items, ElementsAre(Bytes{140, 11}));
    EXPECT_EQ(cid.privateOf(fontDicts[1]), (Bytes{141, 20}));
}

/// A table of pieces that a test lays out by hand: the operators of the Top DICT are given by what
/// they point at.
struct HandMade {
    struct Entry {
        std::string label;
        Bytes before; ///< operands in front of the offset, which takes `form`
        int form = 29;
        Bytes op;
    };
    std::vector<Entry> entries;
    std::vector<std::pair<std::string, Bytes>> sections;
    bool wideTopDict = false; ///< offsets of three bytes where one would do

    static Bytes number(int form, std::size_t value) {
        const int n = static_cast<int>(value);
        if (form == 28)
            return Bytes().u8(28).u16(n);
        if (form == 29)
            return cffInteger(n);
        if (form == 1)
            return Bytes().u8(n + 139);
        const int more = std::max(n - 108, 0); // the first round does not know yet
        return Bytes().u8(247 + more / 256).u8(more % 256);
    }
    Bytes build() const {
        Bytes table;
        std::map<std::string, std::size_t> places;
        for (int round = 0; round < 2; ++round) {
            Bytes dict;
            for (const Entry& entry : entries)
                dict.bytes(entry.before)
                    .bytes(number(entry.form, places[entry.label]))
                    .bytes(entry.op);
            const Bytes topDicts = wideTopDict ? joined(Bytes{0, 1, 3, 0, 0, 1},
                                                        Bytes().u8(0).u16(dict.size() + 1), dict)
                                               : cffIndex({dict});
            table = joined(Bytes{1, 0, 4, 1}, cffIndex({Bytes::ofText("F")}), topDicts, Bytes{0, 0},
                           Bytes{0, 0});
            for (const auto& [label, bytes] : sections) {
                places[label] = table.size();
                table.label(label).bytes(bytes);
            }
        }
        return table;
    }
};

Bytes charStringsOf(int count, std::size_t size = 40) {
    std::vector<Bytes> all;
    for (int i = 0; i < count; ++i)
        all.push_back(glyph(i, size));
    return cffIndex(all);
}

TEST(CFFSubsetInPlace, AFontDictArrayInFrontOfCharStringsIsPatchedWhenAPrivateMoves) {
    HandMade font{.entries = {{"fd", {}, 29, Bytes{12, 36}}, {"cs", {}, 29, Bytes{17}}},
                  .sections = {{"fd", Bytes()}, {"cs", charStringsOf(10)}, {"p", Bytes{140, 20}}}};
    for (int round = 0; round < 2; ++round) {
        const Bytes table = font.build();
        font.sections[0].second =
            cffIndex({joined(Bytes{141}, HandMade::number(28, table.offsetOf("p")), Bytes{18})});
    }
    const Bytes source = font.build();
    const WrittenCff written(inPlace(source, {2}));
    const auto fontDicts = written.indexAt(written.offset(cffEscape(36))).items;
    EXPECT_EQ(written.privateOf(fontDicts.at(0)), (Bytes{140, 20}));
    EXPECT_LT(written.table.size(), source.size());
}

TEST(CFFSubsetInPlace, SectionsBehindCharStringsAreFoundAgain) {
    const HandMade font{.entries = {{"charset", {}, 29, Bytes{15}},
                                    {"encoding", {}, 29, Bytes{16}},
                                    {"cs", {}, 29, Bytes{17}},
                                    {"p", Bytes{141}, 29, Bytes{18}}},
                        .sections = {{"cs", charStringsOf(5)},
                                     {"charset", Bytes{1, 0, 1, 3}},
                                     {"p", Bytes{140, 20}},
                                     {"encoding", Bytes{0, 0}},
                                     {"rest", Bytes{1, 2, 3}}}};
    const Bytes source = font.build();
    const WrittenCff written(inPlace(source, {2}));
    EXPECT_EQ(written.table.slice(written.offset(15), 4), (Bytes{1, 0, 1, 3}));
    EXPECT_EQ(written.table.slice(written.offset(16), 5), (Bytes{0, 0, 1, 2, 3}));
    EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{140, 20}));
}

TEST(CFFSubsetInPlace, APrivateInFrontOfCharStringsStays) {
    const HandMade font{.entries = {{"cs", {}, 28, Bytes{17}}, {"p", Bytes{141}, 28, Bytes{18}}},
                        .sections = {{"space", Bytes().fill(120, 1)},
                                     {"p", Bytes{140, 20}},
                                     {"cs", charStringsOf(5)}}};
    const Bytes source = font.build();
    const Bytes written = inPlace(source, {2});
    EXPECT_EQ(written.slice(4, source.offsetOf("cs") - 4),
              source.slice(4, source.offsetOf("cs") - 4));
}

TEST(CFFSubsetInPlace, TheTopDictIndexKeepsItsWidth) {
    const HandMade font{.entries = {{"cs", {}, 29, Bytes{17}}, {"p", Bytes{141}, 29, Bytes{18}}},
                        .sections = {{"cs", charStringsOf(5)}, {"p", Bytes{140, 20}}},
                        .wideTopDict = true};
    const Bytes source = font.build();
    const WrittenCff written(inPlace(source, {2}));
    EXPECT_EQ(written.topDicts.offSize, 3u);
    EXPECT_EQ(written.offset(17), source.offsetOf("cs"));
    EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{140, 20}));
}

// --- offsets of the Top DICT that are not in the five-byte form ---------------------------------

TEST(CFFSubsetInPlace, OffsetsInOtherFormsAreRewrittenInFiveBytes) {
    for (const int form : {28, 247}) {
        const HandMade font{.entries = {{"charset", {}, form, Bytes{15}},
                                        {"cs", {}, form, Bytes{17}},
                                        {"p", Bytes{141}, form, Bytes{18}}},
                            .sections = {{"space", Bytes().fill(120, 1)},
                                         {"charset", Bytes{1, 0, 1, 3}},
                                         {"cs", charStringsOf(5)},
                                         {"p", Bytes{140, 20}}}};
        const Bytes source = font.build();
        const WrittenCff written(inPlace(source, {2}));
        EXPECT_EQ(written.topDict(),
                  joined(cffInteger(static_cast<int>(written.offset(15))), Bytes{15},
                         cffInteger(static_cast<int>(written.offset(17))), Bytes{17, 141},
                         cffInteger(static_cast<int>(WrittenCff::operand(written.topDict(), 18))),
                         Bytes{18}));
        EXPECT_EQ(written.table.slice(written.offset(15), 4), (Bytes{1, 0, 1, 3}));
        EXPECT_THAT(written.charStrings.items,
                    ElementsAre(glyph(0, 40), glyph(1, 40), glyph(2, 40)));
        EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{140, 20}));
    }
}

TEST(CFFSubsetInPlace, ARewrittenTopDictMayNeedWiderOffsets) {
    HandMade font{.entries = {{"cs", {}, 28, Bytes{17}}, {"p", Bytes{141}, 28, Bytes{18}}},
                  .sections = {{"cs", charStringsOf(5)}, {"p", Bytes{140, 20}}}};
    font.entries[0].before = Bytes().fill(241, 140).u8(13); // a DICT of 253 bytes
    const WrittenCff written(inPlace(font.build(), {2}));
    EXPECT_EQ(written.topDicts.offSize, 2u);
    EXPECT_EQ(written.privateOf(written.topDict()), (Bytes{140, 20}));
    EXPECT_EQ(written.charStrings.items.size(), 3u);
}

TEST(CFFSubsetInPlace, OfSeveralTopDictsTheFirstIsKept) {
    const Bytes plain = nameKeyed().build();
    const Bytes dict = WrittenCff(plain).topDict();
    // The second one moves everything that the first one points at.
    constexpr int kMore = 12;
    Bytes moved = dict;
    std::size_t at = 0;
    for (CFFDictScanner scan(viewOf(dict)); scan.next();) {
        if (dict[scan.last().begin] == 29 && scan.op() != cffEscape(2))
            moved.patchU32At(scan.last().begin + 1,
                             static_cast<std::uint32_t>(scan.last().value.getIntegerValue()) +
                                 kMore);
        at = scan.end();
    }
    ASSERT_EQ(at, dict.size());
    const Bytes second = Bytes().fill(kMore - 1, 11);
    const Bytes source = joined(section(plain, "names", "topDict"), cffIndex({moved, second}),
                                section(plain, "strings"));
    const WrittenCff written(inPlace(joined(Bytes{1, 0, 4, 4}, source), {0, 1, 2, 3, 4, 5, 6}));
    EXPECT_THAT(written.topDicts.items.size(), 1u);
    EXPECT_EQ(written.charStrings.items, WrittenCff(plain).charStrings.items);
    EXPECT_EQ(written.privateOf(written.topDict()), WrittenCff(plain).privateOf(dict));
}

// --- forms of offsets in Font DICTs -------------------------------------------------------------

/// CharStrings, FDArray and one Private each; FDArray has offsets in these forms.
struct FontDictForms {
    std::vector<int> forms;
    std::size_t glyphSize = 40;
    int glyphCount = 6;

    Bytes build() const {
        HandMade font{.entries = {{"cs", {}, 29, Bytes{17}}, {"fd", {}, 29, Bytes{12, 36}}},
                      .sections = {{"cs", charStringsOf(glyphCount, glyphSize)}, {"fd", Bytes()}}};
        for (std::size_t i = 0; i < forms.size(); ++i)
            font.sections.emplace_back("p" + std::to_string(i),
                                       Bytes{140 + static_cast<int>(i), 20});
        for (int round = 0; round < 2; ++round) {
            const Bytes table = font.build();
            std::vector<Bytes> dicts;
            for (std::size_t i = 0; i < forms.size(); ++i)
                dicts.push_back(joined(
                    Bytes{141}, HandMade::number(forms[i], table.offsetOf("p" + std::to_string(i))),
                    Bytes{18, 139, 12, 99}));
            font.sections[1].second = cffIndex(dicts);
        }
        return font.build();
    }
};

std::vector<Bytes> fontDictsOf(const WrittenCff& written) {
    return written.indexAt(written.offset(cffEscape(36))).items;
}

TEST(CFFSubsetInPlace, OffsetsInFontDictsKeepTheirForms) {
    const FontDictForms forms{.forms = {28, 29, 247}};
    const WrittenCff written(inPlace(forms.build(), {3}));
    const auto dicts = fontDictsOf(written);
    ASSERT_EQ(dicts.size(), 3u);
    EXPECT_EQ(dicts[0].u8At(1), 28u);
    EXPECT_EQ(dicts[1].u8At(1), 29u);
    EXPECT_EQ(dicts[2].size(), 7u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(written.privateOf(dicts[static_cast<std::size_t>(i)]), (Bytes{140 + i, 20}));
}

TEST(CFFSubsetInPlace, TwoBytesBecomeOneBelow108AndTheDictShrinks) {
    // Without its glyphs the table is so short that both ends come to below 108.
    const FontDictForms forms{.forms = {247, 247}, .glyphSize = 30, .glyphCount = 4};
    const Bytes source = forms.build();
    ASSERT_GT(source.offsetOf("p0"), 107u);
    const WrittenCff written(inPlace(source, {0}));
    const auto dicts = fontDictsOf(written);
    ASSERT_EQ(dicts.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        const Bytes& dict = dicts[static_cast<std::size_t>(i)];
        EXPECT_EQ(dict.size(), 6u);
        EXPECT_EQ(written.privateOf(dict), (Bytes{140 + i, 20}));
    }
    EXPECT_EQ(written.table.size(), WrittenCff::operand(dicts[1], 18) + 2);
}

// One byte that is 22 below what its form asks for: only a Private right at the start shows it.
TEST(CFFSubsetInPlace, AOneByteOffsetIsWrittenAsItsValueAnd117) {
    const HandMade plain{.entries = {{"cs", {}, 29, Bytes{17}}, {"fd", {}, 29, Bytes{12, 36}}},
                         .sections = {{"cs", charStringsOf(4)}, {"fd", Bytes()}}};
    for (const int privateAt : {60, 107}) {
        HandMade font = plain;
        font.sections[1].second =
            cffIndex({joined(Bytes{141}, HandMade::number(1, 60), Bytes{18})});
        font.sections[1].second.patchU8At(font.sections[1].second.size() - 2, privateAt + 139);
        const WrittenCff written(inPlace(font.build(), {0, 1, 2, 3}));
        EXPECT_EQ(fontDictsOf(written).at(0), joined(Bytes{141, privateAt + 117, 18}));
    }
}

TEST(CFFSubsetInPlace, AnOffsetThatItsFormDoesNotHoldGivesNothing) {
    // The space is long, so the table grows.
    HandMade font{.entries = {{"cs", {}, 29, Bytes{17}}, {"fd", {}, 29, Bytes{12, 36}}},
                  .sections = {{"cs", Bytes()}, {"fd", Bytes()}, {"p", Bytes{140, 20}}}};
    std::vector<Bytes> glyphs(10, Bytes{14});
    glyphs[1] = glyph(1, 150);
    font.sections[0].second = cffIndex(glyphs);
    const auto withForm = [&font](int form) {
        for (int round = 0; round < 2; ++round) {
            const Bytes table = font.build();
            font.sections[1].second = cffIndex(
                {joined(Bytes{141}, HandMade::number(form, table.offsetOf("p")), Bytes{18})});
        }
        return inPlace(font.build(), {9});
    };
    EXPECT_EQ(withForm(247), Bytes());
    const WrittenCff written(withForm(28));
    EXPECT_EQ(written.privateOf(fontDictsOf(written).at(0)), (Bytes{140, 20}));
}

/// The Font DICT that a cut leaves, of a font whose one Font DICT has this operand for its Private;
/// empty when the writer says no.
Bytes fontDictWith(const Bytes& operand, const std::vector<Bytes>& glyphs, const Glyphs& listed) {
    const Bytes dict = joined(Bytes{141}, operand, Bytes{18});
    const HandMade font{
        .entries = {{"cs", {}, 29, Bytes{17}}, {"fd", {}, 29, Bytes{12, 36}}},
        .sections = {{"cs", cffIndex(glyphs)},
                     {"fd", joined(Bytes{0, 1, 2, 0, 1}, Bytes().u16(dict.size() + 1), dict)}}};
    const Bytes cut = inPlace(font.build(), listed);
    if (cut.empty())
        return {};
    const WrittenCff written(cut);
    const auto fontDicts = written.indexAt(written.offset(cffEscape(36)));
    EXPECT_EQ(fontDicts.offSize, 2u); // as it was
    return fontDicts.items.at(0);
}

TEST(CFFSubsetInPlace, FormsOfOffsetsInFontDictsHaveTheseLimits) {
    // The space takes the place of a glyph that is 39 bytes shorter.
    const std::vector<Bytes> growing{Bytes{14}, glyph(1, 40), Bytes{14}, Bytes{14}};
    const auto grown = [&growing](const Bytes& operand) {
        return fontDictWith(operand, growing, {3});
    };
    EXPECT_EQ(grown(Bytes{28, 0x7F, 0xFF}), (Bytes{141, 28, 0x80, 38, 18}));
    EXPECT_EQ(grown(Bytes{28, 0xFF, 0xFF - 39}), (Bytes{141, 28, 0xFF, 0xFF, 18}));
    EXPECT_EQ(grown(Bytes{28, 0xFF, 0xFF - 38}), Bytes());
    EXPECT_EQ(grown(Bytes{250, 255 - 39}), (Bytes{141, 250, 255, 18}));
    EXPECT_EQ(grown(Bytes{250, 255 - 38}), Bytes());
    EXPECT_EQ(grown(Bytes{139 + 99}), (Bytes{141, 99 + 39 + 117, 18}));
    EXPECT_EQ(grown(Bytes{139 + 100}), Bytes());

    // Three glyphs of thirty bytes go, with their offsets.
    const std::vector<Bytes> shrinking(4, glyph(1, 30));
    const auto shrunk = [&shrinking](int value) {
        return fontDictWith(HandMade::number(247, static_cast<std::size_t>(value)), shrinking, {0});
    };
    EXPECT_EQ(shrunk(108 + 93), (Bytes{141, 247, 0, 18}));
    // The byte that the DICT loses moves what lies behind it once more.
    EXPECT_EQ(shrunk(107 + 93), (Bytes{141, 139 + 106, 18}));
}

TEST(CFFSubsetInPlace, OtherFormsOfOffsetsStay) {
    HandMade font{.entries = {{"cs", {}, 29, Bytes{17}}, {"fd", {}, 29, Bytes{12, 36}}},
                  .sections = {{"cs", charStringsOf(4)}, {"fd", Bytes()}}};
    const std::vector<Bytes> dicts{joined(Bytes{141}, cffReal("200"), Bytes{18}),
                                   Bytes{141, 251, 3, 18}, Bytes{18}};
    font.sections[1].second = cffIndex(dicts);
    EXPECT_EQ(fontDictsOf(WrittenCff(inPlace(font.build(), {1}))), dicts);
}

TEST(CFFSubsetInPlace, AnEmptyFontDictArrayIsCopied) {
    const HandMade font{.entries = {{"cs", {}, 29, Bytes{17}}, {"fd", {}, 29, Bytes{12, 36}}},
                        .sections = {{"cs", charStringsOf(4)}, {"fd", Bytes{0, 0, 7, 8, 9}}}};
    const WrittenCff written(inPlace(font.build(), {1}));
    EXPECT_EQ(written.table.slice(written.offset(cffEscape(36)), 5), (Bytes{0, 0, 7, 8, 9}));
}

// --- output -------------------------------------------------------------------------------------

TEST(CFFSubsetInPlace, IsAppendedToWhatIsThere) {
    TableStream stream(nameKeyed().build());
    KWCommonNS::KWMemStream output;
    output.append("abc");
    ASSERT_TRUE(subsetCFFInPlace(stream.table, {3}, kSpace, output));
    EXPECT_EQ(bytesOf(output), joined(Bytes::ofText("abc"), inPlace(nameKeyed(), {3})));
}

TEST(CFFSubsetInPlace, SaysNoToAnOutputThatCannotBeWritten) {
    TableStream stream(nameKeyed().build());
    KWCommonNS::KWMemStream output;
    output.setstate(std::ios::badbit);
    EXPECT_FALSE(subsetCFFInPlace(stream.table, {3}, kSpace, output));
}

} // namespace
} // namespace KWFontService_NS
