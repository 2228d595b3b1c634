#include "layout/LayoutCall.h"

#include "layout/GsubFixture.h"

#include "common/KWLimits.h"

#include <KWFontService17/GlyphIDPosition.h>

#include <gtest/gtest.h>

#include <functional>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TTI_Gdef gdefOf(const Bytes& bytes) {
    TTI_Gdef gdef;
    gdef.read(viewOf(bytes));
    return gdef;
}

class LookupFlags : public ::testing::Test {
protected:
    bool passes(unsigned int flag, char letter, int glyphClass) {
        const auto gid = static_cast<unsigned short>(letter);
        return call_.passesOver(flag, {gid, static_cast<GlyphClassDef>(glyphClass)});
    }

    // M and N have mark attachment types, and so has the base glyph b.
    TTI_Gdef gdef_ = gdefOf(speltGdef(speltClasses({{"M", 1}, {"N", 2}, {"b", 1}})));
    LayoutCall call_{gdef_, 1};
};

TEST_F(LookupFlags, FlagZeroPassesOverNothing) {
    for (int glyphClass = -2; glyphClass <= 4; ++glyphClass)
        EXPECT_FALSE(passes(0, 'M', glyphClass)) << glyphClass;
}

TEST_F(LookupFlags, EachBitPassesOverItsClassAndNoOther) {
    for (int glyphClass = -2; glyphClass <= 4; ++glyphClass) {
        EXPECT_EQ(passes(0x0002, 'x', glyphClass), glyphClass == 1) << glyphClass;
        EXPECT_EQ(passes(0x0004, 'x', glyphClass), glyphClass == 2) << glyphClass;
        EXPECT_EQ(passes(0x0008, 'x', glyphClass), glyphClass == 3) << glyphClass;
        EXPECT_EQ(passes(0x000E, 'x', glyphClass), glyphClass >= 1 && glyphClass <= 3)
            << glyphClass;
    }
}

TEST_F(LookupFlags, RightToLeftAndMarkFilteringSetsPassOverNothing) {
    for (int glyphClass = -2; glyphClass <= 4; ++glyphClass)
        EXPECT_FALSE(passes(0x0011, 'M', glyphClass)) << glyphClass;
}

TEST_F(LookupFlags, AMarkAttachmentTypePassesOverEveryGlyphOfAnother) {
    EXPECT_FALSE(passes(0x0100, 'M', 3));
    EXPECT_TRUE(passes(0x0100, 'N', 3));
    EXPECT_TRUE(passes(0x0200, 'M', 3));
    EXPECT_FALSE(passes(0x0100, 'b', 1));
    EXPECT_TRUE(passes(0x0200, 'b', 1)) << "a base glyph with a type is compared too";
}

TEST_F(LookupFlags, AGlyphWithoutAttachmentTypeIsPassedOverWhenItIsAMark) {
    EXPECT_TRUE(passes(0x0100, 'O', 3));
    EXPECT_FALSE(passes(0x0100, 'x', 1));
    EXPECT_FALSE(passes(0x0100, 'x', -1));
    const GlyphIDClassPair none(FS_NO_GLYPH, GlyphClassDef::Mark);
    EXPECT_TRUE(call_.passesOver(0x0100, none));
    EXPECT_FALSE(call_.passesOver(0x0100, GlyphIDClassPair()));
}

TEST_F(LookupFlags, WithoutAttachmentTypesInTheFontEveryMarkIsPassedOver) {
    const TTI_Gdef plain = gdefOf(speltGdef());
    const LayoutCall call(plain, 1);
    EXPECT_TRUE(call.passesOver(0x0100, {'M', GlyphClassDef::Mark}));
    EXPECT_FALSE(call.passesOver(0x0100, {'x', GlyphClassDef::Base}));
}

TEST_F(LookupFlags, TheClassIsThatOfThePairAndNotTheFonts) {
    EXPECT_TRUE(passes(0x0008, 'x', 3));
    EXPECT_FALSE(passes(0x0008, 'M', 1));
}

