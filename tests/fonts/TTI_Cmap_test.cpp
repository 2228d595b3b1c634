#include "fonts/CmapFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

Bytes format0() {
    return CmapFormat0::of({{'A', 10}}).build();
}
Bytes format2() {
    return CmapFormat2::of({{'A', 12}}).build();
}
Bytes format4() {
    return CmapFormat4::of({{'A', 14}, {'Z', 15}}).build();
}
Bytes format12() {
    return CmapFormat12::of({{'A', 112}}).build();
}
Bytes format13() {
    return CmapFormat13::of({{'A', 113}}).build();
}
Bytes format14() {
    return CmapFormat14{.selectors = {{.defaults = {{'A', 0}}, .mappings = {{'B', 77}}}}}.build();
}

// --- the table ----------------------------------------------------------------------------------

TEST(Cmap, AMissingTableIsAnErrorUnlessTheFontIsEmbedded) {
    const Bytes file = SfntBuilder().table("head", Head{}).build();
    CmapReading plain(Bytes{});
    plain.read(file, false);
    EXPECT_FALSE(plain.ok);
    EXPECT_EQ(plain.complaint(), fileError("'cmap' table not found"));
    CmapReading embedded(Bytes{});
    embedded.error.clear();
    embedded.read(file, true);
    EXPECT_TRUE(embedded.ok);
    EXPECT_EQ(embedded.complaint(), kNoComplaint);
    EXPECT_FALSE(embedded.cmap.holdsSubtable());
}

TEST(Cmap, AShortHeaderIsAReadError) {
    const Bytes table = Cmap::unicode({{'A', 1}}).build();
    EXPECT_EQ(CmapReading(table, 3).complaint(), readError("'cmap' table read error"));
    EXPECT_EQ(CmapReading(table, 0).complaint(), readError("'cmap' table read error"));
}

TEST(Cmap, NoRecordsAreAFileError) {
    EXPECT_EQ(CmapReading(Cmap{}).complaint(), fileError("'cmap' table has no record error"));
}

TEST(Cmap, ShortRecordsAreAReadError) {
    const Bytes table = Cmap::unicode({{'A', 1}}).build();
    EXPECT_EQ(CmapReading(table, 11).complaint(), readError("'cmap' table record read error"));
}

TEST(Cmap, ASubtableBeyondTheFileIsAFormatReadErrorAndEndsTheReading) {
    const CmapReading reading(
        Cmap{.records = {{3, 1, format4()}, {3, 10, {}, 0xFFFFFFFF}, {1, 0, format0()}}});
    EXPECT_FALSE(reading.ok);
    EXPECT_EQ(reading.complaint(), readError("'cmap' table format read error"));
    EXPECT_EQ(reading('A'), 14) << "what was read before stays";
}

TEST(Cmap, AFailingSubtableEndsTheReadingAndKeepsThoseBefore) {
    auto bad = CmapFormat12::of({{'A', 1}});
    bad.length = 16;
    const CmapReading reading(
        Cmap{.records = {{3, 1, format4()}, {3, 10, bad.build()}, {3, 10, format13()}}});
    EXPECT_FALSE(reading.ok);
    EXPECT_EQ(reading('A'), 14);
}

TEST(Cmap, ATableCutAnywhereIsAnErrorAndNeverASurprise) {
    const Bytes table = Cmap{.records = {{3, 1, format4()},
                                         {1, 0, format0()},
                                         {3, 2, format2()},
                                         {3, 10, format12()},
                                         {3, 10, format13()},
                                         {0, 5, format14()}}}
                            .build();
    for (std::size_t end = 0; end < table.size(); ++end) {
        const CmapReading reading(table, end);
        EXPECT_FALSE(reading.ok) << end;
        EXPECT_NE(reading.complaint(), kNoComplaint) << end;
        for (const int ch : std::initializer_list<int>{-1, 0, 'A', 'Z', 0xFFFF, 0x10FFFF})
            (void)reading(ch);
    }
    EXPECT_TRUE(CmapReading(table).ok);
}

