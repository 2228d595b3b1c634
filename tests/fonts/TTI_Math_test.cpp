#include "fonts/TTI_Math.h"

#include "common/KWLimits.h"
#include "support/LayoutTables.h"
#include "support/MathTable.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Constant = FS_MATHConstants;

constexpr unsigned short kNone = 0xFFFF;
constexpr int kConstantsSize = 214;

TTI_Math read(const Bytes& table) {
    TTI_Math math;
    math.read(KWCommonNS::ByteView(table.data(), table.size()));
    return math;
}
TTI_Math read(const Math& table) {
    return read(table.build());
}

// --- the records --------------------------------------------------------------------------------

TEST(Math, AnyOfTheThreeRecordsIsInformation) {
    EXPECT_TRUE(read(Math{.constants = MathConstants{}}).hasInfo());
    EXPECT_TRUE(read(Math{.glyphInfo = MathGlyphInfo{}}).hasInfo());
    EXPECT_TRUE(read(Math{.variants = MathVariants{}}).hasInfo());
    EXPECT_FALSE(read(Math{}).hasInfo());
    EXPECT_FALSE(read(Bytes{}).hasInfo());
    EXPECT_FALSE(TTI_Math().hasInfo());
}

TEST(Math, TheVersionDoesNotMatter) {
    Bytes table = Math{.constants = MathConstants{{Constant::axisHeight, 250}}}.build();
    table.patchU32At(std::size_t{0}, 0x00070001U);
    EXPECT_FLOAT_EQ(read(table).constant(Constant::axisHeight, 1000), 0.25F);
}

TEST(Math, ARecordThatDoesNotLieInsideTheTableIsAbsent) {
    for (const std::size_t field : {4U, 6U, 8U}) {
        const std::size_t size = field == 4 ? kConstantsSize : field == 6 ? 8 : 10;
        Bytes table = Bytes().u32(0x00010000).u16(0).u16(0).u16(0).zero(size);
        table.patchU16At(field, 10);
        EXPECT_TRUE(read(table).hasInfo()) << field;
        EXPECT_FALSE(read(Bytes(table).truncate(table.size() - 1)).hasInfo()) << field;
        table.patchU16At(field, 0xFFFF);
        EXPECT_FALSE(read(table).hasInfo()) << field;
    }
}

// --- constants ----------------------------------------------------------------------------------

TEST(Math, PercentagesAreHundredthsAndLengthsAreInEm) {
    const TTI_Math math = read(Math{
        .constants = MathConstants{{Constant::scriptPercentScaleDown, 70},
                                   {Constant::scriptScriptPercentScaleDown, 55},
                                   {Constant::axisHeight, 250},
                                   {Constant::radicalDegreeBottomRaisePercent, 60}},
    });
    for (const int em : {1000, 2048}) {
        EXPECT_FLOAT_EQ(math.constant(Constant::scriptPercentScaleDown, em), 0.7F);
        EXPECT_FLOAT_EQ(math.constant(Constant::scriptScriptPercentScaleDown, em), 0.55F);
        EXPECT_FLOAT_EQ(math.constant(Constant::radicalDegreeBottomRaisePercent, em), 0.6F);
    }
    EXPECT_FLOAT_EQ(math.constant(Constant::axisHeight, 1000), 0.25F);
    EXPECT_FLOAT_EQ(math.constant(Constant::axisHeight, 2048), 250.0F / 2048);
}

TEST(Math, EveryConstantComesFromItsPlace) {
    // What lies between the numbers is the offset of a device table, which plays no part.
    Bytes constants;
    for (int i = 0; i < 56; ++i) {
        constants.u16(1000 + i);
        if (i >= 4 && i <= 54)
            constants.u16(0xEEEE);
    }
    ASSERT_EQ(constants.size(), std::size_t{kConstantsSize});
    const TTI_Math math =
        read(Bytes().u32(0x00010000).u16(10).u16(0).u16(0).bytes(constants.vector()));
    for (int i = 0; i < 56; ++i) {
        const bool percentage = i < 2 || i == 55;
        EXPECT_FLOAT_EQ(math.constant(static_cast<Constant>(i), 2000),
                        static_cast<float>(1000 + i) / (percentage ? 100.0F : 2000.0F))
            << i;
    }
}

