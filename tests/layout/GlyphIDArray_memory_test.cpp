#include <KWFontService17/GlyphIDArray2.h>
#include <KWFontService17/GlyphIDPosition.h>

#include "support/CountingNew.h"

#include <gtest/gtest.h>

#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::allocationsOf;

// Of static life, so that no compiler leaves an allocation out.
GlyphIDArray g_run;
GlyphIDArray2 g_run2;

TEST(GlyphRunMemory, AnEmptyRunAllocatesNothing) {
    EXPECT_EQ(allocationsOf([] { g_run = GlyphIDArray(); }), 0U);
    EXPECT_EQ(allocationsOf([] { g_run = GlyphIDArray(0); }), 0U);
    EXPECT_EQ(allocationsOf([] { g_run = GlyphIDArray(-5); }), 0U);
    EXPECT_EQ(allocationsOf([] { g_run2 = GlyphIDArray2(0); }), 0U);
    EXPECT_EQ(allocationsOf([] { g_run = GlyphIDArray(1); }), 1U);
    EXPECT_EQ(allocationsOf([] { g_run2 = GlyphIDArray2(100); }), 2U);
}

TEST(GlyphRunMemory, ReadingGlyphsAllocatesOnceAndThenNoMore) {
    const std::vector<GlyphIDPosition> positions(10'000);
    g_run = GlyphIDArray();
    EXPECT_EQ(allocationsOf([&] { g_run.readGIDs(positions, true); }), 1U);
    EXPECT_EQ(allocationsOf([&] { g_run.readGIDs(positions, true); }), 0U);
    g_run2 = GlyphIDArray2(10'000);
    EXPECT_EQ(allocationsOf([&] { g_run2.readGIDs(positions, true); }), 0U);
}

TEST(GlyphRunMemory, AClearedRunGrowsAgainInTheMemoryItHas) {
    g_run2 = GlyphIDArray2(1000);
    EXPECT_EQ(allocationsOf([] {
                  g_run2.clear();
                  for (int i = 0; i < 1000; ++i)
                      g_run2.push_back(1, GlyphClassDef::Base);
                  g_run2.words().resize(1000);
              }),
              0U);
}

} // namespace
} // namespace KWFontService_NS