TEST(Cmap, IsNotReadAgainWhileASubtableIsHeld) {
    CmapReading reading(Cmap::unicode({{'A', 1}}));
    ASSERT_TRUE(reading.ok);
    reading.read(SfntBuilder().table("head", Head{}).build(), false);
    EXPECT_TRUE(reading.ok) << "the missing table is not noticed";
    EXPECT_EQ(reading('A'), 1);
}

TEST(Cmap, IsReadAgainWhenOnlyVariationSequencesAreHeld) {
    CmapReading reading = CmapReading(Cmap{.records = {{0, 5, format14()}}});
    ASSERT_FALSE(reading.ok);
    reading.read(SfntBuilder().table("cmap", Cmap::unicode({{'A', 1}})).build(), false);
    EXPECT_TRUE(reading.ok);
    EXPECT_EQ(reading('A'), 1);
}

// --- which records ------------------------------------------------------------------------------

TEST(Cmap, TakesTheWindowsAndMacintoshEncodingsItKnows) {
    for (int encoding = 0; encoding < 30; ++encoding) {
        const bool windows = encoding <= 5 || encoding == 10;
        const bool macintosh = encoding <= 3 || encoding == 25;
        const auto id = static_cast<std::uint16_t>(encoding);
        EXPECT_EQ(CmapReading::of(format4(), 3, id).ok, windows) << encoding;
        EXPECT_EQ(CmapReading::of(format4(), 1, id).ok, macintosh) << encoding;
    }
}

TEST(Cmap, SkipsOtherPlatformsWithoutLookingAtTheirSubtables) {
    for (const int platform : {2, 4, 240, 0xFFFF}) {
        const auto id = static_cast<std::uint16_t>(platform);
        const CmapReading reading(Cmap{.records = {{id, 1, {}, 0xFFFFFFFF}, {3, 1, format4()}}});
        EXPECT_TRUE(reading.ok);
        EXPECT_EQ(reading('A'), 14);
    }
}

TEST(Cmap, UnicodeRecordsFromEncodingThreeOnNeedNoMacintoshMode) {
    for (const int encoding : {3, 4, 6, 77}) {
        const CmapReading reading =
            CmapReading::of(format4(), 0, static_cast<std::uint16_t>(encoding));
        EXPECT_TRUE(reading.ok);
        EXPECT_FALSE(reading.macFont);
        EXPECT_EQ(reading('A'), 14);
    }
}

TEST(Cmap, OldUnicodeRecordsAreTakenOnTheSecondPassWhichSetsMacFontForGood) {
    for (const std::uint16_t encoding : std::initializer_list<std::uint16_t>{0, 1, 2}) {
        const CmapReading reading = CmapReading::of(format4(), 0, encoding);
        EXPECT_TRUE(reading.ok);
        EXPECT_TRUE(reading.macFont);
        EXPECT_EQ(reading('A'), 14);
    }
}

TEST(Cmap, OldUnicodeRecordsAreLeftWhileAnotherRecordIsUsable) {
    const CmapReading reading(
        Cmap{.records = {{0, 0, CmapFormat12::of({{'A', 5}}).build()}, {3, 1, format4()}}});
    EXPECT_FALSE(reading.macFont);
    EXPECT_EQ(reading('A'), 14);
}

TEST(Cmap, AMacintoshFontTakesOldUnicodeRecordsAtOnce) {
    const Bytes table =
        Cmap{.records = {{0, 0, CmapFormat12::of({{'A', 5}}).build()}, {3, 1, format4()}}}.build();
    const CmapReading reading(table, table.size(), true);
    EXPECT_EQ(reading('A'), 5);
}

