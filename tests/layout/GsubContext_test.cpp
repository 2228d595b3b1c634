// Contexts of GSUB over whole runs: the matchers, and what becomes of the glyphs and words.

#include "layout/GsubFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Result = SpeltGsub::Result;
using RecordBytes = std::vector<std::pair<std::uint16_t, std::uint16_t>>;

/// What contexts call, by their indices behind the context.
std::vector<Bytes> nestedLookups() {
    return {
        lookupTable(kSingle, {single({{'a', 'x'}, {'b', 'y'}, {'c', 'z'}})}),
        lookupTable(kMultiple, {glyphSets({{'a', {'p', 'q'}}, {'b', {'r', 's', 't'}}, {'d', {}}})}),
        lookupTable(kAlternate, {glyphSets({{'a', {'m', 'n'}}})}),
        lookupTable(kLigature, {speltLigatures({{"ab", '1'}, {"bc", '2'}})}, kIgnoreMarksFlag),
        lookupTable(kReverse, {reverseChaining({{'a', 'w'}}, {}, {})}),
    };
}
constexpr std::uint16_t kToSingle = 1;
constexpr std::uint16_t kToMultiple = 2;
constexpr std::uint16_t kToAlternate = 3;
constexpr std::uint16_t kToLigature = 4;
constexpr std::uint16_t kToReverse = 5;
constexpr std::uint16_t kToMore = 6;

/// A context as lookup 0, then the nested ones, then more.
SpeltGsub withContext(int type, const std::vector<Bytes>& subtables, int flag = 0,
                      const std::vector<Bytes>& more = {}) {
    std::vector<Bytes> lookups = {lookupTable(type, subtables, flag)};
    for (const Bytes& lookup : nestedLookups())
        lookups.push_back(lookup);
    lookups.insert(lookups.end(), more.begin(), more.end());
    return SpeltGsub(lookups);
}

/// A chain context of coverages with nothing around its input.
Bytes chainOf(const std::vector<std::string>& input, const RecordBytes& records) {
    return chainContextFormat3({}, speltCoverages(input), {}, records);
}

// --- contexts of classes ------------------------------------------------------------------------

/// Class 1 is a, 2 is b, 3 is c; rules start with a.
Bytes contextOfA(const std::vector<RuleBytes>& rules) {
    return contextFormat2(spelt("a"), speltClasses({{"a", 1}, {"b", 2}, {"c", 3}}), {{}, rules});
}

TEST(GsubContextClasses, ARuleMatchesTheClassesAfterItsFirstGlyph) {
    const SpeltGsub font =
        withContext(kContext, {contextOfA({{.input = {2, 3}, .records = {{0, kToSingle}}}})});
    EXPECT_EQ(font.whole("abc"), (Result{true, "xbc", {1, 1, 1}}));
    EXPECT_EQ(font.whole("abb"), (Result{false, "abb", {1, 1, 1}}));
    EXPECT_EQ(font.whole("ab"), (Result{false, "ab", {1, 1}}));
    EXPECT_EQ(font.whole("a"), (Result{false, "a", {1}})) << "the last glyph of the run";
}

TEST(GsubContextClasses, TheFirstRuleThatMatchesDecides) {
    const SpeltGsub font =
        withContext(kContext, {contextOfA({{.input = {2, 3}, .records = {{0, kToSingle}}},
                                           {.input = {2}, .records = {{0, kToAlternate}}}})});
    EXPECT_EQ(font.whole("abc").text, "xbc");
    EXPECT_EQ(font.whole("abb").text, "mbb");
}

TEST(GsubContextClasses, ARuleOfOneGlyphNeverMatches) {
    const SpeltGsub font =
        withContext(kContext, {contextOfA({{.input = {}, .records = {{0, kToSingle}}}})});
    EXPECT_EQ(font.whole("ab").text, "ab");
}

TEST(GsubContextClasses, AGlyphWithoutClassEndsTheMatch) {
    const SpeltGsub font =
        withContext(kContext, {contextOfA({{.input = {0}, .records = {{0, kToSingle}}}})});
    EXPECT_EQ(font.whole("ad").text, "ad") << "no class is not class 0";
}

TEST(GsubContextClasses, ClassesOfFormat1AreNone) {
    const Bytes context = contextFormat2(spelt("a"), classDefFormat1('a', {1, 2}),
                                         {{}, {{.input = {2}, .records = {{0, kToSingle}}}}});
    EXPECT_EQ(withContext(kContext, {context}).whole("ab").text, "ab");
}

