#include "GsubOracle.h"

#include <gtest/gtest.h>

namespace KWTest::oracle {
namespace {

Coverage covering(const std::vector<Glyph>& glyphs) {
    Coverage coverage;
    for (const Glyph glyph : glyphs)
        coverage.indices.emplace(glyph, static_cast<int>(coverage.indices.size()));
    return coverage;
}

/// Glyphs 1 to 9; 9 is a mark.
Run runOf(const std::vector<Glyph>& glyphs) {
    Run run;
    for (const Glyph glyph : glyphs)
        run.push_back({glyph, glyph == 9 ? 3 : 1});
    return run;
}
std::vector<Glyph> glyphsOf(const Run& run) {
    std::vector<Glyph> glyphs;
    for (const Slot& slot : run)
        glyphs.push_back(slot.glyph);
    return glyphs;
}
using Glyphs = std::vector<Glyph>;
using Words = std::vector<int>;

constexpr int kIgnoreMarks = 8;

Lookup ligature(int flag = kIgnoreMarks) {
    return {4, flag, false, {Ligatures{covering({1}), {{{7, {2}}}}}}};
}
Lookup single(Glyph from, Glyph to) {
    return {1, 0, false, {SingleList{covering({from}), {to}}}};
}
Lookup multiple(Glyph from, Glyphs to) {
    return {2, 0, false, {Multiple{covering({from}), {std::move(to)}}}};
}
Lookup chain(const std::vector<Glyphs>& input, std::vector<Record> records, int flag = 0) {
    ChainCoverages s;
    for (const Glyphs& glyphs : input)
        s.input.push_back(covering(glyphs));
    s.records = std::move(records);
    return {6, flag, false, {s}};
}

/// Each lookup is a feature of its own, whose tag is its index.
class Gsub : public testing::Test {
protected:
    GsubOracle oracle(std::vector<Lookup> lookups) {
        font_.glyphClasses.format = 2;
        for (Glyph glyph = 1; glyph <= 9; ++glyph)
            font_.glyphClasses.classes.emplace(glyph, glyph == 9 ? 3 : 1);
        font_.gsub.lookups = std::move(lookups);
        LangSys system;
        for (int i = 0; i < count(font_.gsub.lookups); ++i) {
            font_.gsub.features.push_back({static_cast<Tag>(i), {i}});
            system.push_back(i);
        }
        font_.gsub.scripts[1][0] = system;
        return GsubOracle(findHandle(font_, 1, 0));
    }
    GsubOracle::WholeRun whole(std::vector<Lookup> lookups, const Glyphs& glyphs,
                               const Words& mask = {}) {
        return oracle(std::move(lookups)).processGSUB3(0, runOf(glyphs), mask, {}, 1);
    }

private:
    Font font_;
};

TEST_F(Gsub, ALigatureLeavesTheMarkBehindItWithThePlaceItHad) {
    const auto answer = whole({ligature()}, {5, 1, 9, 2});
    EXPECT_TRUE(answer.changed);
    EXPECT_EQ(glyphsOf(answer.run), (Glyphs{5, 7, 9}));
    EXPECT_EQ(answer.words, (Words{1, 2, 2 << 16 | 1}));
}

TEST_F(Gsub, AMaskedGlyphIsSwallowedButStartsNothing) {
    EXPECT_EQ(whole({ligature()}, {1, 2}, {0, 1}).words, Words{2});
    const auto answer = whole({ligature()}, {1, 2}, {1, 0});
    EXPECT_FALSE(answer.changed);
    EXPECT_EQ(answer.words, (Words{1, 1}));
}

TEST_F(Gsub, AddedGlyphsHaveWordsOf0AndAreNotLookedAtAgain) {
    const auto answer = whole({multiple(1, {1, 1, 3})}, {1, 2});
    EXPECT_EQ(glyphsOf(answer.run), (Glyphs{1, 1, 3, 2}));
    EXPECT_EQ(answer.words, (Words{1, 0, 0, 1}));
}

TEST_F(Gsub, AContextReplacesUpToTheLastGlyphThatANestedLookupTook) {
    const auto answer = whole({chain({{1}, {2}, {3}}, {{1, 1}}), single(2, 5)}, {4, 1, 2, 3});
    EXPECT_EQ(glyphsOf(answer.run), (Glyphs{4, 1, 5, 3}));
    EXPECT_EQ(answer.words, (Words{1, 2, 0, 1})) << "both glyphs stand for both";
}

TEST_F(Gsub, NestedLookupsSeeTheRunAsItWas) {
    const auto answer = whole({chain({{1}}, {{0, 1}, {0, 2}}), single(1, 2), single(2, 3)}, {1});
    EXPECT_EQ(glyphsOf(answer.run), Glyphs{2});
}

TEST_F(Gsub, ANestedLigatureLeavesEmptySlotsBeforeALaterNestedGlyph) {
    const auto answer =
        whole({chain({{1}, {2}, {3}}, {{0, 1}, {2, 2}}), ligature(0), single(3, 4)}, {1, 2, 3});
    EXPECT_EQ(glyphsOf(answer.run), (Glyphs{7, kNone, 4}));
}

TEST_F(Gsub, AChainWithoutRecordsEndsTheLookup) {
    Lookup lookup = chain({{1}}, {});
    lookup.subtables.push_back(chain({{1}}, {{0, 1}}).subtables.front());
    EXPECT_FALSE(whole({lookup, single(1, 2)}, {1}).changed);
}

TEST_F(Gsub, AChainThatGrowsItsOwnTriggerHasNoEnd) {
    EXPECT_THROW(
        whole({chain({{1, 2}}, {{0, 1}, {0, 2}}), multiple(1, {2, 2}), multiple(2, {1, 1})}, {1}),
        Undefined);
}

TEST_F(Gsub, ReverseChainingNeedsItsBacktrack) {
    const ReverseChain s{covering({1}), {covering({1})}, {}, {2}};
    EXPECT_EQ(glyphsOf(whole({{8, 0, false, {s}}}, {1, 1, 1}).run), (Glyphs{1, 2, 2}));
}

TEST_F(Gsub, ContextsOfGlyphsNeverMatch) {
    const ContextGlyphs s{false, covering({1}), {{{{}, {2}, {}, {{0, 1}}}}}};
    EXPECT_FALSE(whole({{5, 0, false, {s}}, single(1, 3)}, {1, 2}).changed);
}

TEST_F(Gsub, AtOnePlaceTheRestOfTheRunComesOutBehindAContext) {
    GsubOracle answering = oracle({chain({{1}}, {{0, 1}}), multiple(1, {3, 4}), multiple(5, {})});
    const GsubOracle::AtPosition before{9, 1, {}, {}};
    const auto answer = answering.processGSUB(0, runOf({2, 1, 9}), before, 1);
    EXPECT_EQ(answer.result, 2);
    EXPECT_EQ(answer.position, 2);
    EXPECT_EQ(glyphsOf(answer.out), (Glyphs{3, 4, 9}));

    const auto deleted = answering.processGSUB(2, runOf({2, 5}), before, 1);
    EXPECT_EQ(deleted.result, 0);
    EXPECT_EQ(deleted.position, 2);
}

TEST_F(Gsub, TheMarkAttachmentClassPassesOverWhatHasAnother) {
    Font font;
    font.markAttachClasses = {2, {{1, 1}, {9, 2}}};
    EXPECT_FALSE(isPassedOver(font, 0x200, {9, 3}));
    EXPECT_TRUE(isPassedOver(font, 0x200, {1, 1})) << "no mark, but of another class";
    EXPECT_TRUE(isPassedOver(font, 0x200, {8, 3})) << "a mark without one";
    EXPECT_FALSE(isPassedOver(font, 0x200, {8, 1}));
    EXPECT_FALSE(isPassedOver(font, 0x10, {9, 3}));
}

} // namespace
} // namespace KWTest::oracle
