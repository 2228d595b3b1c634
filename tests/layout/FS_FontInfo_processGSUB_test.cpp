// The two public calls of substitution: what they take, and what they leave alone.

#include "layout/GsubFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using At = SpeltGsub::At;

// --- by feature, at one glyph -------------------------------------------------------------------

TEST(GsubAtAGlyph, ASingleSubstitutionLeavesTheSkippedGlyphsAlone) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}));
    EXPECT_EQ(font.at("bab", 1), (At{1, 2, "x", "-"}));
    EXPECT_EQ(font.at("bab", 0), (At{0, 0, "-", "-"}));
}

TEST(GsubAtAGlyph, AnAlternateIsTheOneThatIsAskedFor) {
    const SpeltGsub font = one(kAlternate, glyphSets({{'a', {'x', 'y'}}}));
    EXPECT_EQ(font.at("a", 0, "ft00", 2), (At{1, 1, "y", "-"}));
    EXPECT_EQ(font.at("a", 0, "ft00", 0), (At{0, 0, "-", "-"}));
    EXPECT_EQ(font.at("a", 0, "ft00", 3), (At{0, 0, "-", "-"}));
}

TEST(GsubAtAGlyph, ASequenceIsGivenWhole) {
    const SpeltGsub font = one(kMultiple, glyphSets({{'a', {'x', 'y', 'z'}}, {'b', {}}}));
    EXPECT_EQ(font.at("aa", 1), (At{3, 2, "xyz", "-"}));
    EXPECT_EQ(font.at("ab", 1), (At{0, 2, "", "-"})) << "deleted: 0 glyphs, and the position moves";
}

TEST(GsubAtAGlyph, AnEmptySequenceEndsTheSearchOfTheFeature) {
    const SpeltGsub font({lookupTable(kMultiple, {glyphSets({{'b', {}}}), single({{'b', 'x'}})})});
    EXPECT_EQ(font.at("b", 0), (At{0, 1, "", "-"}));
}

TEST(GsubAtAGlyph, ALigatureTellsWhatItPassedOver) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"fi", '1'}}), kIgnoreMarksFlag);
    EXPECT_EQ(font.at("afMNib", 1), (At{1, 5, "1", "MN"}));
    EXPECT_EQ(font.at("fib", 0), (At{1, 2, "1", ""}));
    EXPECT_EQ(font.at("fMb", 0), (At{0, 0, "-", "-"}));
}

TEST(GsubAtAGlyph, TheRunMayBeAnOutputItself) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"fi", '1'}}), kIgnoreMarksFlag);
    const auto at = [&font](GlyphIDArray& run, GlyphIDArray& out, GlyphIDArray& skipped) {
        int position = 1;
        return FS_FontInfo::processGSUB(font.info(), tagValue("ft00"), run, position, out, skipped,
                                        1);
    };
    GlyphIDArray run = font.run("afMNib");
    GlyphIDArray other;
    EXPECT_EQ(at(run, run, other), 1);
    EXPECT_EQ(letters(run), "1");
    EXPECT_EQ(letters(other), "MN");
    run = font.run("afMNib");
    EXPECT_EQ(at(run, other, run), 1);
    EXPECT_EQ(letters(run), "MN");
    EXPECT_EQ(letters(other), "1");
}

TEST(GsubAtAGlyph, AContextGivesTheRunFromItsFirstGlyphOn) {
    const SpeltGsub font(
        {lookupTable(kChain,
                     {chainContextFormat3({}, speltCoverages({"a", "b"}), {}, {{0, 1}, {1, 2}})}),
         lookupTable(kSingle, {single({{'a', 'x'}})}),
         lookupTable(kLigature, {speltLigatures({{"bc", '2'}})}, kIgnoreMarksFlag)});
    EXPECT_EQ(font.at("dabMce", 1), (At{2, 5, "x2..e", "M"}));
    EXPECT_EQ(font.at("dab", 1), (At{1, 2, "xb", ""}));
    EXPECT_EQ(font.at("dab", 2), (At{0, 2, "-", "-"}));
}