TEST(Cmap, ASecondPassThatFindsNothingNamesTheLastUnsupportedFormat) {
    const CmapReading reading(Cmap{.records = {{3, 1, CmapFormat10::of({{'A', 1}}).build()},
                                               {0, 0, CmapFormat6::of({{'A', 1}}).build()},
                                               {3, 10, CmapFormat8::of({{'A', 1}}).build()}}});
    EXPECT_FALSE(reading.ok);
    EXPECT_TRUE(reading.macFont);
    EXPECT_EQ(reading.complaint(), fileError("'cmap' table format 8 unsupported"));
}

TEST(Cmap, NoUsableRecordOfASupportedFormatIsAnErrorOfItsOwn) {
    for (const CmapReading& reading :
         {CmapReading::of(format4(), 3, 6), CmapReading::of(format4(), 2, 1)}) {
        EXPECT_FALSE(reading.ok);
        EXPECT_TRUE(reading.macFont);
        EXPECT_EQ(reading.complaint(), fileError("'cmap' table has no valid record error"));
    }
}

TEST(Cmap, VariationSequencesAloneAreNoUsableRecord) {
    const CmapReading reading(Cmap{.records = {{0, 5, format14()}}});
    EXPECT_FALSE(reading.ok);
    EXPECT_EQ(reading.complaint(), fileError("'cmap' table has no valid record error"));
    EXPECT_TRUE(reading.cmap.hasVariationSelector());
    EXPECT_FALSE(reading.cmap.holdsSubtable());
}

TEST(Cmap, AnUnsupportedFormatIsNoErrorBesideAUsableOne) {
    const CmapReading reading(
        Cmap{.records = {{3, 1, CmapFormat6::of({{'A', 1}}).build()}, {3, 1, format4()}}});
    EXPECT_TRUE(reading.ok);
    EXPECT_EQ(reading.complaint(), kNoComplaint);
}

TEST(Cmap, TheFirstRecordOfAFormatWinsWhateverItsPlatform) {
    const CmapReading reading(
        Cmap{.records = {{1, 0, CmapFormat4::of({{'A', 1}}).build()}, {3, 1, format4()}}});
    EXPECT_EQ(reading('A'), 1);
}

// --- which subtable answers ---------------------------------------------------------------------

TEST(Cmap, TheHighestFormatAnswersWhateverTheOrder) {
    const std::vector<std::pair<Bytes, int>> ascending = {
        {format0(), 10}, {format2(), 12}, {format4(), 14}, {format12(), 112}, {format13(), 113}};
    for (std::size_t highest = 0; highest < ascending.size(); ++highest) {
        Cmap forwards;
        Cmap backwards;
        for (std::size_t i = 0; i <= highest; ++i) {
            forwards.records.push_back({3, 1, ascending[i].first});
            backwards.records.push_back({3, 1, ascending[highest - i].first});
        }
        EXPECT_EQ(CmapReading(forwards)('A'), ascending[highest].second);
        EXPECT_EQ(CmapReading(backwards)('A'), ascending[highest].second);
    }
}

TEST(Cmap, NoOtherSubtableIsAskedWhenTheBestOneMisses) {
    const CmapReading reading(Cmap{.records = {{3, 1, format4()}, {3, 10, format12()}}});
    EXPECT_EQ(reading('A'), 112);
    EXPECT_EQ(reading('Z'), kMissing) << "only format 4 maps it";
}

TEST(Cmap, WithoutASubtableEveryCharacterIsMissing) {
    const CmapReading reading(Cmap{});
    EXPECT_EQ(reading('A'), kMissing);
    EXPECT_EQ(reading.withGlyphZero(0), kMissing);
    EXPECT_EQ(reading.cmap.convertToCode(0x12345), 0x12345);
    EXPECT_EQ(reading.cmap.embedableCharCount(), 0U);
    EXPECT_FALSE(reading.cmap.hasVariationSelector());
    EXPECT_EQ(reading.cmap.variationSequence('A', 0xFE00, true), kMissing);
}

