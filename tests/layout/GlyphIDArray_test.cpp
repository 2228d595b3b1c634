#include <KWFontService17/GlyphIDArray.h>
#include <KWFontService17/GlyphIDPosition.h>

#include "support/Rng.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using testing::ElementsAre;

constexpr int kMillion = 1'000'000;

GlyphIDArray runOf(const std::vector<unsigned short>& glyphs) {
    GlyphIDArray run;
    for (const unsigned short gid : glyphs)
        run.push_back(gid, GlyphClassDef::Base);
    return run;
}

std::vector<int> idsOf(const GlyphIDArray& run) {
    std::vector<int> ids;
    for (const GlyphIDClassPair& glyph : run)
        ids.push_back(glyph.getGlyphID());
    return ids;
}

GlyphIDPosition positionOf(unsigned short gid, GlyphClassDef glyphClass) {
    GlyphIDPosition position;
    position.setGlyph(gid, glyphClass, 500);
    return position;
}

TEST(GlyphIDArray, BeginsEmpty) {
    const GlyphIDArray run;
    EXPECT_TRUE(run.empty());
    EXPECT_EQ(run.size(), 0);
    EXPECT_EQ(run.begin(), run.end());
}

TEST(GlyphIDArray, OfACountHoldsThatManyEmptyGlyphs) {
    for (const int count : {1, 2, kMillion}) {
        const GlyphIDArray run(count);
        EXPECT_FALSE(run.empty());
        ASSERT_EQ(run.size(), count);
        EXPECT_EQ(std::count(run.begin(), run.end(), GlyphIDClassPair()), count);
    }
}

TEST(GlyphIDArray, OfCount0AndBelowIsEmpty) {
    EXPECT_TRUE(GlyphIDArray(0).empty());
    EXPECT_TRUE(GlyphIDArray(-1).empty());
    EXPECT_TRUE(GlyphIDArray(-2147483647 - 1).empty());
}

TEST(GlyphIDArray, CopiesAreValuesOfTheirOwn) {
    GlyphIDArray run = runOf({1, 2, 3});
    GlyphIDArray copy(run);
    EXPECT_EQ(copy, run);
    copy[0].setGlyphID(9);
    EXPECT_THAT(idsOf(run), ElementsAre(1, 2, 3));
    EXPECT_THAT(idsOf(copy), ElementsAre(9, 2, 3));
    copy = run;
    EXPECT_EQ(copy, run);
    const GlyphIDArray& same = run;
    run = same;
    EXPECT_THAT(idsOf(run), ElementsAre(1, 2, 3)) << "assigned to itself";
}

TEST(GlyphIDArray, MovesItsMemory) {
    GlyphIDArray run = runOf({1, 2, 3});
    const GlyphIDClassPair* const first = &run[0];
    GlyphIDArray taken(std::move(run));
    EXPECT_EQ(&taken[0], first);
    GlyphIDArray assigned = runOf({7});
    assigned = std::move(taken);
    EXPECT_EQ(&assigned[0], first);
    EXPECT_THAT(idsOf(assigned), ElementsAre(1, 2, 3));
}

TEST(GlyphIDArray, ReachesEachGlyphByIndexAndByIterator) {
    GlyphIDArray run = runOf({1, 2, 3});
    const GlyphIDArray& constant = run;
    for (int i = 0; i < run.size(); ++i) {
        EXPECT_EQ(&run[i], &run.at(i));
        EXPECT_EQ(&constant[i], &run[i]);
        EXPECT_EQ(&constant.at(i), &run[i]);
        EXPECT_EQ(&*(run.begin() + i), &run[i]);
        EXPECT_EQ(&*(constant.begin() + i), &run[i]);
    }
    run[1] = GlyphIDClassPair(20, GlyphClassDef::Mark);
    run.at(2).ignore();
    for (GlyphIDClassPair& glyph : run)
        glyph.setGlyphClassDef(GlyphClassDef::Ligature);
    EXPECT_THAT(idsOf(run), ElementsAre(1, 20, 0xFFFF));
    EXPECT_EQ(constant[2].getGlyphClassDef(), GlyphClassDef::Ligature);
}