TEST(GsubAtAGlyph, ReverseChainingIsPassedBy) {
    const SpeltGsub font = one(kReverse, reverseChaining({{'a', 'x'}}, {}, {}));
    EXPECT_EQ(font.at("a", 0), (At{0, 0, "-", "-"}));
    EXPECT_EQ(font.whole("a").text, "x");
}

TEST(GsubAtAGlyph, APositionOutsideTheRunHasNothing) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}));
    EXPECT_EQ(font.at("a", 1), (At{0, 1, "-", "-"}));
    EXPECT_EQ(font.at("a", -1), (At{0, -1, "-", "-"}));
    EXPECT_EQ(font.at("", 0), (At{0, 0, "-", "-"}));
}

TEST(GsubAtAGlyph, AFeatureThatIsNotThereHasNothing) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}));
    EXPECT_EQ(font.at("a", 0, "ft01"), (At{0, 0, "-", "-"}));
}

/// Features of one tag, in the order given, with their lookups.
FS_GSUBGPOSInfo featuresOfOneTag(TTI_LayoutTable& gsub, const TTI_Gdef& gdef,
                                 const std::vector<std::vector<std::uint16_t>>& features,
                                 const std::vector<Bytes>& lookups) {
    std::vector<std::pair<std::string, Bytes>> tables;
    std::vector<std::uint16_t> indices;
    for (const auto& indicesOfOne : features) {
        indices.push_back(static_cast<std::uint16_t>(tables.size()));
        tables.emplace_back("test", featureTable(indicesOfOne));
    }
    const LayoutBytes bytes{.scripts = scriptList({{"latn", scriptTable(langSysTable(indices))}}),
                            .features = featureList(tables),
                            .lookups = lookupList(lookups)};
    gsub.read(bytes.build().vector(), TTI_LayoutTable::Kind::Gsub);
    static const TTI_LayoutTable noGpos;
    return findLayout(tagValue("latn"), 0, &gdef, gsub, noGpos);
}

TEST(GsubAtAGlyph, TheFirstLookupOfTheFirstFeatureOfTheTagThatAppliesEndsTheCall) {
    const TTI_Gdef gdef;
    const std::vector<Bytes> lookups = {lookupTable(kSingle, {single({{'a', 'x'}})}),
                                        lookupTable(kSingle, {single({{'a', 'y'}, {'b', 'z'}})})};
    const auto ask = [&](const std::vector<std::vector<std::uint16_t>>& features, char letter) {
        TTI_LayoutTable gsub;
        const FS_GSUBGPOSInfo info = featuresOfOneTag(gsub, gdef, features, lookups);
        GlyphIDArray run;
        run.push_back(static_cast<unsigned short>(letter), GlyphClassDef::None);
        GlyphIDArray out;
        GlyphIDArray skipped;
        int position = 0;
        FS_FontInfo::processGSUB(&info, tagValue("test"), run, position, out, skipped, 1);
        return letters(out);
    };
    EXPECT_EQ(ask({{0, 1}}, 'a'), "x");
    EXPECT_EQ(ask({{1, 0}}, 'a'), "y") << "in the order of the feature, not of the lookups";
    EXPECT_EQ(ask({{1}, {0}}, 'a'), "y");
    EXPECT_EQ(ask({{0}, {1}}, 'a'), "x");
    EXPECT_EQ(ask({{0}, {1}}, 'b'), "z");
    EXPECT_EQ(ask({{9, 0}}, 'a'), "x") << "a lookup that is not there is passed by";
}

TEST(GsubAtAGlyph, ALigatureOf0xFFFFIsNoneAndTheNextLookupStartsAtTheSameGlyph) {
    const TTI_Gdef gdef;
    TTI_LayoutTable gsub;
    const std::vector<Bytes> subtables = noLigatureThenOne();
    const FS_GSUBGPOSInfo info = featuresOfOneTag(
        gsub, gdef, {{0, 1}},
        {lookupTable(kLigature, {subtables[0]}), lookupTable(kLigature, {subtables[1]})});
    GlyphIDArray run;
    for (const std::uint16_t gid : spelt("abac"))
        run.push_back(gid, GlyphClassDef::None);
    GlyphIDArray out;
    GlyphIDArray skipped;
    for (const int size : {2, 4}) {
        GlyphIDArray part = run;
        part.erase(size, part.size());
        int position = 0;
        EXPECT_EQ(
            FS_FontInfo::processGSUB(&info, tagValue("test"), part, position, out, skipped, 1), 0);
        EXPECT_EQ(position, 0);
        EXPECT_EQ(letters(out), "");
    }
}