TEST(Math, OnlyTheTwoMinimumHeightsAreUnsigned) {
    const TTI_Math math =
        read(Bytes().u32(0x00010000).u16(10).u16(0).u16(0).fill(kConstantsSize, 0xFF));
    for (int i = 0; i < 56; ++i) {
        const float expected = i == 2 || i == 3 ? 65.535F : i < 2 || i == 55 ? -0.01F : -0.001F;
        EXPECT_FLOAT_EQ(math.constant(static_cast<Constant>(i), 1000), expected) << i;
    }
}

TEST(Math, OtherConstantsAreNotANumber) {
    const TTI_Math math = read(Math{.constants = MathConstants{}});
    for (const int i : {56, 57, 1000, INT_MAX, -1, INT_MIN})
        EXPECT_TRUE(std::isnan(math.constant(static_cast<Constant>(i), 1000))) << i;
}

TEST(Math, WithoutConstantsEveryConstantIsNotANumber) {
    const TTI_Math math = read(Math{.glyphInfo = MathGlyphInfo{}, .variants = MathVariants{}});
    for (int i = 0; i < 56; ++i)
        EXPECT_TRUE(std::isnan(math.constant(static_cast<Constant>(i), 1000))) << i;
}

TEST(Math, AnEmOfZeroLeavesThePercentages) {
    const TTI_Math math = read(Math{
        .constants =
            MathConstants{{Constant::scriptPercentScaleDown, 70}, {Constant::axisHeight, 250}},
        .glyphInfo = MathGlyphInfo{.italicsCorrections = {{7, 30}}},
    });
    EXPECT_FLOAT_EQ(math.constant(Constant::scriptPercentScaleDown, 0), 0.7F);
    EXPECT_TRUE(std::isnan(math.constant(Constant::axisHeight, 0)));
    EXPECT_TRUE(std::isnan(math.italicsCorrection(7, 0)));
}

// --- italics corrections ------------------------------------------------------------------------

TEST(Math, ItalicsCorrectionsAreInEm) {
    for (const int format : {1, 2}) {
        const TTI_Math math = read(Math{
            .glyphInfo = MathGlyphInfo{.italicsCorrections = {{7, 30}, {8, -12}, {0xFFFF, 0}},
                                       .coverageFormat = format},
        });
        EXPECT_FLOAT_EQ(math.italicsCorrection(7, 1000), 0.03F);
        EXPECT_FLOAT_EQ(math.italicsCorrection(8, 2000), -0.006F);
        EXPECT_EQ(math.italicsCorrection(0xFFFF, 1000), 0.0F);
        for (const unsigned short gid : std::initializer_list<unsigned short>{0, 6, 9, 0xFFFE})
            EXPECT_TRUE(std::isnan(math.italicsCorrection(gid, 1000))) << gid;
    }
}

TEST(Math, WithoutAListOrItsCoverageThereIsNoItalicsCorrection) {
    EXPECT_TRUE(std::isnan(read(Math{}).italicsCorrection(7, 1000)));
    EXPECT_TRUE(std::isnan(read(Math{.glyphInfo = MathGlyphInfo{}}).italicsCorrection(7, 1000)));

    const Bytes table = Math{.glyphInfo = MathGlyphInfo{.italicsCorrections = {{7, 30}}}}.build();
    const std::size_t coverageField = 10 + 8;
    ASSERT_EQ(table.u16At(coverageField), 8);
    for (const int offset : {0, 1, 0x7FFF}) {
        const TTI_Math math = read(Bytes(table).patchU16At(coverageField, offset));
        EXPECT_TRUE(math.hasInfo());
        EXPECT_TRUE(std::isnan(math.italicsCorrection(7, 1000))) << offset;
    }
}

TEST(Math, ACoverageThatKnowsMoreGlyphsThanThereAreCorrectionsMissesTheRest) {
    Bytes table =
        Math{.glyphInfo = MathGlyphInfo{.italicsCorrections = {{7, 30}, {9, 40}}}}.build();
    table.patchU16At(std::size_t{10 + 8 + 2}, 1); // italicsCorrectionCount
    EXPECT_FLOAT_EQ(read(table).italicsCorrection(7, 1000), 0.03F);
    EXPECT_TRUE(std::isnan(read(table).italicsCorrection(9, 1000)));
}

// --- variants -----------------------------------------------------------------------------------

