#include "layout/GlyphDigest.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

int held(const GlyphDigest& digest) {
    int count = 0;
    for (int gid = 0; gid <= 0xFFFF; ++gid)
        count += digest.mayHold(static_cast<unsigned short>(gid)) ? 1 : 0;
    return count;
}

TEST(GlyphDigest, HoldsNothingAtFirst) {
    EXPECT_EQ(held(GlyphDigest()), 0);
    EXPECT_EQ(held(GlyphDigest(100, 5000)), 0);
}

TEST(GlyphDigest, EverythingIsEveryGlyph) {
    EXPECT_EQ(held(GlyphDigest::everything()), 0x10000);
}

TEST(GlyphDigest, ASpanOf64GlyphsIsExact) {
    GlyphDigest digest(1000, 1063);
    digest.add(1000, 1000);
    digest.add(1010, 1012);
    digest.add(1063, 1063);
    EXPECT_EQ(held(digest), 5);
    for (const int gid : {1000, 1010, 1011, 1012, 1063})
        EXPECT_TRUE(digest.mayHold(static_cast<unsigned short>(gid))) << gid;
}

TEST(GlyphDigest, HoldsWhatWasAddedAtEverySpan) {
    for (const int last : {1, 63, 64, 65, 127, 128, 4095, 0x7FFF, 0xFFFE}) {
        const auto end = static_cast<std::uint16_t>(last);
        GlyphDigest digest(0, end);
        digest.add(0, 0);
        digest.add(end, end);
        EXPECT_TRUE(digest.mayHold(0)) << last;
        EXPECT_TRUE(digest.mayHold(end)) << last;
        EXPECT_LE(held(digest), 2 * (last / 64 * 2 + 1)) << "two buckets";
        GlyphDigest all(0, end);
        all.add(0, end);
        EXPECT_GE(held(all), last + 1);
    }
}

TEST(GlyphDigest, OfAWideBucketOnlyGlyphsWithTheLowBitsOfOneInTheSetAreHeld) {
    GlyphDigest digest(0, 0x7FFF);
    digest.add(0, 0);
    digest.add(0x7FFF, 0x7FFF);
    // Two buckets of 512 glyphs, and of 64 glyphs in each the first and the last.
    EXPECT_EQ(held(digest), 2 * 512 / 64 * 2);
    EXPECT_TRUE(digest.mayHold(64));
    EXPECT_FALSE(digest.mayHold(1));
}

TEST(GlyphDigest, AGlyphBeforeTheFirstIsNotHeld) {
    GlyphDigest digest(0xFFF0, 0xFFFF);
    digest.add(0xFFF0, 0xFFFF);
    EXPECT_EQ(held(digest), 16);
}

TEST(GlyphDigest, AUnionHoldsWhatAnyOfItsPartsHolds) {
    GlyphDigest narrow(10, 12);
    narrow.add(10, 10);
    GlyphDigest wide(5000, 0xFFFF);
    wide.add(60000, 0xFFFF);
    const std::array parts{narrow, GlyphDigest(), wide};
    const GlyphDigest all = GlyphDigest::unionOf(parts);
    for (int i = 0; i <= 0xFFFF; ++i) {
        const auto gid = static_cast<unsigned short>(i);
        if (narrow.mayHold(gid) || wide.mayHold(gid)) {
            ASSERT_TRUE(all.mayHold(gid)) << gid;
        }
    }
    EXPECT_FALSE(all.mayHold(30000));
    EXPECT_FALSE(all.mayHold(0));
    EXPECT_EQ(held(GlyphDigest::unionOf({})), 0);
    EXPECT_EQ(held(GlyphDigest::unionOf(std::array{narrow})), 1) << "one alone stays as it is";
}

} // namespace
} // namespace KWFontService_NS
