// Subrs of packed `CFF ` tables.

#include "PackedFonts.h"
#include "embed/CFFSubsetRenumbered.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CFFSubsetRenumbered, SubrsInUseArePackedWithTheirCalls) {
    CffSections source = nameKeyed();
    source.globalSubrs = {Bytes{140, 11}, Bytes{141, 11}, joined(callOf(0, true), Bytes{11})};
    source.privateDict->subrs = {Bytes{142, 11}, joined(callOf(3), Bytes{11}), Bytes{143, 11},
                                 joined(callOf(1, true), Bytes{11})};
    source.charStrings[1] = joined(callOf(1), Bytes{14});
    source.charStrings[3] = joined(callOf(2, true), Bytes{14});
    const WrittenCff locals(renumbered(source, {1}));
    EXPECT_THAT(locals.globals.items, ElementsAre(Bytes{141, 11}));
    EXPECT_THAT(locals.subrsOf(locals.topDict()).items,
                ElementsAre(joined(callOf(1), Bytes{11}), joined(callOf(0, true), Bytes{11})));
    EXPECT_THAT(locals.charStrings.items, ElementsAre(glyph(0), joined(callOf(0), Bytes{14})));

    const WrittenCff globals(renumbered(source, {3}));
    EXPECT_THAT(globals.globals.items,
                ElementsAre(Bytes{140, 11}, joined(callOf(0, true), Bytes{11})));
    EXPECT_THAT(globals.subrsOf(globals.topDict()).items, IsEmpty());
    EXPECT_THAT(globals.charStrings.items,
                ElementsAre(glyph(0), joined(callOf(1, true), Bytes{14})));
}

TEST(CFFSubsetRenumbered, EachFontDictHasItsOwnSubrs) {
    CffCID font = cidKeyed();
    font.fontDicts[1].privateDict->subrs = {Bytes{140, 11}, Bytes{141, 11}};
    font.fontDicts[2].privateDict->subrs = {Bytes{142, 11}, Bytes{143, 11}};
    font.glyphs[1].charstring = joined(callOf(1), Bytes{14});
    font.glyphs[3].charstring = joined(callOf(0), Bytes{14});
    const WrittenCff written(renumbered(font.build(), {1, 3}));
    const auto fontDicts = written.indexAt(written.offset(cffEscape(36))).items;
    ASSERT_EQ(fontDicts.size(), 3u);
    EXPECT_THAT(written.subrsOf(fontDicts[0]).items, IsEmpty());
    EXPECT_THAT(written.subrsOf(fontDicts[1]).items, ElementsAre(Bytes{141, 11}));
    EXPECT_THAT(written.subrsOf(fontDicts[2]).items, ElementsAre(Bytes{142, 11}));
    EXPECT_EQ(written.charStrings.items[1], joined(callOf(0), Bytes{14}));
    EXPECT_EQ(written.charStrings.items[2], joined(callOf(0), Bytes{14}));
}

TEST(CFFSubsetRenumbered, AGlobalSubrGoesWithTheFontDictThatLedThereFirst) {
    CffCID font = cidKeyed();
    font.globalSubrs = {joined(callOf(1), Bytes{11})};
    font.fontDicts[1].privateDict->subrs = {Bytes{140, 11}, Bytes{141, 11}};
    font.fontDicts[2].privateDict->subrs = {Bytes{142, 11}, Bytes{143, 11}};
    font.glyphs[1].charstring = joined(callOf(0, true), Bytes{14});
    font.glyphs[3].charstring = joined(callOf(0), callOf(0, true), Bytes{14});
    const WrittenCff written(renumbered(font.build(), {3, 1}));
    // Number 1 of Font DICT 1 is its only one now; of Font DICT 2 it stays 1.
    EXPECT_THAT(written.globals.items, ElementsAre(joined(callOf(0), Bytes{11})));
}

/// A font whose glyph 1 calls so many of its subrs, glyph 2 the last one alone.
CffSections subrsByNumber(int count) {
    CffSections source = nameKeyed();
    const int bias = subrBias(static_cast<std::size_t>(count));
    Bytes calls;
    for (int i = 0; i < count; ++i) {
        source.globalSubrs.push_back(Bytes{139 + i % 100, 11});
        calls.bytes(Bytes().u8(28).i16(i - bias).u8(29));
    }
    source.charStrings[1] = calls.u8(14);
    source.charStrings[2] = Bytes().u8(28).i16(count - 1 - bias).u8(29).u8(14);
    return source;
}

TEST(CFFSubsetRenumbered, TheBiasIsThatOfTheNewCount) {
    const auto numbersOf = [](int count) {
        const WrittenCff written(renumbered(subrsByNumber(count), {1}));
        EXPECT_EQ(written.globals.items.size(), static_cast<std::size_t>(count));
        CharStringCounts counts;
        const Bytes charString = written.charStrings.items.back();
        CharStringScanner scan(viewOf(charString), counts);
        scan.next();
        return scan.number();
    };
    EXPECT_EQ(numbersOf(1239), -107);
    EXPECT_EQ(numbersOf(1240), -1131);
    const WrittenCff last(renumbered(subrsByNumber(1240), {2}));
    EXPECT_THAT(last.globals.items, ElementsAre(Bytes{139 + 39, 11}));
    EXPECT_EQ(last.charStrings.items.back(), joined(callOf(0, true), Bytes{14}));
}

TEST(CFFSubsetRenumbered, TheLargestBiasIsMet) {
    const WrittenCff written(renumbered(subrsByNumber(33900), {2, 1}));
    EXPECT_EQ(written.globals.items.size(), 33900u);
    EXPECT_EQ(written.globals.offSize, 3u);
    EXPECT_EQ(written.charStrings.items[1], (Bytes{250, 255, 29, 14})); // 1131
}

TEST(CFFSubsetRenumbered, StemsOfASubrCountForTheMaskBehindIt) {
    CffSections source = nameKeyed();
    Bytes stems;
    for (int i = 0; i < 9; ++i)
        stems.bytes(Bytes{140, 141});
    source.privateDict->subrs = {Bytes{11}, joined(stems, Bytes{18, 11})};
    // Nine stems take two bytes, which look like the call of a subr here.
    const Bytes mask{19, 139 + subrNumber(0), 10};
    source.charStrings[1] = joined(callOf(1), mask, callOf(1), Bytes{14});
    const WrittenCff written(renumbered(source, {1}));
    EXPECT_EQ(written.charStrings.items.back(), joined(callOf(0), mask, callOf(0), Bytes{14}));
    EXPECT_EQ(written.subrsOf(written.topDict()).items.size(), 1u);
}

TEST(CFFSubsetRenumbered, ACallOfASubrThatIsNotThereStays) {
    CffSections source = nameKeyed();
    source.charStrings[1] = joined(callOf(5), callOf(7, true), Bytes{14});
    const WrittenCff written(renumbered(source, {1}));
    EXPECT_EQ(written.charStrings.items.back(), source.charStrings[1]);
    EXPECT_THAT(written.globals.items, IsEmpty());
}

} // namespace
} // namespace KWFontService_NS