/// A glyph 5 with these variants in one direction; the variants are numbered from 101 on.
Math withVariants(bool vertical, const std::vector<std::uint16_t>& advances,
                  std::optional<int> displayOperatorMinHeight = {}) {
    MathConstruction construction{.glyph = 5};
    for (const std::uint16_t advance : advances)
        construction.variants.push_back(
            {static_cast<std::uint16_t>(101 + construction.variants.size()), advance});
    Math table{.variants = MathVariants{}};
    (vertical ? table.variants->vertical : table.variants->horizontal) = {construction};
    if (displayOperatorMinHeight)
        table.constants =
            MathConstants{{Constant::displayOperatorMinHeight, *displayOperatorMinHeight}};
    return table;
}

struct Wish {
    int size;
    unsigned short answer;
};

void expectBothWays(const std::vector<std::uint16_t>& advances, const std::vector<Wish>& wishes,
                    std::optional<int> displayOperatorMinHeight = {}) {
    for (const bool vertical : {true, false}) {
        const TTI_Math math = read(withVariants(vertical, advances, displayOperatorMinHeight));
        for (const Wish& wish : wishes) {
            EXPECT_EQ(math.variant(5, wish.size, vertical), wish.answer) << wish.size;
            EXPECT_EQ(math.variant(5, wish.size, !vertical), kNone) << "the other direction";
            EXPECT_EQ(math.variant(4, wish.size, vertical), kNone) << "another glyph";
        }
    }
}

TEST(Math, APositiveSizeIsAMinimumAndTheLastVariantStandsInForMore) {
    expectBothWays({100, 200, 300}, {{1, 101},
                                     {100, 101},
                                     {101, 102},
                                     {150, 102},
                                     {200, 102},
                                     {201, 103},
                                     {300, 103},
                                     {400, 103},
                                     {INT_MAX, 103}});
}

TEST(Math, ANegativeSizeIsAMaximumThatTheLastVariantNeverAnswers) {
    expectBothWays({100, 200, 300}, {{-50, kNone},
                                     {-99, kNone},
                                     {-100, 101},
                                     {-199, 101},
                                     {-200, 102},
                                     {-250, 102},
                                     {-300, 102},
                                     {-400, 102},
                                     {INT_MIN, 102}});
}

TEST(Math, OneVariantAnswersEveryMinimumAndNoMaximum) {
    expectBothWays({100},
                   {{0, 101}, {1, 101}, {100, 101}, {500, 101}, {-100, kNone}, {-500, kNone}}, 900);
}

TEST(Math, NoVariantsAreNoAnswer) {
    expectBothWays({}, {{0, kNone}, {1, kNone}, {-1, kNone}}, 900);
}

TEST(Math, OfTwoVariantsTheFirstIsTheOnlyOneWithinAMaximum) {
    expectBothWays({100, 200}, {{100, 101}, {150, 102}, {-99, kNone}, {-100, 101}, {-200, 101}});
}

TEST(Math, VariantsAreTakenInTheOrderOfTheTable) {
    expectBothWays({300, 100, 400, 50}, {{1, 101},
                                         {350, 103},
                                         {401, 104},
                                         // The walk ends at the first that is too large.
                                         {-200, kNone},
                                         {-300, 102},
                                         {-400, 103}});
}

TEST(Math, SizeZeroAsksForADisplayOperatorInBothDirections) {
    expectBothWays({100, 200, 300}, {{0, 102}}, 150);
    expectBothWays({100, 200, 300}, {{0, 101}}, 0);
    expectBothWays({100, 200, 300}, {{0, 103}}, 301);
    expectBothWays({100, 33000, 50000}, {{0, 102}}, 32768); // the height is unsigned
}

TEST(Math, SizeZeroWithoutConstantsIsNoAnswer) {
    expectBothWays({100, 200, 300}, {{0, kNone}, {1, 101}});
}

TEST(Math, WithoutVariantsThereIsNoAnswer) {
    const TTI_Math math = read(Math{.constants = MathConstants{}, .glyphInfo = MathGlyphInfo{}});
    for (const bool vertical : {true, false})
        for (const int size : {-100, 0, 100})
            EXPECT_EQ(math.variant(5, size, vertical), kNone);
}