TEST(GlyphIDArray, ClearKeepsItsMemory) {
    GlyphIDArray run(1000);
    const GlyphIDClassPair* const first = &run[0];
    run.clear();
    EXPECT_TRUE(run.empty());
    for (int i = 0; i < 1000; ++i)
        run.push_back(GlyphIDClassPair());
    EXPECT_EQ(&run[0], first);
}

TEST(GlyphIDArray, AppendsAPairOrItsParts) {
    GlyphIDArray run;
    run.push_back(GlyphIDClassPair(5, GlyphClassDef::Mark));
    run.push_back(6, GlyphClassDef::Base);
    ASSERT_EQ(run.size(), 2);
    EXPECT_EQ(run[0], GlyphIDClassPair(5, GlyphClassDef::Mark));
    EXPECT_EQ(run[1], GlyphIDClassPair(6, GlyphClassDef::Base));
}

TEST(GlyphIDArray, AppendsAndInsertsAGlyphOfItsOwn) {
    GlyphIDArray run = runOf({1, 2});
    for (int i = 0; i < 100; ++i)
        run.push_back(run[0]);
    for (int i = 0; i < 100; ++i)
        run.insert(0, run[101]);
    EXPECT_EQ(run.size(), 202);
    EXPECT_EQ(run[0].getGlyphID(), 1);
}

TEST(GlyphIDArray, InsertsBeforeTheIndex) {
    GlyphIDArray run = runOf({1, 2, 3});
    run.insert(0, GlyphIDClassPair(10, GlyphClassDef::Mark));
    run.insert(3, 30, GlyphClassDef::Component);
    EXPECT_THAT(idsOf(run), ElementsAre(10, 1, 2, 30, 3));
    EXPECT_EQ(run[0].getGlyphClassDef(), GlyphClassDef::Mark);
    EXPECT_EQ(run[3].getGlyphClassDef(), GlyphClassDef::Component);
}