TEST(GsubContextClasses, PassedGlyphsMoveTheSequenceIndex) {
    const SpeltGsub font = withContext(
        kContext, {contextOfA({{.input = {2}, .records = {{1, kToSingle}}}})}, kIgnoreMarksFlag);
    EXPECT_EQ(font.whole("aMNb").text, "aMNy");
    EXPECT_EQ(font.whole("aMN").text, "aMN");
}

TEST(GsubContextClasses, WhatARulePassedOverStaysListedForTheNext) {
    // The first rule passes over M twice as far as the second; its entries count for both.
    const SpeltGsub font =
        withContext(kContext,
                    {contextOfA({{.input = {2, 2}, .records = {{0, kToSingle}}},
                                 {.input = {2, 3}, .records = {{1, kToSingle}}}})},
                    kIgnoreMarksFlag);
    EXPECT_EQ(font.whole("aMbc").text, "aMbz") << "M at 1 is listed twice, and moves index 1 to 3";
}

TEST(GsubContextClasses, ARuleWithoutRecordsIsNoMatch) {
    const SpeltGsub font(
        {lookupTable(kContext, {contextOfA({{.input = {2}}}),
                                contextOfA({{.input = {2}, .records = {{0, kToSingle}}}})}),
         nestedLookups()[0]});
    EXPECT_EQ(font.whole("ab").text, "xb") << "the next subtable is asked";
}

TEST(GsubContextClasses, Formats1And3NeverChangeARun) {
    const Bytes format1 =
        contextFormat1(spelt("a"), {{{.input = {'b'}, .records = {{0, kToSingle}}}}});
    const Bytes format3 = contextFormat3(speltCoverages({"a", "b"}), {{0, kToSingle}});
    const Bytes chain1 =
        chainContextFormat1(spelt("a"), {{{.input = {'b'}, .records = {{0, kToSingle}}}}});
    EXPECT_EQ(withContext(kContext, {format1}).whole("ab").text, "ab");
    EXPECT_EQ(withContext(kContext, {format3}).whole("ab").text, "ab");
    EXPECT_EQ(withContext(kChain, {chain1}).whole("ab").text, "ab");
    const Bytes format2 = contextOfA({{.input = {2}, .records = {{0, kToSingle}}}});
    EXPECT_EQ(withContext(kContext, {format1, format3, format2}).whole("ab").text, "xb");
}

// --- chain contexts of classes ------------------------------------------------------------------

Bytes chainClasses(const std::vector<RuleBytes>& rules) {
    return chainContextFormat2(spelt("ab"), speltClasses({{"u", 1}, {"v", 2}}),
                               speltClasses({{"a", 1}, {"b", 2}}),
                               speltClasses({{"b", 2}, {"j", 3}, {"k", 4}}), {{}, rules});
}

TEST(GsubChainClasses, ARuleNeedsAllItsThreeParts) {
    const SpeltGsub font = withContext(
        kChain,
        {chainClasses({{.backtrack = {1, 2}, .lookahead = {3, 4}, .records = {{0, kToSingle}}}})});
    EXPECT_EQ(font.whole("vuajk").text, "vuxjk");
    EXPECT_EQ(font.whole("uvajk").text, "uvajk") << "the backtrack goes outwards";
    EXPECT_EQ(font.whole("uajk").text, "uajk");
    EXPECT_EQ(font.whole("vuaj").text, "vuaj");
    EXPECT_EQ(font.whole("vuakj").text, "vuakj");
}

TEST(GsubChainClasses, ALookaheadIsComparedOverTheInputGlyphs) {
    const SpeltGsub font = withContext(
        kChain, {chainClasses({{.input = {2}, .lookahead = {2}, .records = {{0, kToSingle}}},
                               {.input = {2}, .lookahead = {3}, .records = {{0, kToAlternate}}}})});
    EXPECT_EQ(font.whole("abj").text, "xbj") << "b is input and lookahead, j neither";
}

TEST(GsubChainClasses, AGlyphWithoutInputClassDoesNotMatch) {
    const SpeltGsub font(
        {lookupTable(kChain, {chainContextFormat2(spelt("c"), {}, speltClasses({{"a", 1}}), {},
                                                  {{{.records = {{0, 1}}}}})}),
         nestedLookups()[0]});
    EXPECT_EQ(font.whole("c").text, "c");
}