// --- by lookup, over a run ----------------------------------------------------------------------

TEST(GsubOverARun, AnIndexOutsideTheOrderLeavesTheOutputAlone) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}));
    GlyphIDArray2 in;
    in.glyphs() = font.run("a");
    for (const int index : {-1, 1, 65536}) {
        GlyphIDArray2 out(2);
        EXPECT_FALSE(FS_FontInfo::processGSUB3(font.info(), index, in, out, 1)) << index;
        EXPECT_EQ(out, GlyphIDArray2(2)) << index;
    }
}

TEST(GsubOverARun, WithoutALanguageSystemTheOutputIsLeftAlone) {
    const FS_GSUBGPOSInfo none;
    GlyphIDArray2 in(1);
    GlyphIDArray2 out(2);
    EXPECT_FALSE(FS_FontInfo::processGSUB3(&none, 0, in, out, 1));
    EXPECT_EQ(out, GlyphIDArray2(2));
    EXPECT_FALSE(FS_FontInfo::processGSUB3(nullptr, 0, in, out, 1));
    int position = 0;
    GlyphIDArray array;
    EXPECT_EQ(FS_FontInfo::processGSUB(&none, 0, in.glyphs(), position, array, array, 1), 0);
    EXPECT_EQ(FS_FontInfo::processGSUB(nullptr, 0, in.glyphs(), position, array, array, 1), 0);
}

TEST(GsubOverARun, TheOutputHoldsTheRunAlsoWhenNothingChanges) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}));
    EXPECT_EQ(font.whole("bc"), (SpeltGsub::Result{false, "bc", {1, 1}}));
}

TEST(GsubOverARun, WordsBeyondTheGlyphsAndMissingOnesDoNotMask) {
    const SpeltGsub font = one(kSingle, single({{'a', 'x'}}));
    EXPECT_EQ(font.whole("aa", 0, "m"), (SpeltGsub::Result{true, "ax", {1, 1}}));
    EXPECT_EQ(font.whole("a", 0, " mm"), (SpeltGsub::Result{true, "x", {1}}));
}

TEST(GsubOverARun, TheInputMayBeTheOutput) {
    const SpeltGsub font = one(kLigature, speltLigatures({{"fi", '1'}}));
    GlyphIDArray2 run;
    run.glyphs() = font.run("fifia");
    run.words() = {0, 0, 1, 0, 0};
    EXPECT_TRUE(FS_FontInfo::processGSUB3(font.info(), 0, run, run, 1));
    EXPECT_EQ(letters(run.glyphs()), "1fia");
    EXPECT_EQ(run.words(), (std::vector<int>{2, 1, 1, 1}));
    EXPECT_EQ(run.ligaInfo(0), 2);
}

TEST(GsubOverARun, TheWordsOfOneCallMaskEveryGlyphInTheNext) {
    const SpeltGsub font = one(kSingle, single({{'a', 'a'}}));
    GlyphIDArray2 run;
    run.glyphs() = font.run("aa");
    EXPECT_TRUE(FS_FontInfo::processGSUB3(font.info(), 0, run, run, 1));
    EXPECT_FALSE(FS_FontInfo::processGSUB3(font.info(), 0, run, run, 1));
    run.words().clear();
    EXPECT_TRUE(FS_FontInfo::processGSUB3(font.info(), 0, run, run, 1));
}

TEST(GsubOverARun, SubstitutingAGlyphByItselfIsAChange) {
    EXPECT_TRUE(one(kSingle, single({{'a', 'a'}})).whole("a").changed);
}

} // namespace
} // namespace KWFontService_NS
