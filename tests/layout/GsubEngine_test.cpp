// The simple lookup types over whole runs, through the public call.

#include "layout/GsubFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Result = SpeltGsub::Result;

constexpr int kIgnoreBases = 2;

// --- single -------------------------------------------------------------------------------------

TEST(GsubRun, ASingleSubstitutionReplacesWhereverItIsCovered) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}, {'c', 'y'}}));
    EXPECT_EQ(font.whole("abca"), (Result{true, "xbyx", {1, 1, 1, 1}}));
    EXPECT_EQ(font.whole("bb"), (Result{false, "bb", {1, 1}}));
}

TEST(GsubRun, ADeltaWrapsAround) {
    const Bytes delta = OffsetTable().u16(1).offset(coverageTable({'b'})).u16(0xFFFF).build();
    EXPECT_EQ(one(kSingle, delta).whole("b").text, "a");
}

TEST(GsubRun, ASubstituteOf0xFFFFIsNoSubstitution) {
    const SpeltGsub font({lookupTable(kSingle, {single({{'a', 0xFFFF}}), single({{'a', 'x'}})})});
    EXPECT_EQ(font.whole("a"), (Result{true, "x", {1}})) << "the next subtable is asked";
}

TEST(GsubRun, TheFirstSubtableThatGivesAGlyphDecides) {
    const SpeltGsub font(
        {lookupTable(kSingle, {single({{'a', 'x'}}), single({{'a', 'y'}, {'b', 'z'}})})});
    EXPECT_EQ(font.whole("ab").text, "xz");
}

TEST(GsubRun, ANewGlyphHasItsClassFromTheFont) {
    const SpeltGsub font = one(kSingle, single({{'a', 'M'}, {'b', '#'}}));
    GlyphIDArray2 in;
    in.glyphs() = font.run("ab");
    GlyphIDArray2 out;
    ASSERT_TRUE(FS_FontInfo::processGSUB3(font.info(), 0, in, out, 1));
    EXPECT_EQ(out[0].getGlyphClassDef(), GlyphClassDef::Mark);
    EXPECT_EQ(out[1].getGlyphClassDef(), GlyphClassDef::Unknown);
}

TEST(GsubRun, AMaskedGlyphIsNoStartingPointAndStays) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}));
    EXPECT_EQ(font.whole("aaa", 0, " m"), (Result{true, "xax", {1, 1, 1}}));
}

TEST(GsubRun, LookupFlagsDoNotKeepAGlyphFromStarting) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}), kIgnoreBases);
    EXPECT_EQ(font.whole("a").text, "x");
}

// --- multiple -----------------------------------------------------------------------------------

TEST(GsubRun, ASequenceStandsForItsGlyphInItsFirst) {
    const SpeltGsub font = one(kMultiple, glyphSets({{'a', {'x', 'y', 'z'}}, {'b', {'w'}}}));
    EXPECT_EQ(font.whole("cabc"), (Result{true, "cxyzwc", {1, 1, 0, 0, 1, 1}}));
    EXPECT_EQ(font.whole("bcb"), (Result{true, "wcw", {1, 1, 1}}));
}

TEST(GsubRun, AddedGlyphsAreNotLookedAtAgain) {
    const SpeltGsub font = one(kMultiple, glyphSets({{'a', {'a', 'a'}}}));
    EXPECT_EQ(font.whole("aa").text, "aaaa");
}

TEST(GsubRun, AMaskGoesAlongWithAGrowingRun) {
    const SpeltGsub font = one(kMultiple, glyphSets({{'a', {'x', 'y'}}}));
    EXPECT_EQ(font.whole("aaa", 0, " m "), (Result{true, "xyaxy", {1, 0, 1, 1, 0}}));
}

TEST(GsubRun, AnEmptySequenceDeletesItsGlyphAndItsLengthGoesToANeighbour) {
    const SpeltGsub font = one(kMultiple, glyphSets({{'a', {}}, {'b', {'x', 'y'}}}));
    EXPECT_EQ(font.whole("cac"), (Result{true, "cc", {2, 1}}));
    EXPECT_EQ(font.whole("aac"), (Result{true, "c", {3}})) << "none before it";
    EXPECT_EQ(font.whole("ba"), (Result{true, "xy", {2, 0}})) << "to the one that stands for any";
    EXPECT_EQ(font.whole("a"), (Result{true, "", {}}));
}

TEST(GsubRun, TheFirstSubtableThatCoversAGlyphDecidesOnItsSequence) {
    const SpeltGsub font({lookupTable(kMultiple, {glyphSets({{'a', {'x', 'y'}}}),
                                                  glyphSets({{'a', {'z'}}, {'b', {'w', 'w'}}})})});
    EXPECT_EQ(font.whole("ab").text, "xyww");
}