TEST(Math, EachDirectionHasItsOwnCoverageAndConstructions) {
    for (const int format : {1, 2}) {
        const TTI_Math math = read(Math{
            .variants =
                MathVariants{.vertical = {{5, {{51, 100}, {52, 200}}},
                                          {6, {{61, 100}}, true},
                                          {9, {{91, 100}, {92, 200}}}},
                             .horizontal = {{6, {{65, 100}, {66, 200}}, true}, {7, {{75, 100}}}},
                             .coverageFormat = format},
        });
        const auto answers = [&math](unsigned short gid) {
            return std::pair(math.variant(gid, 150, true), math.variant(gid, 150, false));
        };
        EXPECT_EQ(answers(5), std::pair(std::uint16_t{52}, kNone));
        EXPECT_EQ(answers(6), std::pair(std::uint16_t{61}, std::uint16_t{66}));
        EXPECT_EQ(answers(7), std::pair(kNone, std::uint16_t{75}));
        EXPECT_EQ(answers(8), std::pair(kNone, kNone));
        EXPECT_EQ(answers(9), std::pair(std::uint16_t{92}, kNone));
    }
}

// --- tables that lie ----------------------------------------------------------------------------

/// Offsets in a table of `withVariants(true, ...)`, whose variants begin behind the header.
constexpr std::size_t kVariants = 10;
constexpr std::size_t kVertCoverageField = kVariants + 2;
constexpr std::size_t kVertCountField = kVariants + 6;
constexpr std::size_t kHorizCountField = kVariants + 8;
constexpr std::size_t kConstructionField = kVariants + 10;
constexpr std::size_t kVariantCountField = kVariants + 12 + 2;

const Bytes kThreeVariants = withVariants(true, {100, 200, 300}).build();

TEST(Math, AConstructionOrCoverageThatIsNowhereHasNoVariants) {
    ASSERT_EQ(read(kThreeVariants).variant(5, 150, true), 102);
    for (const std::size_t field : {kVertCoverageField, kConstructionField})
        for (const int offset : {0, 0x7FFF, 0xFFFF}) {
            const TTI_Math math = read(Bytes(kThreeVariants).patchU16At(field, offset));
            EXPECT_TRUE(math.hasInfo());
            EXPECT_EQ(math.variant(5, 150, true), kNone) << field << ' ' << offset;
        }
}

TEST(Math, ACoverageThatKnowsMoreGlyphsThanThereAreConstructionsMissesTheRest) {
    EXPECT_EQ(read(Bytes(kThreeVariants).patchU16At(kVertCountField, 0)).variant(5, 150, true),
              kNone);
}

TEST(Math, CountsThatLieEndWithTheTable) {
    for (const std::size_t field : {kVertCountField, kHorizCountField}) {
        const TTI_Math math = read(Bytes(kThreeVariants).patchU16At(field, 0xFFFF));
        EXPECT_EQ(math.variant(5, 150, true), 102) << field;
        EXPECT_EQ(math.variant(5, 150, false), kNone) << field;
    }
    // The variants run on into the coverage, (1, 1), and its one glyph has no partner.
    const TTI_Math math = read(Bytes(kThreeVariants).patchU16At(kVariantCountField, 0xFFFF));
    EXPECT_EQ(math.variant(5, 250, true), 103) << "no longer the last one";
    EXPECT_EQ(math.variant(5, 350, true), 1);
}

TEST(Math, AnUnsortedCoverageIsSearchedWithoutHarm) {
    Math table = withVariants(true, {100, 200, 300});
    table.variants->vertical.push_back({3, {{31, 100}}});
    table.variants->vertical.push_back({4, {{41, 100}}});
    const TTI_Math math = read(table);
    EXPECT_EQ(math.variant(3, 50, true), 31) << "the middle, which is looked at first";
    EXPECT_EQ(math.variant(5, 50, true), kNone);
}

TEST(Math, ARangeThatCountsFromFarBehindIsAMiss) {
    Bytes table = kThreeVariants;
    table.patchU16At(kVertCoverageField, table.size() - kVariants);
    table.u16(2).u16(1).u16(0).u16(0xFFFF).u16(0xFFFF);
    const TTI_Math math = read(table);
    EXPECT_EQ(math.variant(0, 50, true), kNone);
    EXPECT_EQ(math.variant(0xFFFF, 50, true), kNone);
}

TEST(Math, RecordsMayLieUponEachOther) {
    // All three are the constants, whose 65 is a coverage offset, a count and an advance in turn.
    Bytes table = Bytes().u32(0x00010000).u16(10).u16(10).u16(10);
    for (int i = 0; i < kConstantsSize / 2; ++i)
        table.u16(65);
    const TTI_Math math = read(table);
    EXPECT_FLOAT_EQ(math.constant(Constant::axisHeight, 1000), 0.065F);
    for (unsigned gid = 0; gid < 0x10000; gid += 13) {
        EXPECT_TRUE(std::isnan(math.italicsCorrection(static_cast<unsigned short>(gid), 1000)));
        EXPECT_EQ(math.variant(static_cast<unsigned short>(gid), 1, true), kNone);
    }
}

