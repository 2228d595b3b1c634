#include <KWFontService17/GlyphIDArray2.h>
#include <KWFontService17/GlyphIDPosition.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

constexpr int kMillion = 1'000'000;

static_assert(!std::is_base_of_v<GlyphIDArray, GlyphIDArray2>);

TEST(GlyphIDArray2, BeginsWithoutGlyphsAndWithoutWords) {
    const GlyphIDArray2 run;
    EXPECT_TRUE(run.empty());
    EXPECT_EQ(run.size(), 0);
    EXPECT_TRUE(run.words().empty());
}

TEST(GlyphIDArray2, OfACountHoldsEmptyGlyphsAndWordsOf0) {
    for (const int count : {0, 1, 5, kMillion}) {
        const GlyphIDArray2 run(count);
        ASSERT_EQ(run.size(), count);
        EXPECT_EQ(std::count(run.begin(), run.end(), GlyphIDClassPair()), count);
        EXPECT_THAT(run.words(), SizeIs(count));
        EXPECT_THAT(run.words(), Each(0));
    }
    EXPECT_TRUE(GlyphIDArray2(-1).empty());
    EXPECT_TRUE(GlyphIDArray2(-1).words().empty());
}

TEST(GlyphIDArray2, HoldsItsGlyphsWhereAGlyphArrayHasThem) {
    GlyphIDArray2 run(2);
    EXPECT_EQ(static_cast<void*>(&run.glyphs()), static_cast<void*>(&run));
    EXPECT_EQ(&run.glyphs()[1], &run[1]);
    const GlyphIDArray2& constant = run;
    EXPECT_EQ(&constant.glyphs(), &run.glyphs());
    EXPECT_EQ(&constant.words(), &run.words());
}

TEST(GlyphIDArray2, CopiesAndMovesBothParts) {
    GlyphIDArray2 run(2);
    run[0].setGlyphID(4);
    run.words()[1] = 7;
    GlyphIDArray2 copy(run);
    EXPECT_EQ(copy, run);
    copy.words()[1] = 8;
    EXPECT_EQ(run.ligaInfo(1), 7);
    EXPECT_NE(copy, run) << "the words count";
    copy = run;
    EXPECT_EQ(copy, run);

    const GlyphIDClassPair* const glyph = &run[0];
    const int* const word = run.words().data();
    GlyphIDArray2 taken(std::move(run));
    EXPECT_EQ(&taken[0], glyph);
    EXPECT_EQ(taken.words().data(), word);
    GlyphIDArray2 assigned(9);
    assigned = std::move(taken);
    EXPECT_EQ(&assigned[0], glyph);
    EXPECT_EQ(assigned, copy);
}

TEST(GlyphIDArray2, EditsItsGlyphsAsAGlyphArray) {
    GlyphIDArray2 run;
    run.push_back(1, GlyphClassDef::Base);
    run.push_back(GlyphIDClassPair(2, GlyphClassDef::Mark));
    run.insert(0, 3, GlyphClassDef::Ligature);
    run.insert(1, GlyphIDClassPair(4, GlyphClassDef::None));
    run.insert(-1, 5, GlyphClassDef::Base);
    run.insert(run.size(), GlyphIDClassPair(6, GlyphClassDef::Base));
    std::vector<int> ids;
    for (const GlyphIDClassPair& glyph : std::as_const(run))
        ids.push_back(glyph.getGlyphID());
    EXPECT_THAT(ids, ElementsAre(3, 4, 1, 2, 5, 6));

    run.erase(5, 5);
    run.erase(6, 5);
    EXPECT_EQ(run.size(), 6);
    run.erase(1, 5);
    ASSERT_EQ(run.size(), 2);
    const GlyphIDArray2& constant = run;
    EXPECT_EQ(constant[0].getGlyphID(), 3);
    EXPECT_EQ(constant.at(1).getGlyphID(), 6);
    EXPECT_EQ(&run.at(1), &run[1]);
    EXPECT_EQ(&*run.begin(), &run[0]);
    EXPECT_EQ(run.end() - run.begin(), 2);
}

// The words are an input and an output of processing, not a part of each glyph.
TEST(GlyphIDArray2, EditingGlyphsLeavesTheWordsAlone) {
    GlyphIDArray2 run(2);
    run.words() = {2, 3};
    run.push_back(1, GlyphClassDef::Base);
    run.insert(0, 1, GlyphClassDef::Base);
    EXPECT_THAT(run.words(), ElementsAre(2, 3));
    run.erase(0, 4);
    EXPECT_THAT(run.words(), ElementsAre(2, 3));
}

TEST(GlyphIDArray2, ClearEmptiesBothAndKeepsTheirMemory) {
    GlyphIDArray2 run(1000);
    const GlyphIDClassPair* const glyph = &run[0];
    const int* const word = run.words().data();
    run.clear();
    EXPECT_TRUE(run.empty());
    EXPECT_TRUE(run.words().empty());
    run.words().resize(1000);
    run.push_back(GlyphIDClassPair());
    EXPECT_EQ(&run[0], glyph);
    EXPECT_EQ(run.words().data(), word);
}

TEST(GlyphIDArray2, ReadingGlyphsLeavesNoWords) {
    std::vector<GlyphIDPosition> positions(3);
    positions[0].setGlyph(4, GlyphClassDef::Base, 500);
    positions[2].ignoreGlyph();
    GlyphIDArray2 run(5);
    run.words().assign(5, -1);
    EXPECT_EQ(run.readGIDs(positions, true), 2);
    EXPECT_EQ(run[0], GlyphIDClassPair(4, GlyphClassDef::Base));
    EXPECT_EQ(run[1], GlyphIDClassPair());
    EXPECT_TRUE(run.words().empty()) << "nothing is masked";
    for (const int index : {0, 1, 2, kMillion})
        EXPECT_EQ(run.skipInfo(index), 0);
    EXPECT_EQ(run.readGIDs(positions, false), 1);
    EXPECT_EQ(run.readGIDs({}, true), 0);
}

TEST(GlyphIDArray2, AWordHasTwoUnsignedHalves) {
    GlyphIDArray2 run(4);
    run.words() = {1, 0x00050002, -1, static_cast<int>(0x80000000U)};
    EXPECT_EQ(run.ligaInfo(0), 1);
    EXPECT_EQ(run.skipInfo(0), 0);
    EXPECT_EQ(run.ligaInfo(1), 2);
    EXPECT_EQ(run.skipInfo(1), 5);
    EXPECT_EQ(run.ligaInfo(2), 0xFFFF);
    EXPECT_EQ(run.skipInfo(2), 0xFFFF);
    EXPECT_EQ(run.ligaInfo(3), 0);
    EXPECT_EQ(run.skipInfo(3), 0x8000);
}

TEST(GlyphIDArray2, SkipInfoOutsideTheWordsIs0) {
    GlyphIDArray2 run(3);
    run.words() = {-1, -1};
    EXPECT_EQ(run.skipInfo(1), 0xFFFF);
    for (const int index : {2, 3, kMillion, 2147483647, -1, -2147483647 - 1})
        EXPECT_EQ(run.skipInfo(index), 0);
}

} // namespace
} // namespace KWFontService_NS