// --- alternate ----------------------------------------------------------------------------------

TEST(GsubRun, AnAlternateIsCountedFromOne) {
    const SpeltGsub font = one(kAlternate, glyphSets({{'a', {'x', 'y'}}}));
    EXPECT_EQ(font.whole("a", 0, {}, 1).text, "x");
    EXPECT_EQ(font.whole("a", 0, {}, 2).text, "y");
    EXPECT_EQ(font.whole("a", 0, {}, 3), (Result{false, "a", {1}}));
    EXPECT_EQ(font.whole("a", 0, {}, 0), (Result{false, "a", {1}}));
    EXPECT_EQ(font.whole("a", 0, {}, -1), (Result{false, "a", {1}}));
}

// --- ligatures ----------------------------------------------------------------------------------

TEST(GsubRun, ALigatureStandsForWhatItSwallowed) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"ffi", '3'}, {"ff", '2'}, {"fi", '1'}}));
    EXPECT_EQ(font.whole("affib"), (Result{true, "a3b", {1, 3, 1}}));
    EXPECT_EQ(font.whole("fffi"), (Result{true, "21", {2, 2}})) << "the first that matches";
    EXPECT_EQ(font.whole("ffx fi"), (Result{true, "2x 1", {2, 1, 1, 2}}));
    EXPECT_EQ(font.whole("f"), (Result{false, "f", {1}}));
}

TEST(GsubRun, LigaturesAreTriedInTheirOrder) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"ff", '2'}, {"ffi", '3'}}));
    EXPECT_EQ(font.whole("ffi").text, "2i");
}

TEST(GsubRun, ALigatureOfOneComponentReplacesTheGlyphAlone) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"f", '1'}}));
    EXPECT_EQ(font.whole("ff"), (Result{true, "11", {1, 1}}));
}

TEST(GsubRun, AMarkThatALigaturePassesOverKnowsWhereItStood) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"fi", '1'}}), kIgnoreMarksFlag);
    EXPECT_EQ(font.whole("fMi"), (Result{true, "1M", {2, skippedAt(1)}}));
    EXPECT_EQ(font.whole("afMNiO"), (Result{true, "a1MNO", {1, 2, skippedAt(2), skippedAt(3), 1}}));
}

TEST(GsubRun, TheIndexOfAPassedMarkCountsInTheRunAsItStoodThen) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"fi", '1'}}), kIgnoreMarksFlag);
    EXPECT_EQ(font.whole("fifMifi"), (Result{true, "11M1", {2, 2, skippedAt(2), 2}}));
}

TEST(GsubRun, WithoutTheFlagAMarkStandsInTheWayOfALigature) {
    EXPECT_EQ(one(kLigature, speltLigatures({{"fi", '1'}})).whole("fMi"),
              (Result{false, "fMi", {1, 1, 1}}));
}

TEST(GsubRun, ALigatureLongerThanTheRestOfTheRunIsPassedBy) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"fi", '1'}}), kIgnoreMarksFlag);
    EXPECT_EQ(font.whole("f").text, "f");
    EXPECT_EQ(font.whole("fM").text, "fM") << "the run ends behind the mark";
}

TEST(GsubRun, ALigatureOf0xFFFFIsNoneAndTheNextSubtableStartsAtTheSameGlyph) {
    const SpeltGsub font({lookupTable(kLigature, noLigatureThenOne())});
    EXPECT_EQ(font.whole("ab"), (Result{false, "ab", {1, 1}}));
    EXPECT_EQ(font.whole("abac"), (Result{true, "ab1", {1, 1, 2}}));
}

TEST(GsubRun, AMaskedGlyphIsSwallowedByALigatureThatStartsBeforeIt) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"fi", '1'}}));
    EXPECT_EQ(font.whole("fifi", 0, " m m"), (Result{true, "11", {2, 2}}));
    EXPECT_EQ(font.whole("fifi", 0, "m   "), (Result{true, "fi1", {1, 1, 2}}));
}

TEST(GsubRun, AMaskedMarkThatIsPassedOverKeepsItsMask) {
    // The mark would start a ligature with the letter behind it.
    const SpeltGsub font(
        {lookupTable(kLigature, {speltLigatures({{"Ma", '2'}}), speltLigatures({{"fi", '1'}})},
                     kIgnoreMarksFlag)});
    EXPECT_EQ(font.whole("fMia").text, "12");
    EXPECT_EQ(font.whole("fMia", 0, " m  ").text, "1Ma");
}