TEST(Math, ConstructionsThatShareVariantsWithoutEndAreAbsentFromSomePointOn) {
    constexpr std::size_t kConstructions = 16000;
    constexpr std::size_t kVariantsOfEach = 7000;
    Bytes table = Bytes().u32(0x00010000).u16(0).u16(0).u16(10);
    table.u16(0).u16(10 + 2 * kConstructions + 4 + 4 * kVariantsOfEach).u16(0);
    table.u16(kConstructions).u16(0);
    for (std::size_t i = 0; i < kConstructions; ++i)
        table.u16(10 + 2 * kConstructions);
    table.u16(0).u16(kVariantsOfEach);
    for (std::size_t i = 0; i < kVariantsOfEach; ++i)
        table.u16(77).u16(100);
    table.u16(2).u16(1).u16(0).u16(kConstructions - 1).u16(0);

    const TTI_Math math = read(table);
    std::size_t present = 0;
    while (math.variant(static_cast<unsigned short>(present), 100, true) == 77)
        ++present;
    EXPECT_GT(present, 10U);
    EXPECT_LE(present * kVariantsOfEach * 4,
              KWCommonNS::kLayoutFreeBytes + KWCommonNS::kLayoutReadsOfEachByte * table.size())
        << "what is kept is no more than what may be read";
    EXPECT_EQ(math.variant(kConstructions - 1, 100, true), kNone);
}

const Math kWhole{
    .constants =
        MathConstants{{Constant::displayOperatorMinHeight, 150}, {Constant::axisHeight, 250}},
    .glyphInfo = MathGlyphInfo{.italicsCorrections = {{7, 30}, {8, -12}}, .coverageFormat = 2},
    .variants = MathVariants{.vertical = {{5, {{51, 100}, {52, 200}}}, {6, {{61, 100}}, true}},
                             .horizontal = {{6, {{65, 100}, {66, 200}}}}},
};

/// Asks everything and tells how many answers there were.
int answersOf(const TTI_Math& math) {
    int answers = 0;
    for (int i = -1; i < 57; ++i)
        answers += !std::isnan(math.constant(static_cast<Constant>(i), 1000));
    for (const unsigned short gid :
         std::initializer_list<unsigned short>{0, 5, 6, 7, 8, 9, 100, 0xFFFF}) {
        answers += !std::isnan(math.italicsCorrection(gid, 1000));
        for (const int size : {INT_MIN, -1000, -150, 0, 150, 1000, INT_MAX})
            for (const bool vertical : {true, false})
                answers += math.variant(gid, size, vertical) != kNone;
    }
    return answers;
}

TEST(Math, ATableCutAtAnyByteAnswersNothingElse) {
    const Bytes whole = kWhole.build();
    const int all = answersOf(read(whole));
    EXPECT_EQ(all, 56 + 2 + (4 + 3) + 4 + (4 + 3));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const TTI_Math math = read(Bytes(whole).truncate(size));
        EXPECT_LE(answersOf(math), all) << size;
        EXPECT_EQ(math.hasInfo(), size >= 10 + kConstantsSize) << size;
        const float axisHeight = math.constant(Constant::axisHeight, 1000);
        EXPECT_TRUE(std::isnan(axisHeight) || axisHeight == 0.25F) << size;
        const unsigned short variant = math.variant(5, 150, true);
        EXPECT_TRUE(variant == kNone || variant == 52 || variant == 51) << size;
    }
}

TEST(Math, ATableWithAnyBytesChangedIsReadWithoutHarm) {
    const Bytes whole = kWhole.build();
    Rng rng(38);
    int changed = 0;
    for (int round = 0; round < 20000; ++round) {
        Bytes table = whole;
        for (std::uint32_t n = 1 + rng.below(4); n > 0; --n) {
            const std::size_t at = rng.below(static_cast<std::uint32_t>(table.size()));
            table.patchU8At(at, rng.chance(3) ? 0xFF : rng.byte());
        }
        changed += answersOf(read(table)) != answersOf(read(whole));
    }
    EXPECT_GT(changed, 1000) << "the changes reach what is read";
}

} // namespace
} // namespace KWFontService_NS