TEST(GlyphIDArray, InsertingOutsideAppends) {
    constexpr int kLowest = -2147483647 - 1;
    constexpr int kHighest = 2147483647;
    GlyphIDArray run;
    unsigned short next = 0;
    for (const int index : {0, -1, 2, 4, kLowest, kHighest, kMillion})
        run.insert(index, next++, GlyphClassDef::Base);
    run.insert(-1, GlyphIDClassPair(7, GlyphClassDef::Base));
    run.insert(run.size(), GlyphIDClassPair(8, GlyphClassDef::Base));
    EXPECT_THAT(idsOf(run), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(GlyphIDArray, ErasesAHalfOpenRange) {
    GlyphIDArray run = runOf({0, 1, 2, 3, 4, 5, 6});
    run.erase(1, 3);
    EXPECT_THAT(idsOf(run), ElementsAre(0, 3, 4, 5, 6));
    run.erase(4, 5);
    EXPECT_THAT(idsOf(run), ElementsAre(0, 3, 4, 5));
    run.erase(0, 4);
    EXPECT_TRUE(run.empty());
}

TEST(GlyphIDArray, ErasesNothingUnlessFromIsBelowTo) {
    GlyphIDArray run = runOf({0, 1, 2, 3, 4, 5, 6});
    const GlyphIDArray before = run;
    run.erase(5, 5);
    run.erase(6, 5);
    run.erase(kMillion, kMillion);
    run.erase(kMillion, -kMillion);
    run.erase(-1, -1);
    EXPECT_EQ(run, before);
    GlyphIDArray().erase(0, 0);
}

TEST(GlyphIDArray, IsEditedAsItsVectorWouldBe) {
    KWTest::Rng rng(1);
    GlyphIDArray run;
    std::vector<int> model;
    for (int step = 0; step < 3000; ++step) {
        const int size = static_cast<int>(model.size());
        const auto gid = static_cast<unsigned short>(step);
        if (rng.chance(4)) {
            const int from = static_cast<int>(rng.below(static_cast<std::uint32_t>(size) + 1));
            const int to = std::min(size, from + static_cast<int>(rng.below(6)));
            run.erase(from, to);
            model.erase(model.begin() + from, model.begin() + to);
        } else {
            const int index = static_cast<int>(rng.below(static_cast<std::uint32_t>(size) + 3)) - 1;
            run.insert(index, gid, GlyphClassDef::Base);
            const bool inside = index >= 0 && index < size;
            model.insert(inside ? model.begin() + index : model.end(), gid);
        }
        ASSERT_EQ(run.size(), static_cast<int>(model.size()));
    }
    EXPECT_EQ(idsOf(run), model);
}

TEST(GlyphIDArray, ReadsGlyphsAndDropsThePositionsWithoutOne) {
    std::vector<GlyphIDPosition> positions = {
        positionOf(3, GlyphClassDef::Base), GlyphIDPosition(1, 500),
        positionOf(4, GlyphClassDef::Mark), positionOf(5, GlyphClassDef::None)};
    positions[3].ignoreGlyph();
    positions.push_back(positionOf(0, GlyphClassDef::Unknown));
    GlyphIDArray run = runOf({90, 91});
    EXPECT_EQ(run.readGIDs(positions, false), 3);
    ASSERT_THAT(idsOf(run), ElementsAre(3, 4, 0)) << "what was in the run is gone";
    EXPECT_EQ(run[0].getGlyphClassDef(), GlyphClassDef::Base);
    EXPECT_EQ(run[1].getGlyphClassDef(), GlyphClassDef::Mark);
    EXPECT_EQ(run[2].getGlyphClassDef(), GlyphClassDef::Unknown);
}

TEST(GlyphIDArray, ReadsClearedPositionsAsEmptyGlyphsAndDropsIgnoredOnesWhenAskedToKeep) {
    std::vector<GlyphIDPosition> positions(4, positionOf(3, GlyphClassDef::Base));
    positions[1].clearGlyph();
    positions[2].ignoreGlyph();
    GlyphIDArray run;
    EXPECT_EQ(run.readGIDs(positions, true), 3);
    ASSERT_THAT(idsOf(run), ElementsAre(3, 0xFFFF, 3));
    EXPECT_EQ(run[1], GlyphIDClassPair());
}

// The two ways test different halves of the pair.
TEST(GlyphIDArray, KeepingDropsByTheClassAndNotKeepingByTheGlyph) {
    const std::vector<GlyphIDPosition> positions = {positionOf(3, GlyphClassDef::Ignored),
                                                    positionOf(0xFFFF, GlyphClassDef::Mark)};
    GlyphIDArray run;
    EXPECT_EQ(run.readGIDs(positions, false), 1);
    EXPECT_EQ(run[0], GlyphIDClassPair(3, GlyphClassDef::Ignored));
    EXPECT_EQ(run.readGIDs(positions, true), 1);
    EXPECT_EQ(run[0], GlyphIDClassPair(0xFFFF, GlyphClassDef::Mark));
}

TEST(GlyphIDArray, ReadsNoPositionAndAMillion) {
    GlyphIDArray run(3);
    EXPECT_EQ(run.readGIDs({}, true), 0);
    EXPECT_TRUE(run.empty());
    const std::vector<GlyphIDPosition> positions(kMillion, positionOf(8, GlyphClassDef::Base));
    EXPECT_EQ(run.readGIDs(positions, false), kMillion);
    EXPECT_EQ(run[kMillion - 1].getGlyphID(), 8);
    const GlyphIDClassPair* const first = &run[0];
    EXPECT_EQ(run.readGIDs(std::vector<GlyphIDPosition>(kMillion), true), kMillion);
    EXPECT_EQ(&run[0], first) << "the memory is used again";
    EXPECT_EQ(run.readGIDs(std::vector<GlyphIDPosition>(kMillion), false), 0);
}

} // namespace
} // namespace KWFontService_NS