TEST(GsubRun, AMarkPassedOverTwiceHasTheBitsOfBothPlaces) {
    const SpeltGsub font =
        one(kLigature, speltLigatures({{"Mx", '5'}, {"ffi", '3'}}), kIgnoreMarksFlag);
    // Both marks stay behind 3; then M, a starting point like any other, passes over A.
    EXPECT_EQ(font.whole("ffMAix"), (Result{true, "35A", {3, skippedAt(2) + 1, skippedAt(3 | 2)}}));
}

TEST(GsubRun, AMarkAttachmentTypePassesOverMarksOfOthers) {
    const SpeltGsub font(
        {lookupTable(kLigature, {speltLigatures({{"BC", '5'}, {"fi", '1'}})}, 0x0200)},
        speltGdef(speltClasses({{"A", 1}, {"BC", 2}})));
    EXPECT_EQ(font.whole("fAi").text, "1A");
    EXPECT_EQ(font.whole("fMi").text, "1M") << "of no type";
    EXPECT_EQ(font.whole("fBi").text, "fBi");
    EXPECT_EQ(font.whole("BAC"), (Result{true, "5A", {2, skippedAt(1)}}));
}

// --- reverse chaining ---------------------------------------------------------------------------

TEST(GsubRun, ReverseChainingRunsBackwardsAndSeesWhatItHasChanged) {
    // a before x becomes x.
    const SpeltGsub font = one(kReverse, reverseChaining({{'a', 'x'}}, {}, speltCoverages({"x"})));
    EXPECT_EQ(font.whole("aaax"), (Result{true, "xxxx", {1, 1, 1, 1}}));
    EXPECT_EQ(font.whole("aaab"), (Result{false, "aaab", {1, 1, 1, 1}}));
    EXPECT_EQ(font.whole("aaax", 0, " m"), (Result{true, "aaxx", {1, 1, 1, 1}}));
}

TEST(GsubRun, ReverseChainingNeedsItsWholeContext) {
    const SpeltGsub font = one(kReverse, reverseChaining({{'a', 'x'}}, speltCoverages({"b", "c"}),
                                                         speltCoverages({"d", "e"})));
    EXPECT_EQ(font.whole("cbade").text, "cbxde")
        << "the backtrack is listed from the glyph outwards";
    EXPECT_EQ(font.whole("bcade").text, "bcade");
    EXPECT_EQ(font.whole("cbaed").text, "cbaed");
    EXPECT_EQ(font.whole("bade").text, "bade");
    EXPECT_EQ(font.whole("cbad").text, "cbad");
}

TEST(GsubRun, ReverseChainingAtTheFirstGlyphHasNoBacktrack) {
    const SpeltGsub font = one(kReverse, reverseChaining({{'a', 'x'}}, speltCoverages({"b"}), {}));
    EXPECT_EQ(font.whole("a").text, "a");
    EXPECT_EQ(font.whole("ba").text, "bx");
}

TEST(GsubRun, ReverseChainingPassesOverByItsFlag) {
    const SpeltGsub font =
        one(kReverse, reverseChaining({{'a', 'x'}}, speltCoverages({"b"}), speltCoverages({"d"})),
            kIgnoreMarksFlag);
    EXPECT_EQ(font.whole("bMaNd").text, "bMxNd");
    // The length is compared with the whole run, the marks in it too.
    EXPECT_EQ(font.whole("bMaN").text, "bMaN");
}

// --- the lookup ---------------------------------------------------------------------------------

TEST(GsubRun, AnExtensionBehavesAsTheTypeItWraps) {
    const SpeltGsub font({lookupTable(7, {extension(kLigature, speltLigatures({{"fi", '1'}}))})});
    EXPECT_EQ(font.whole("fi"), (Result{true, "1", {2}}));
}

TEST(GsubRun, ALookupWhoseExtensionsWrapSeveralTypesHasTheLastOne) {
    const SpeltGsub font({lookupTable(7, {extension(kSingle, single({{'a', 'x'}})),
                                          extension(kMultiple, glyphSets({{'a', {'y', 'z'}}}))})});
    EXPECT_EQ(font.whole("a").text, "yz");
}

TEST(GsubRun, AnUnknownLookupTypeChangesNothing) {
    const SpeltGsub font({lookupTable(9, {single({{'a', 'x'}})})});
    EXPECT_EQ(font.whole("a"), (Result{false, "a", {1}}));
}

TEST(GsubRun, AnEmptyRunStaysEmpty) {
    for (const int type : {1, 2, 3, 4, 5, 6, 8})
        EXPECT_EQ(one(type, {}).whole(""), (Result{false, "", {}})) << type;
}

} // namespace
} // namespace KWFontService_NS
