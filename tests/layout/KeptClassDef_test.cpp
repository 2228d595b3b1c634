#include "layout/KeptClassDef.h"

#include "layout/LayoutFixture.h"
#include "layout/TTI_ClassDef.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

#include <utility>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// Every glyph of both, compared.
void expectSame(const Bytes& table) {
    const KeptClassDef kept(viewOf(table));
    const auto read = TTI_ClassDef::read(viewOf(table));
    ASSERT_TRUE(kept);
    ASSERT_TRUE(read);
    for (int gid = 0; gid < 0xFFFF; ++gid) {
        const auto glyph = static_cast<unsigned short>(gid);
        ASSERT_EQ(kept.classOf(glyph), read->classOf(glyph)) << gid;
    }
}

TEST(KeptClassDef, AnswersAsTheTableWhereItsSourceIsGone) {
    KeptClassDef kept;
    {
        const Bytes source = classDefFormat2({{3, 5, 7}, {70, 70, 1}});
        kept = KeptClassDef(viewOf(source));
    }
    const KeptClassDef moved = std::move(kept);
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved.classOf(2), -1);
    EXPECT_EQ(moved.classOf(3), 7);
    EXPECT_EQ(moved.classOf(5), 7);
    EXPECT_EQ(moved.classOf(6), -1);
    EXPECT_EQ(moved.classOf(70), 1);
    EXPECT_EQ(moved.classOf(71), -1);
    EXPECT_EQ(moved.classOf(65000), -1);
}

TEST(KeptClassDef, AnswersAsTheTableForRangesOfAnyLength) {
    Rng rng(7);
    std::vector<ClassRange> ranges;
    for (unsigned int at = rng.below(200); at < 60000;) {
        const unsigned int end = at + rng.below(rng.below(10) == 0 ? 3000 : 4);
        ranges.push_back({static_cast<std::uint16_t>(at), static_cast<std::uint16_t>(end),
                          static_cast<std::uint16_t>(rng.below(5))});
        at = end + 1 + rng.below(300);
    }
    ASSERT_GT(ranges.size(), 50U);
    expectSame(classDefFormat2(ranges));
}

TEST(KeptClassDef, AnswersAsTheTableForRangesOutOfOrder) {
    expectSame(classDefFormat2({{70, 80, 1}, {3, 5, 2}, {90, 100, 3}}));
    expectSame(classDefFormat2({{3, 50, 1}, {10, 20, 2}, {60, 70, 3}}));
    expectSame(classDefFormat2({{9, 3, 1}}));
}

TEST(KeptClassDef, GlyphId0xFFFFHasNoClassWhateverIsListed) {
    const Bytes sorted = classDefFormat2({{0xFFF0, 0xFFFF, 1}});
    EXPECT_EQ(KeptClassDef(viewOf(sorted)).classOf(0xFFFE), 1);
    EXPECT_EQ(KeptClassDef(viewOf(sorted)).classOf(0xFFFF), -1);
    const Bytes unsorted = classDefFormat2({{0xFFF0, 0xFFFF, 1}, {1, 2, 3}});
    EXPECT_EQ(KeptClassDef(viewOf(unsorted)).classOf(0xFFFF), -1);
}

TEST(KeptClassDef, HoldsNothingOfABadTable) {
    const Bytes bad = Bytes().u16(3).u16(0);
    EXPECT_FALSE(KeptClassDef(viewOf(bad)));
    EXPECT_FALSE(KeptClassDef(KWCommonNS::ByteView()));
    EXPECT_EQ(KeptClassDef().classOf(1), -1);
}

TEST(KeptClassDef, OfFormat1DeliberatelyHasNoClasses) {
    const Bytes table = classDefFormat1(1, {1, 2, 3});
    const KeptClassDef kept(viewOf(table));
    EXPECT_TRUE(kept);
    EXPECT_EQ(kept.classOf(1), -1);
}

} // namespace
} // namespace KWFontService_NS
