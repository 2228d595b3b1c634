#include "layout/GposFixture.h"

#include <gtest/gtest.h>

#include <limits>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr int kFromRightToLeft = 0x01;

/// Adds to the advance of the glyphs.
Bytes widen(const std::vector<std::uint16_t>& glyphs, int amount) {
    return lookupTable(1, {singlePosFormat1(glyphs, 0x04, {amount})});
}

/// Lookups that add 1 to 10 and 11, 10 to 10, and 100 to 11.
const std::vector<Bytes> kWidenings = {widen({10, 11}, 1), widen({10}, 10), widen({11}, 100)};

/// What a feature of lookups 0, 1 and 2 adds to a glyph.
int addedBy(std::string_view script, int gid) {
    const Positioner font(
        {.lookups = kWidenings, .features = {{"test", {0, 1, 2}}}, .script = std::string(script)});
    Positions positions = {base(gid)};
    const bool applied = font.byFeature(positions, 0);
    const int added = positions[0].getMoveX2() - 500;
    EXPECT_EQ(applied, added != 0);
    return added;
}

// --- one feature at one position ----------------------------------------------------------------

TEST(ProcessGPOS, ElsewhereAllLookupsOfTheFeatureApply) {
    for (const std::string_view script : {"latn", "DFLT", "deva", "Arab", "syrc"}) {
        EXPECT_EQ(addedBy(script, 10), 11) << script;
        EXPECT_EQ(addedBy(script, 11), 101) << script;
        EXPECT_EQ(addedBy(script, 12), 0) << script;
    }
}

TEST(ProcessGPOS, InArabicTheLastLookupThatAppliesIsTheOnlyOne) {
    EXPECT_EQ(addedBy("arab", 10), 10);
    EXPECT_EQ(addedBy("arab", 11), 100);
    EXPECT_EQ(addedBy("arab", 12), 0);
}

TEST(ProcessGPOS, InHebrewTheFirstLookupThatAppliesIsTheOnlyOne) {
    EXPECT_EQ(addedBy("hebr", 10), 1);
    EXPECT_EQ(addedBy("hebr", 11), 1);
    EXPECT_EQ(addedBy("hebr", 12), 0);
}

TEST(ProcessGPOS, ElsewhereTheLookupsApplyInTheOrderOfTheFeature) {
    // On a strict mark the last attachment stands.
    const auto accent = [](int x) {
        return lookupTable(4, {markBasePos({{.glyph = 30, .anchor = anchorTable(0, 0)}},
                                           {{.glyph = 10, .anchors = {anchorTable(x, 0)}}}, 1)});
    };
    for (const auto& order : {std::vector<std::uint16_t>{0, 1}, std::vector<std::uint16_t>{1, 0}}) {
        const Positioner font({.lookups = {accent(7), accent(8)}, .features = {{"test", order}}});
        Positions positions = {base(10), strict(mark(30))};
        EXPECT_TRUE(font.byFeature(positions, 1, true));
        EXPECT_EQ(positions[1].getMoveX1(), order[1] == 0 ? 7 : 8);
    }
}

TEST(ProcessGPOS, AnotherFeatureOfTheTagHasItsTurnOnlyWhenNothingApplied) {
    for (const std::string_view script : {"latn", "arab", "hebr"}) {
        const Positioner font({.lookups = kWidenings,
                               .features = {{"test", {1}}, {"else", {2}}, {"test", {0, 2}}},
                               .script = std::string(script)});
        Positions positions = {base(10), base(11)};
        EXPECT_TRUE(font.byFeature(positions, 0));
        EXPECT_EQ(positions[0].getMoveX2(), 510) << "by the first record alone";
        EXPECT_TRUE(font.byFeature(positions, 1));
        EXPECT_EQ(positions[1].getMoveX2(), script == "latn"   ? 601
                                            : script == "arab" ? 600
                                                               : 501)
            << "by the second record";
    }
}

TEST(ProcessGPOS, AnIndexMovedByALookupIsNotCarriedToTheNext) {
    // In strict mode the pair moves on to its second glyph.
    const Bytes pair = pairPosFormat1(0x04, 0x04, {{10, {{11, {100}, {200}}}}});
    const Positioner font(
        {.lookups = {lookupTable(2, {pair}), widen({10, 11}, 1)}, .features = {{"test", {0, 1}}}});
    Positions positions = strict({base(10), base(11)});
    EXPECT_TRUE(font.byFeature(positions, 0));
    EXPECT_EQ(positions[0].getMoveX2(), 601);
    EXPECT_EQ(positions[1].getMoveX2(), 700);
}