TEST(GsubChainClasses, TheFirstRuleThatPassesDecidesAlsoWithoutRecords) {
    const SpeltGsub font =
        withContext(kChain, {chainClasses({{.lookahead = {3}}, {.records = {{0, kToSingle}}}})});
    EXPECT_EQ(font.whole("aj").text, "aj");
    EXPECT_EQ(font.whole("ak").text, "xk");
}

TEST(GsubChainClasses, GlyphsArePassedOverInAllThreeParts) {
    const SpeltGsub font = withContext(
        kChain,
        {chainClasses(
            {{.backtrack = {1}, .input = {2}, .lookahead = {2}, .records = {{1, kToSingle}}}})},
        kIgnoreMarksFlag);
    EXPECT_EQ(font.whole("uMaNb").text, "uMaNy");
}

// --- chain contexts of coverages ----------------------------------------------------------------

TEST(GsubChain, ARuleNeedsItsWholeContext) {
    const SpeltGsub font = withContext(
        kChain,
        {chainContextFormat3(speltCoverages({"u", "v"}), speltCoverages({"a", "b"}),
                             speltCoverages({"j", "k"}), {{0, kToSingle}, {1, kToSingle}})});
    EXPECT_EQ(font.whole("vuabjk"), (Result{true, "vuxyjk", {1, 1, 2, 0, 1, 1}}));
    EXPECT_EQ(font.whole("uvabjk").text, "uvabjk");
    EXPECT_EQ(font.whole("uabjk").text, "uabjk");
    EXPECT_EQ(font.whole("vuabj").text, "vuabj");
    EXPECT_EQ(font.whole("vuacjk").text, "vuacjk");
    EXPECT_EQ(font.whole("vuabkj").text, "vuabkj");
}

TEST(GsubChain, GlyphsArePassedOverButDoNotMoveTheSequenceIndex) {
    const SpeltGsub font =
        withContext(kChain,
                    {chainContextFormat3(speltCoverages({"u"}), speltCoverages({"a", "b"}),
                                         speltCoverages({"j"}), {{1, kToSingle}, {2, kToSingle}})},
                    kIgnoreMarksFlag);
    // Sequence index 1 is the mark, which the nested lookup does not cover; 2 is b.
    EXPECT_EQ(font.whole("uOaMbNj").text, "uOaMyNj");
}

TEST(GsubChain, TheFirstInputGlyphIsNeverPassedOver) {
    const SpeltGsub font({lookupTable(kChain, {chainOf({"M"}, {{0, 1}})}, kIgnoreMarksFlag),
                          lookupTable(kSingle, {single({{'M', 'N'}})})});
    EXPECT_EQ(font.whole("M").text, "N");
}

TEST(GsubChain, ARuleWithoutRecordsEndsItsLookupAtTheGlyph) {
    const SpeltGsub font =
        withContext(kChain, {chainOf({"a"}, {}), chainOf({"a"}, {{0, kToSingle}})});
    EXPECT_EQ(font.whole("a"), (Result{false, "a", {1}}));
}

TEST(GsubChain, ARuleWhoseLookupsDoNotApplyEndsItsLookupToo) {
    const SpeltGsub font =
        withContext(kChain, {chainOf({"d"}, {{0, kToSingle}}), chainOf({"d"}, {{0, kToMultiple}})});
    EXPECT_EQ(font.whole("d"), (Result{false, "d", {1}}));
}

TEST(GsubChain, AMaskedGlyphIsContextAndInputButNoStart) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a", "b"}, {{1, kToSingle}})});
    EXPECT_EQ(font.whole("ab", 0, " m").text, "ay");
    EXPECT_EQ(font.whole("ab", 0, "m ").text, "ab");
}

// --- nested lookups -----------------------------------------------------------------------------

TEST(GsubNested, TheRunEndsBehindTheLastGlyphThatALookupTook) {
    // The context's own input length does not count, so that b is looked at as a start again.
    const SpeltGsub font = withContext(
        kChain, {chainOf({"a", "b"}, {{0, kToSingle}}), chainOf({"b"}, {{0, kToSingle}})});
    EXPECT_EQ(font.whole("ab").text, "xy");
}

TEST(GsubNested, AlternatesAreTheFirstWhateverIsAsked) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a"}, {{0, kToAlternate}})});
    EXPECT_EQ(font.whole("a", 0, {}, 2).text, "m");
    EXPECT_EQ(font.whole("a", 0, {}, 0).text, "m");
}