TEST(LayoutCallGlyph, HasTheClassOfTheFont) {
    const TTI_Gdef gdef = gdefOf(speltGdef());
    const LayoutCall call(gdef, 1);
    EXPECT_EQ(call.glyph('M'), GlyphIDClassPair('M', GlyphClassDef::Mark));
    EXPECT_EQ(call.glyph('#'), GlyphIDClassPair('#', GlyphClassDef::Unknown));
    EXPECT_EQ(call.glyph(FS_NO_GLYPH), GlyphIDClassPair());
    const TTI_Gdef none;
    EXPECT_EQ(LayoutCall(none, 1).glyph('M'), GlyphIDClassPair('M', GlyphClassDef::Unknown));
}

TEST(LayoutCallWork, GrowsWithTheRunAndIsUsedUpForGood) {
    const TTI_Gdef gdef;
    LayoutCall call(gdef, 2);
    const std::size_t all = KWCommonNS::kLayoutFreeSteps + 2 * KWCommonNS::kLayoutStepsOfAGlyph;
    EXPECT_TRUE(call.spend(all));
    EXPECT_TRUE(call.spend(0));
    EXPECT_FALSE(call.exhausted());
    EXPECT_FALSE(call.spend(1));
    EXPECT_TRUE(call.exhausted());
    EXPECT_FALSE(call.spend(0));
}

TEST(LayoutCallWork, AStepThatIsNotCoveredUsesUpTheRest) {
    const TTI_Gdef gdef;
    LayoutCall call(gdef, 0);
    EXPECT_FALSE(call.spend(KWCommonNS::kLayoutFreeSteps + 1));
    EXPECT_FALSE(call.spend(1));
}

TEST(LayoutCallWork, RecordsThatAreReadInARowAreCheaperThanSteps) {
    const TTI_Gdef gdef;
    LayoutCall call(gdef, 0);
    EXPECT_TRUE(call.spendReads(8 * KWCommonNS::kLayoutFreeSteps));
    EXPECT_FALSE(call.spendReads(8 * KWCommonNS::kLayoutFreeSteps));
    LayoutCall other(gdef, 0);
    EXPECT_TRUE(other.spend(KWCommonNS::kLayoutFreeSteps));
    EXPECT_FALSE(other.spendReads(0)) << "the search itself is a step";
}

TEST(LayoutCallWork, ARunGrowsToAMultipleOfItsLength) {
    const TTI_Gdef gdef;
    const LayoutCall call(gdef, 10);
    const std::size_t most = KWCommonNS::kLayoutFreeGlyphs + 10 * KWCommonNS::kLayoutGrowth;
    EXPECT_TRUE(call.mayGrowTo(most));
    EXPECT_FALSE(call.mayGrowTo(most + 1));
}

TEST(LayoutCallNesting, EndsAtItsLimitAndComesBack) {
    const TTI_Gdef gdef;
    LayoutCall call(gdef, 0);
    const std::function<int(int)> deepest = [&](int depth) {
        const LayoutCall::Nesting nesting(call);
        return nesting ? deepest(depth + 1) : depth;
    };
    EXPECT_EQ(deepest(0), KWCommonNS::kMaxLayoutNesting);
    EXPECT_EQ(deepest(0), KWCommonNS::kMaxLayoutNesting);
}

TEST(LayoutCallRun, HasTheGlyphsOfAllPositionsEmptyOnesToo) {
    const TTI_Gdef gdef;
    LayoutCall call(gdef, 3);
    std::vector<GlyphIDPosition> positions(3);
    positions[0].setGlyph('a', GlyphClassDef::Base, 500);
    positions[2].ignoreGlyph();
    const GlyphIDArray& run = call.runOf(positions);
    ASSERT_EQ(run.size(), 3);
    EXPECT_EQ(run[0], GlyphIDClassPair('a', GlyphClassDef::Base));
    EXPECT_EQ(run[1], GlyphIDClassPair());
    EXPECT_EQ(run[2], GlyphIDClassPair(FS_NO_GLYPH, GlyphClassDef::Ignored));
    EXPECT_EQ(&call.runOf(positions), &run);
}

} // namespace
} // namespace KWFontService_NS