TEST(ProcessGPOS, APositionThatDoesNotExistHasNoEffect) {
    const Positioner font({.lookups = kWidenings});
    Positions positions = {base(10)};
    for (const int index :
         {-1, 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_FALSE(font.byFeature(positions, index)) << index;
    EXPECT_EQ(positions, Positions{base(10)});
    Positions empty;
    EXPECT_FALSE(font.byFeature(empty, 0));
}

TEST(ProcessGPOS, WithoutAFeatureOrALanguageSystemNothingApplies) {
    const Positioner font({.lookups = kWidenings});
    Positions positions = {base(10)};
    EXPECT_FALSE(font.byFeature(positions, 0, false, "kern"));
    const FS_GSUBGPOSInfo none;
    EXPECT_FALSE(FS_FontInfo::processGPOS(&none, tagValue("test"), positions, 0, false));
    EXPECT_FALSE(FS_FontInfo::processGPOS(nullptr, tagValue("test"), positions, 0, false));
    EXPECT_EQ(positions, Positions{base(10)});
}

TEST(ProcessGPOS, ALookupThatDoesNotExistIsPassedBy) {
    for (const std::string_view script : {"latn", "arab", "hebr"}) {
        const Positioner font({.lookups = kWidenings,
                               .features = {{"test", {9, 1, 0xFFFF}}},
                               .script = std::string(script)});
        Positions positions = {base(10)};
        EXPECT_TRUE(font.byFeature(positions, 0)) << script;
        EXPECT_EQ(positions[0].getMoveX2(), 510) << script;
    }
}

TEST(ProcessGPOS, SubtablesThatCouldNotBeReadAreSkipped) {
    const Positioner font(
        {.lookups = {lookupTable(1, {Bytes().u16(7).zero(8), singlePosFormat1({10}, 0x04, {5})})}});
    Positions positions = {base(10)};
    EXPECT_TRUE(font.byFeature(positions, 0));
    EXPECT_EQ(positions[0].getMoveX2(), 505);
}

TEST(ProcessGPOS, OfALookupTheFirstSubtableThatAppliesIsTheOnlyOne) {
    const Positioner font(
        {.lookups = {lookupTable(1, {singlePosFormat1({10}, 0x10, {0}), // devices alone: a miss
                                     singlePosFormat1({10}, 0x04, {2}),
                                     singlePosFormat1({10}, 0x04, {4})})}});
    Positions positions = {base(10)};
    EXPECT_TRUE(font.byFeature(positions, 0));
    EXPECT_EQ(positions[0].getMoveX2(), 502);
}

// --- direction ----------------------------------------------------------------------------------

/// A mark whose x is 30 from right to left, and 470 less from left to right.
Bytes accent() {
    return markBasePos({{.glyph = 30, .anchor = anchorTable(0, 0)}},
                       {{.glyph = 10, .anchors = {anchorTable(30, 0)}}}, 1);
}

TEST(ProcessGPOS, TheCallerAloneSaysTheDirection) {
    for (const int flag : {0, kFromRightToLeft}) {
        const Positioner font(4, accent(), flag);
        for (const bool rtl : {false, true}) {
            Positions positions = {base(10), mark(30)};
            EXPECT_TRUE(font.byFeature(positions, 1, rtl));
            EXPECT_EQ(positions[1].getMoveX1(), rtl ? 30 : -470) << flag;
        }
    }
}

TEST(ProcessGPOS3, TheCallerOrTheLookupFlagSaysTheDirection) {
    for (const int flag : {0, kFromRightToLeft}) {
        const Positioner font(4, accent(), flag);
        for (const bool rtl : {false, true}) {
            Positions positions = {base(10), mark(30)};
            EXPECT_EQ(font.everywhere(positions, rtl), 1);
            EXPECT_EQ(positions[1].getMoveX1(), rtl || flag != 0 ? 30 : -470) << flag;
        }
    }
}

// The flag of a lookup that a context calls says nothing about the direction.
TEST(ProcessGPOS3, TheDirectionIsThatOfTheLookupInTheOrder) {
    const Bytes context = chainContextFormat3({}, {{30}}, {}, {{0, 1}});
    const Positioner font(
        {.lookups = {lookupTable(8, {context}), lookupTable(4, {accent()}, kFromRightToLeft)}});
    Positions positions = {base(10), mark(30)};
    EXPECT_EQ(font.everywhere(positions), 1);
    EXPECT_EQ(positions[1].getMoveX1(), -470);
}

// --- one lookup at all positions ----------------------------------------------------------------

TEST(ProcessGPOS3, AnswersTheFirstPositionWhereItApplied) {
    const Positioner font({.lookups = kWidenings, .features = {{"test", {1}}}});
    Positions positions = {base(11), base(10), base(12), base(10)};
    EXPECT_EQ(font.everywhere(positions), 1);
    EXPECT_EQ(positions[0].getMoveX2(), 500);
    EXPECT_EQ(positions[1].getMoveX2(), 510);
    EXPECT_EQ(positions[3].getMoveX2(), 510);
    Positions none = {base(11), base(12)};
    EXPECT_EQ(font.everywhere(none), -1);
    EXPECT_EQ(none, (Positions{base(11), base(12)}));
}

TEST(ProcessGPOS3, AnswersThePositionAsTheLookupMovedItAndGoesOnBehindIt) {
    const Positioner font(2, pairPosFormat1(0x04, 0x04, {{10, {{10, {1}, {10}}}}}));
    Positions plain = {base(12), base(10), base(10), base(10), base(10)};
    Positions moving = strict(plain);
    EXPECT_EQ(font.everywhere(plain), 1);
    EXPECT_EQ(plain[2].getMoveX2(), 511) << "the second of a pair and the first of another";
    EXPECT_EQ(plain[4].getMoveX2(), 510);
    EXPECT_EQ(font.everywhere(moving), 2);
    EXPECT_EQ(moving[1].getMoveX2(), 501);
    EXPECT_EQ(moving[2].getMoveX2(), 510) << "taken by its pair";
    EXPECT_EQ(moving[3].getMoveX2(), 501);
    EXPECT_EQ(moving[4].getMoveX2(), 510);
}

TEST(ProcessGPOS3, TheSecondGlyphOfAPairWithoutAValueMayBeginAnother) {
    const Positioner font(2, pairPosFormat1(0x04, 0, {{10, {{10, {1}, {}}}}}));
    Positions positions = strict({base(10), base(10), base(10)});
    EXPECT_EQ(font.everywhere(positions), 0);
    EXPECT_EQ(positions[0].getMoveX2(), 501);
    EXPECT_EQ(positions[1].getMoveX2(), 501);
    EXPECT_EQ(positions[2].getMoveX2(), 500);
}

TEST(ProcessGPOS3, GoesByTheLookupOrderAndNotTheFeatures) {
    const Positioner font({.lookups = kWidenings, .features = {{"beta", {2}}, {"alfa", {1, 0}}}});
    for (const auto& [entry, added] : {std::pair(0, 1), std::pair(1, 0), std::pair(2, 100)}) {
        Positions positions = {base(11)};
        EXPECT_EQ(font.everywhere(positions, false, entry), added == 0 ? -1 : 0);
        EXPECT_EQ(positions[0].getMoveX2(), 500 + added) << entry;
    }
}

TEST(ProcessGPOS3, AnEntryThatDoesNotExistIsMinus1) {
    const Positioner font({.lookups = kWidenings, .features = {{"test", {0, 9}}}});
    Positions positions = {base(10)};
    for (const int entry :
         {-1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(font.everywhere(positions, false, entry), -1) << entry;
    EXPECT_EQ(font.everywhere(positions, false, 1), -1) << "the lookup does not exist";
    const FS_GSUBGPOSInfo none;
    EXPECT_EQ(FS_FontInfo::processGPOS3(&none, 0, positions, false), -1);
    EXPECT_EQ(FS_FontInfo::processGPOS3(nullptr, 0, positions, false), -1);
    EXPECT_EQ(positions, Positions{base(10)});
}

TEST(ProcessGPOS3, NoPositionsAreMinus1) {
    const Positioner font({.lookups = kWidenings});
    Positions none;
    EXPECT_EQ(font.everywhere(none), -1);
    EXPECT_EQ(font.everywhere(none, true), -1);
    EXPECT_TRUE(none.empty());
}

TEST(ProcessGPOS3, OneGlyphIsEnoughForWhatNeedsNoOther) {
    Positions one = {base(10)};
    EXPECT_EQ(Positioner({.lookups = kWidenings}).everywhere(one), 0);
    EXPECT_EQ(one[0].getMoveX2(), 501);
}

TEST(ProcessGPOS3, AnExtensionAppliesAsWhatItWraps) {
    const Positioner font(9, extension(2, pairPosFormat1(0x04, 0, {{10, {{11, {-50}, {}}}}})));
    Positions positions = {base(10), base(11)};
    EXPECT_EQ(font.everywhere(positions), 0);
    EXPECT_EQ(positions[0].getMoveX2(), 450);
}

} // namespace
} // namespace KWFontService_NS
