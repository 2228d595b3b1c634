#include <KWFontService17/GlyphIDClassPair.h>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <type_traits>

namespace KWFontService_NS {
namespace {

using Halves = std::array<std::uint16_t, 2>;

std::uint32_t wordOf(const GlyphIDClassPair& pair) {
    const auto halves = std::bit_cast<Halves>(pair);
    return static_cast<std::uint32_t>(halves[1]) << 16 | halves[0];
}

static_assert(std::is_trivially_copyable_v<GlyphIDClassPair>, "copied as one word");
static_assert(std::is_standard_layout_v<GlyphIDClassPair>);

TEST(GlyphIDClassPair, BeginsWithoutAGlyphAndWithoutAClass) {
    constexpr GlyphIDClassPair pair;
    EXPECT_EQ(pair.getGlyphID(), 0xFFFF);
    EXPECT_EQ(pair.getGlyphClassDef(), GlyphClassDef::Unknown);
    EXPECT_FALSE(pair.hasGlyph());
    EXPECT_EQ(wordOf(pair), 0xFFFFFFFFU);
}

TEST(GlyphIDClassPair, HoldsTheGlyphInItsFirstHalfAndTheClassInItsSecond) {
    const GlyphIDClassPair pair(0x1234, GlyphClassDef::Mark);
    EXPECT_EQ(pair.getGlyphID(), 0x1234);
    EXPECT_EQ(pair.getGlyphClassDef(), GlyphClassDef::Mark);
    EXPECT_EQ(wordOf(pair), 0x00031234U);
}

TEST(GlyphIDClassPair, NumbersOfTheClasses) {
    EXPECT_EQ(static_cast<int>(GlyphClassDef::Ignored), -2);
    EXPECT_EQ(static_cast<int>(GlyphClassDef::Unknown), -1);
    EXPECT_EQ(static_cast<int>(GlyphClassDef::None), 0);
    EXPECT_EQ(static_cast<int>(GlyphClassDef::Base), 1);
    EXPECT_EQ(static_cast<int>(GlyphClassDef::Ligature), 2);
    EXPECT_EQ(static_cast<int>(GlyphClassDef::Mark), 3);
    EXPECT_EQ(static_cast<int>(GlyphClassDef::Component), 4);
}

TEST(GlyphIDClassPair, ReadsAClassBackWithItsSign) {
    for (const int number : {-32768, -2, -1, 0, 4, 32767}) {
        const GlyphIDClassPair pair(1, static_cast<GlyphClassDef>(number));
        EXPECT_EQ(static_cast<int>(pair.getGlyphClassDef()), number);
    }
}

TEST(GlyphIDClassPair, ClearLeavesNoGlyphOfClassMinus1) {
    GlyphIDClassPair pair(7, GlyphClassDef::Base);
    pair.clear();
    EXPECT_EQ(wordOf(pair), 0xFFFFFFFFU);
    EXPECT_EQ(pair, GlyphIDClassPair());
}

TEST(GlyphIDClassPair, IgnoreLeavesNoGlyphOfClassMinus2) {
    GlyphIDClassPair pair(7, GlyphClassDef::Base);
    pair.ignore();
    EXPECT_EQ(wordOf(pair), 0xFFFEFFFFU);
    EXPECT_EQ(pair.getGlyphClassDef(), GlyphClassDef::Ignored);
    EXPECT_FALSE(pair.hasGlyph());
}

TEST(GlyphIDClassPair, HasAGlyphByItsIdAlone) {
    EXPECT_TRUE(GlyphIDClassPair(0, GlyphClassDef::Unknown).hasGlyph()) << "glyph 0 is a glyph";
    EXPECT_TRUE(GlyphIDClassPair(0xFFFE, GlyphClassDef::Ignored).hasGlyph());
    EXPECT_FALSE(GlyphIDClassPair(0xFFFF, GlyphClassDef::Base).hasGlyph());
}

TEST(GlyphIDClassPair, SetsEachHalfAlone) {
    GlyphIDClassPair pair;
    pair.setGlyphID(9);
    EXPECT_EQ(pair, GlyphIDClassPair(9, GlyphClassDef::Unknown));
    pair.setGlyphClassDef(GlyphClassDef::Ligature);
    EXPECT_EQ(pair, GlyphIDClassPair(9, GlyphClassDef::Ligature));
    EXPECT_NE(pair, GlyphIDClassPair(9, GlyphClassDef::Mark));
    EXPECT_NE(pair, GlyphIDClassPair(8, GlyphClassDef::Ligature));
}

} // namespace
} // namespace KWFontService_NS