TEST(GsubNested, ASequenceGrowsTheRun) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a", "c"}, {{0, kToMultiple}})});
    EXPECT_EQ(font.whole("bac"), (Result{true, "bpqc", {1, 1, 0, 1}}));
}

TEST(GsubNested, AnEmptySequenceDoesNothingInAContext) {
    const SpeltGsub font = withContext(kChain, {chainOf({"d"}, {{0, kToMultiple}})});
    EXPECT_EQ(font.whole("d"), (Result{false, "d", {1}}));
}

TEST(GsubNested, ALigatureShortensTheRun) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a", "b", "c"}, {{0, kToLigature}})});
    EXPECT_EQ(font.whole("abc"), (Result{true, "1c", {2, 1}}));
}

TEST(GsubNested, ALigatureInTheMiddleOfItsContextStandsForItsGlyphsInTheFirst) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a", "b", "c"}, {{1, kToLigature}})});
    EXPECT_EQ(font.whole("abc"), (Result{true, "a2", {3, 0}}));
}

TEST(GsubNested, ALigaturePassesOverMarksByItsOwnFlag) {
    const SpeltGsub font = withContext(
        kChain, {chainContextFormat3({}, speltCoverages({"a"}), {}, {{0, kToLigature}})});
    EXPECT_EQ(font.whole("aMb"), (Result{true, "1M", {2, skippedAt(1)}}));
}

TEST(GsubNested, ALigatureOf0xFFFFIsNone) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a"}, {{0, kToMore}})}, 0,
                                       {lookupTable(kLigature, noLigatureThenOne())});
    EXPECT_EQ(font.whole("ab"), (Result{false, "ab", {1, 1}}));
    EXPECT_EQ(font.whole("abac"), (Result{true, "ab1", {1, 1, 2}}));
}

TEST(GsubNested, ALookupBehindALigatureLeavesEmptySlots) {
    const SpeltGsub font =
        withContext(kChain, {chainOf({"a", "b", "c"}, {{0, kToLigature}, {2, kToSingle}})});
    EXPECT_EQ(font.whole("abc"), (Result{true, "1.z", {3, 0, 0}}));
}

TEST(GsubNested, LookupsAllSeeTheRunAsItWas) {
    // The second record finds a at index 0, not the x that the first one wrote.
    const SpeltGsub font =
        withContext(kChain, {chainOf({"a"}, {{0, kToSingle}, {0, kToAlternate}})});
    EXPECT_EQ(font.whole("a").text, "m");
}

TEST(GsubNested, IndicesInTheOutputShiftBehindASequence) {
    // z goes where b stood in the run; in the output that is the second glyph of a's sequence.
    const SpeltGsub font =
        withContext(kChain, {chainOf({"a", "c"}, {{0, kToMultiple}, {1, kToSingle}})});
    EXPECT_EQ(font.whole("ac"), (Result{true, "pz", {2, 0}}));
}

TEST(GsubNested, ReverseChainingDoesNothingInAContext) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a"}, {{0, kToReverse}})});
    EXPECT_EQ(font.whole("a"), (Result{false, "a", {1}}));
}

TEST(GsubNested, ALookupThatIsNotThereIsPassedBy) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a"}, {{0, 99}, {0, kToSingle}})});
    EXPECT_EQ(font.whole("a").text, "x");
}

TEST(GsubNested, ASequenceIndexBeyondTheRunIsPassedBy) {
    const SpeltGsub font =
        withContext(kChain, {chainOf({"a"}, {{1, kToSingle}, {65535, kToSingle}, {0, kToSingle}})});
    EXPECT_EQ(font.whole("a").text, "x");
}

TEST(GsubNested, ASequenceIndexMayReachBehindTheContext) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a"}, {{1, kToSingle}})});
    EXPECT_EQ(font.whole("ab"), (Result{true, "ay", {2, 0}}));
}

TEST(GsubNested, AContextInAContextCountsAsOneGlyph) {
    const SpeltGsub font =
        withContext(kChain, {chainOf({"a"}, {{0, kToMore}})}, 0,
                    {lookupTable(kChain, {chainOf({"a", "b"}, {{0, kToSingle}, {1, kToSingle}})})});
    // Of x and y one glyph is taken, though both a and b are gone.
    EXPECT_EQ(font.whole("abc"), (Result{true, "xc", {2, 1}}));
}