TEST(Cmap, TheEncodingIsThatOfTheSubtableThatAnswers) {
    // (3, 2) would need Shift JIS; format 12 of (3, 10) takes the character as it is.
    const CmapReading reading(
        Cmap{.records = {{3, 2, format4()}, {3, 10, CmapFormat12::of({{0x3042, 9}}).build()}}});
    EXPECT_EQ(reading(0x3042), 9);
}

TEST(Cmap, FormatZeroTakesCharactersForCodesWhateverItsEncoding) {
    const CmapReading reading = CmapReading::of(format0(), 1, 1);
    EXPECT_EQ(reading.cmap.convertToCode(0x3042), 0x3042);
    EXPECT_EQ(reading('A'), 10);
}

TEST(Cmap, GlyphZeroIsMissingUnlessZeroGlyphIdIsSet) {
    auto segment =
        CmapFormat4{.segments = {{.startCode = 'A', .endCode = 'A', .idDelta = -'A'}, {}}};
    auto group12 = CmapFormat12{.groups = {{'A', 'A', 0}}};
    auto group13 = CmapFormat13{.groups = {{'A', 'A', 0}}};
    for (const Bytes& subtable : {segment.build(), group12.build(), group13.build()}) {
        const CmapReading reading = CmapReading::of(subtable);
        EXPECT_EQ(reading('A'), kMissing);
        EXPECT_EQ(reading.withGlyphZero('A'), 0);
        EXPECT_EQ(reading.withGlyphZero('B'), kMissing);
    }
}

TEST(Cmap, ZeroGlyphIdPlaysNoPartInFormatsZeroAndTwo) {
    EXPECT_EQ(CmapReading::of(format0(), 1, 0).withGlyphZero('B'), kMissing);
    EXPECT_EQ(CmapReading::of(format2(), 3, 1).withGlyphZero('B'), kMissing);
}

TEST(Cmap, TheEmbeddableCountIsTheLargestOfAllSubtables) {
    const CmapReading reading(
        Cmap{.records = {{3, 10, format12()},                                          // 1
                         {3, 1, format4()},                                            // 2
                         {1, 0, CmapFormat0::of({{1, 1}, {2, 2}, {3, 3}}).build()}}}); // 1 + 3
    EXPECT_EQ(reading.cmap.embedableCharCount(), 4U);
}

// --- variation sequences ------------------------------------------------------------------------

TEST(Cmap, AVariationSequenceAnswersTheOrdinaryGlyphOrOneOfItsOwn) {
    const CmapReading reading(Cmap{.records = {{0, 5, format14()}, {3, 1, format4()}}});
    EXPECT_TRUE(reading.cmap.hasVariationSelector());
    EXPECT_EQ(reading.cmap.variationSequence('A', 0xFE00, false), 14);
    EXPECT_EQ(reading.cmap.variationSequence('B', 0xFE00, false), 77);
    EXPECT_EQ(reading.cmap.variationSequence('C', 0xFE00, false), kMissing);
    EXPECT_EQ(reading.cmap.variationSequence('A', 0xFE01, false), kMissing);
}

TEST(Cmap, ADefaultSequenceOfAMissingCharacterIsMissing) {
    const CmapReading reading(
        Cmap{.records = {{0, 5, format14()}, {3, 1, CmapFormat4::of({{'Q', 1}}).build()}}});
    EXPECT_EQ(reading.cmap.variationSequence('A', 0xFE00, false), kMissing);
}

TEST(Cmap, AMissingDefaultIsNotSoughtAmongTheGlyphsOfTheirOwn) {
    const CmapFormat14 both{.selectors = {{.defaults = {{'A', 0}}, .mappings = {{'A', 77}}}}};
    const CmapReading reading(
        Cmap{.records = {{0, 5, both.build()}, {3, 1, CmapFormat4::of({{'Q', 1}}).build()}}});
    EXPECT_EQ(reading.cmap.variationSequence('A', 0xFE00, false), kMissing);
}

} // namespace
} // namespace KWFontService_NS
