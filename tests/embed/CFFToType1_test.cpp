#include "embed/CFFToType1.h"

#include "PackedFonts.h"
#include "cff/Type1Bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

/// What becomes of a table and a list; charstrings as text.
struct Converted {
    bool ok = false;
    std::vector<std::string> glyphs;
    std::vector<int> fontDicts;
    std::vector<std::string> subrs;
    std::vector<KWValue> privates;

    Converted(const Bytes& table, const Glyphs& list) {
        LoadedCff font(table);
        Type1Glyphs out;
        ok = font.ok && convertToType1(font.file(), font, list, out);
        if (!ok)
            return;
        const Bytes glyphData = bytesOf(out.glyphData);
        std::size_t begin = 0;
        for (const Type1Glyphs::Glyph& glyph : out.glyphs) {
            glyphs.push_back(textOf(type1Tokens(glyphData.slice(begin, glyph.end - begin))));
            fontDicts.push_back(glyph.fontDict);
            begin = glyph.end;
        }
        EXPECT_EQ(begin, glyphData.size());
        const Bytes subrData = bytesOf(out.subrData);
        begin = 0;
        for (const std::size_t end : out.subrEnds) {
            subrs.push_back(textOf(type1Tokens(subrData.slice(begin, end - begin))));
            begin = end;
        }
        EXPECT_EQ(begin, subrData.size());
        privates = out.privates;
    }
    Converted(const CffSections& table, const Glyphs& list) : Converted(table.build(), list) {}
};

/// A glyph with two stems that changes its hints once.
Bytes hinted() {
    return {139 + 10, 139 + 20, 18, // hstemhm
            139 + 30, 139 + 40, 19, // vstem and hintmask
            0xC0,     139 + 5,  22, // hmoveto
            19,       0x40,     139 + 6, 6, 14};
}

TEST(CFFToType1, GlyphZeroComesFirstAndTheListInItsOrder) {
    const Converted font(nameKeyed(), {3, 1});
    ASSERT_TRUE(font.ok);
    // Each glyph is its number as a width over the nominal one, which is 2.
    EXPECT_THAT(font.glyphs,
                ElementsAre("0 2 hsbw endchar", "0 5 hsbw endchar", "0 3 hsbw endchar"));
    EXPECT_THAT(font.fontDicts, ElementsAre(0, 0, 0));
    EXPECT_EQ(font.privates.size(), 1U);
}

TEST(CFFToType1, ZerosAndNeighboursThatAreEqualArePassedOver) {
    EXPECT_EQ(Converted(nameKeyed(), {0}).glyphs.size(), 1U);
    EXPECT_EQ(Converted(nameKeyed(), {}).glyphs.size(), 1U);
    EXPECT_EQ(Converted(nameKeyed(), {2, 2, 3, 2}).glyphs.size(), 4U);
    EXPECT_EQ(Converted(nameKeyed(), {2, 0, 2}).glyphs.size(), 3U);
    EXPECT_EQ(Converted(nameKeyed(), {0, 0, 4, 0}).glyphs.size(), 2U);
}

TEST(CFFToType1, EveryGlyphHasTheWidthsOfItsFontDict) {
    CffCID source = cidKeyed();
    for (std::size_t i = 0; i < source.fontDicts.size(); ++i)
        source.fontDicts[i].privateDict =
            CffPrivate{.dict = joined(cffInteger(500), Bytes{20},
                                      cffInteger(static_cast<int>(100 * i)), Bytes{21})};
    source.glyphs[4].charstring = Bytes{14};
    const Converted font(source.build(), {1, 3, 4});
    ASSERT_TRUE(font.ok);
    EXPECT_THAT(font.glyphs, ElementsAre("0 0 hsbw endchar", "0 101 hsbw endchar",
                                         "0 203 hsbw endchar", "0 500 hsbw endchar"));
    EXPECT_THAT(font.fontDicts, ElementsAre(0, 1, 2, 0));
    EXPECT_EQ(font.privates.size(), 3U);
}

TEST(CFFToType1, SubrsAreTakenFromTheFontDictAndTheFont) {
    CffCID source = cidKeyed();
    source.globalSubrs = {Bytes{139 + 7, 22, 11}};
    source.fontDicts[1].privateDict->subrs = {Bytes{139 + 8, 22, 11}};
    source.fontDicts[2].privateDict->subrs = {Bytes{139 + 9, 22, 11}};
    source.glyphs[1].charstring = joined(callOf(0), callOf(0, true), Bytes{14});
    source.glyphs[3].charstring = joined(callOf(0), Bytes{14});
    const Converted font(source.build(), {1, 3});
    ASSERT_TRUE(font.ok);
    EXPECT_EQ(font.glyphs[1], "0 2 hsbw 8 hmoveto 7 hmoveto endchar");
    EXPECT_EQ(font.glyphs[2], "0 3 hsbw 9 hmoveto endchar");
}