TEST(GsubNested, AContextInAContextDropsWhatWasWrittenBefore) {
    const SpeltGsub font =
        withContext(kChain, {chainOf({"a", "b"}, {{0, kToSingle}, {0, kToMore}})}, 0,
                    {lookupTable(kChain, {chainOf({"a", "b"}, {{1, kToSingle}})})});
    EXPECT_EQ(font.whole("ab").text, "a") << "x is lost, and y is behind the glyph that counts";
}

TEST(GsubNested, AContextInAContextCutsTheOutputASecondTime) {
    // At index 1 the output loses its first glyph twice: what is left begins with c.
    const SpeltGsub font = withContext(kChain, {chainOf({"a"}, {{0, kToMore}})}, 0,
                                       {lookupTable(kChain, {chainOf({"a"}, {{0, kToSingle}})})});
    EXPECT_EQ(font.whole("a").text, "x") << "at index 0 nothing is cut";
    EXPECT_EQ(font.whole("dacb").text, "dccb");
}

TEST(GsubNested, AContextThatNamesItselfEnds) {
    const SpeltGsub font = withContext(kChain, {chainOf({"a"}, {{0, 0}, {0, kToSingle}})});
    EXPECT_EQ(font.whole("a").text.size(), 1U);
}

// --- going on -----------------------------------------------------------------------------------

TEST(GsubGoingOn, AContextOfType5GoesOnBehindWhatItWrote) {
    const Bytes rule = contextOfA({{.input = {2}, .records = {{0, 1}}}});
    const SpeltGsub font(
        {lookupTable(kContext, {rule}), lookupTable(kMultiple, {glyphSets({{'a', {'q', 'a'}}})})});
    EXPECT_EQ(font.whole("ab"), (Result{true, "qab", {1, 0, 1}}));
}

TEST(GsubGoingOn, AChainContextComesBackToWhatItWrote) {
    // a becomes d and b: only when b is looked at again does it become y.
    const SpeltGsub font({lookupTable(kChain, {chainOf({"a"}, {{0, 1}}), chainOf({"b"}, {{0, 2}})}),
                          lookupTable(kMultiple, {glyphSets({{'a', {'d', 'b'}}})}),
                          nestedLookups()[0]});
    EXPECT_EQ(font.whole("a"), (Result{true, "dy", {1, 0}}));
}

TEST(GsubGoingOn, AChainContextGoesOnBehindTheLastGlyphThatIsAsBefore) {
    // Of a, d, a, b the second a is the last that is like the first glyph; only b follows it.
    const SpeltGsub font({lookupTable(kChain, {chainOf({"a"}, {{0, 1}}), chainOf({"d"}, {{0, 2}}),
                                               chainOf({"b"}, {{0, 3}})}),
                          lookupTable(kMultiple, {glyphSets({{'a', {'a', 'd', 'a', 'b'}}})}),
                          lookupTable(kSingle, {single({{'d', '?'}})}), nestedLookups()[0]});
    EXPECT_EQ(font.whole("a").text, "aday");
}

TEST(GsubGoingOn, WordsOfAMatchGoToTheNearestGlyphThatStandsForSomething) {
    // p and q come from a; then the ligature behind q adds what it swallowed to p.
    const SpeltGsub font(
        {lookupTable(kChain, {chainOf({"a"}, {{0, 1}}), chainOf({"q", "b"}, {{0, 2}})}),
         lookupTable(kMultiple, {glyphSets({{'a', {'p', 'q'}}})}),
         lookupTable(kLigature, {speltLigatures({{"qb", '1'}})})});
    EXPECT_EQ(font.whole("ab"), (Result{true, "p1", {2, 0}}));
}

TEST(GsubGoingOn, AroundPassedGlyphsInsertedOnesDeliberatelyShiftWhatIsMoved) {
    // The ligature of a and c passes over M, behind which two empty slots come to stand. The walk
    // takes the index of M as it was before, so that it keeps a slot, and c stays instead.
    const SpeltGsub font(
        {lookupTable(kChain, {chainOf({"a"}, {{1, 1}, {0, 2}})}),
         lookupTable(kMultiple, {glyphSets({{'M', {'U', 'V'}}})}),
         lookupTable(kLigature, {speltLigatures({{"ac", '1'}})}, kIgnoreMarksFlag)});
    EXPECT_EQ(font.whole("aMcz"), (Result{true, "1.Mcz", {2, 0, 0, skippedAt(1), 1}}));
}

} // namespace
} // namespace KWFontService_NS
