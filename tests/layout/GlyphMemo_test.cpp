#include "layout/GlyphMemo.h"

#include "layout/GposFixture.h"
#include "layout/TTI_ClassDef.h"
#include "layout/TTI_Coverage.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <thread>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Kind = GlyphMemo::Kind;

constexpr std::uint8_t kPlaces[2] = {};

TEST(GlyphMemo, AsksOnceForAGlyphAtAPlace) {
    GlyphMemo memo(GlyphMemo::newTableNumber());
    int asked = 0;
    const auto search = [&asked] { return ++asked; };
    EXPECT_EQ(memo.answer(Kind::Coverage, kPlaces, 5, search), 1);
    EXPECT_EQ(memo.answer(Kind::Coverage, kPlaces, 5, search), 1);
    EXPECT_EQ(memo.answer(Kind::Coverage, kPlaces, 6, search), 2) << "another glyph";
    EXPECT_EQ(memo.answer(Kind::Coverage, kPlaces + 1, 5, search), 3) << "another place";
}

TEST(GlyphMemo, KnowsWhatItRememberedInAnEarlierCallAboutTheSameTable) {
    const std::uint32_t number = GlyphMemo::newTableNumber();
    EXPECT_EQ(GlyphMemo(number).answer(Kind::Coverage, kPlaces, 5, [] { return 1; }), 1);
    EXPECT_EQ(GlyphMemo(number).answer(Kind::Coverage, kPlaces, 5, [] { return 2; }), 1);
}

TEST(GlyphMemo, ATableAtThePlaceOfOneThatIsGoneIsAnother) {
    GlyphMemo before(GlyphMemo::newTableNumber());
    GlyphMemo after(GlyphMemo::newTableNumber());
    EXPECT_EQ(before.answer(Kind::Coverage, kPlaces, 5, [] { return 1; }), 1);
    EXPECT_EQ(after.answer(Kind::Coverage, kPlaces, 5, [] { return 2; }), 2);
    EXPECT_EQ(after.answer(Kind::ClassDef, kPlaces, 5, [] { return 3; }), 3);
    EXPECT_EQ(before.answer(Kind::ClassDef, kPlaces, 5, [] { return 4; }), 4);
}

TEST(GlyphMemo, WithoutATableItRemembersNothing) {
    GlyphMemo memo;
    int asked = 0;
    const auto search = [&asked] { return ++asked; };
    memo.answer(Kind::Coverage, kPlaces, 5, search);
    EXPECT_EQ(memo.answer(Kind::Coverage, kPlaces, 5, search), 2);
    EXPECT_FALSE(memo.remembers());
}

TEST(GlyphMemo, ASearchThatIsGivenUpIsNotRemembered) {
    GlyphMemo memo(GlyphMemo::newTableNumber());
    const auto givenUp = []() -> std::optional<int> { return std::nullopt; };
    EXPECT_EQ(memo.answerIfAny(Kind::LookupStart, kPlaces, 5, givenUp), std::nullopt);
    EXPECT_EQ(memo.answerIfAny(Kind::LookupStart, kPlaces, 5, [] { return std::optional(1); }), 1);
    EXPECT_EQ(memo.answerIfAny(Kind::LookupStart, kPlaces, 5, givenUp), 1);
    EXPECT_EQ(memo.answer(Kind::LookupStart, kPlaces, 5, [] { return 2; }), 1);
    EXPECT_EQ(GlyphMemo().answerIfAny(Kind::LookupStart, kPlaces, 5, givenUp), std::nullopt);
}

TEST(GlyphMemo, ManyAnswersDriveEachOtherOutAndNoneIsMixedUp) {
    const std::array<std::uint8_t, 64> places{};
    GlyphMemo memo(GlyphMemo::newTableNumber());
    for (int round = 0; round < 2; ++round) {
        for (std::size_t place = 0; place < places.size(); ++place) {
            for (int gid = 0; gid < 500; ++gid) {
                const int wanted = static_cast<int>(place) * 1000 + gid;
                ASSERT_EQ(memo.answer(Kind::Coverage, &places[place],
                                      static_cast<unsigned short>(gid), [&] { return wanted; }),
                          wanted);
            }
        }
    }
}

TEST(GlyphMemo, ThreadsRememberApart) {
    const std::uint8_t place = 0;
    const std::uint32_t number = GlyphMemo::newTableNumber();
    EXPECT_EQ(GlyphMemo(number).answer(Kind::Coverage, &place, 7, [] { return 1; }), 1);
    int elsewhere = 0;
    std::thread([&] {
        elsewhere = GlyphMemo(number).answer(Kind::Coverage, &place, 7, [] { return 2; });
    }).join();
    EXPECT_EQ(elsewhere, 2);
    EXPECT_EQ(GlyphMemo(number).answer(Kind::Coverage, &place, 7, [] { return 3; }), 1);
}

// Both have the same layout in format 2, and a writer that stores equal bytes once may share them.
TEST(GlyphMemo, ACoverageAndAClassDefinitionMayBeOneTable) {
    const Bytes bytes = Bytes().u16(2).bytes(Bytes().u16(2).u16(1).u16s({10, 20, 7}));
    const KWCommonNS::ByteView base = viewOf(bytes);
    for (const bool coverageFirst : {false, true}) {
        GlyphMemo memo(GlyphMemo::newTableNumber());
        if (coverageFirst) {
            EXPECT_EQ(coverageIndexIn(base.from(2), 12, &memo), 9);
        }
        EXPECT_EQ(classByDefinition(base, 0, 12, &memo), 7);
        EXPECT_EQ(coverageIndexIn(base.from(2), 12, &memo), 9);
    }
}

} // namespace
} // namespace KWFontService_NS