TEST(CFFToType1, AllGlyphsShareOnePoolOfSubrs) {
    CffSections source = nameKeyed();
    source.charStrings[1] = hinted();
    source.charStrings[2] = hinted();
    const Converted font(source, {1, 2});
    ASSERT_TRUE(font.ok);
    ASSERT_EQ(font.subrs.size(), 6U);
    EXPECT_EQ(font.subrs[0], "3 0 callothersubr pop pop setcurrentpoint return");
    EXPECT_EQ(font.subrs[3], "return");
    EXPECT_EQ(font.subrs[4], "30 40 vstem return");
    EXPECT_EQ(font.subrs[5], font.subrs[4]);
    EXPECT_THAT(font.glyphs[1], testing::HasSubstr("4 1 3 callothersubr pop callsubr"));
    EXPECT_THAT(font.glyphs[2], testing::HasSubstr("5 1 3 callothersubr pop callsubr"));
}

TEST(CFFToType1, ANameKeyedFontNeedsNoPrivateDict) {
    CffSections source = nameKeyed();
    source.privateDict.reset();
    const Converted font(source, {1});
    ASSERT_TRUE(font.ok);
    EXPECT_THAT(font.glyphs, ElementsAre("0 0 hsbw endchar", "0 1 hsbw endchar"));
    ASSERT_EQ(font.privates.size(), 1U);
    EXPECT_TRUE(font.privates[0].isNull());
}

TEST(CFFToType1, AGlyphThatTheFontLacksFails) {
    EXPECT_FALSE(Converted(nameKeyed(), {1, 5}).ok);
    EXPECT_FALSE(Converted(nameKeyed(), {0xFFFF}).ok);
    CffSections empty = nameKeyed();
    empty.charStrings.clear();
    EXPECT_FALSE(Converted(empty, {}).ok);
}

TEST(CFFToType1, AGlyphThatType1HasNoFormForFailsAll) {
    CffSections source = nameKeyed();
    source.charStrings[2] = Bytes{12, 23, 21, 14}; // random
    EXPECT_TRUE(Converted(source, {1, 3}).ok);
    EXPECT_FALSE(Converted(source, {1, 2, 3}).ok);
}

TEST(CFFToType1, CharstringsOfType1Fail) {
    CffSections source = nameKeyed();
    source.topDict.bytes(Bytes{140, 12, 6});
    EXPECT_FALSE(Converted(source, {1}).ok);
}

TEST(CFFToType1, FDSelectOfFormatZeroFails) {
    CffSections source = cidKeyed().sections();
    ASSERT_TRUE(Converted(source, {1}).ok);
    source.fdSelect = Bytes{0, 0, 1, 1, 2, 0};
    EXPECT_FALSE(Converted(source, {1}).ok);
}

TEST(CFFToType1, AGlyphWithoutAFontDictFails) {
    CffCID source = cidKeyed();
    source.glyphs[2].fontDict = 3;
    EXPECT_TRUE(Converted(source.build(), {1, 3}).ok);
    EXPECT_FALSE(Converted(source.build(), {2}).ok);
}

TEST(CFFToType1, ATableThatEndsEarlyFails) {
    const Bytes whole = nameKeyed().build();
    LoadedCff font(whole);
    ASSERT_TRUE(font.ok);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        TableStream cut(whole.slice(0, size));
        Type1Glyphs out;
        EXPECT_FALSE(convertToType1(cut.table, font, {4}, out)) << size;
    }
}

TEST(CFFToType1, ListsThatCostMoreThanTheTableJustifiesFail) {
    CffSections source = nameKeyed();
    // Every subr calls the next one twice: 2^9 times the last.
    std::vector<Bytes> subrs;
    for (int i = 1; i < 10; ++i)
        subrs.push_back(joined(callOf(i), callOf(i), Bytes{11}));
    subrs.push_back(Bytes(std::vector<std::uint8_t>(200, 139)).bytes(Bytes{11}));
    source.privateDict->subrs = subrs;
    source.charStrings[1] = joined(Bytes{140, 22}, callOf(0), Bytes{14});
    Glyphs list;
    for (int i = 0; i < 1000; ++i)
        list.insert(list.end(), {1, 2});
    EXPECT_FALSE(Converted(source, list).ok);
}

// A mask of twelve bytes stands for 96 stems, each of three tokens.
TEST(CFFToType1, MasksOfManyStemsArePaidFor) {
    CffSections source = nameKeyed();
    const Bytes stems = Bytes(std::vector<std::uint8_t>(192, 140)).u8(18);
    const Bytes mask = joined(Bytes{19}, Bytes(std::vector<std::uint8_t>(12, 0xFF)));
    const Bytes counters = joined(Bytes{20}, Bytes(std::vector<std::uint8_t>(12, 0xFF)));
    for (const Bytes& one : {mask, counters}) {
        Bytes subr;
        for (int i = 0; i < 100; ++i)
            subr.bytes(one);
        source.privateDict->subrs = {subr.u8(11)};
        source.charStrings[1] = joined(stems, callOf(0), Bytes{14});
        EXPECT_TRUE(Converted(source, {1}).ok);
        Bytes calls;
        for (int i = 0; i < 100; ++i)
            calls.bytes(callOf(0));
        source.charStrings[1] = joined(stems, calls, Bytes{14});
        EXPECT_FALSE(Converted(source, {1}).ok);
    }
}

} // namespace
} // namespace KWFontService_NS
