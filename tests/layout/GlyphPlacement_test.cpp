#include "layout/GlyphPlacement.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>

namespace KWFontService_NS {
namespace {

constexpr int kAbsent = GlyphPlacement::kAbsent;
constexpr int kHighest = 2147483647;

struct Moves {
    int x1;
    int x2;
    int y;
    int y2;

    friend bool operator==(const Moves&, const Moves&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Moves& moves) {
        return out << "X1 " << moves.x1 << " X2 " << moves.x2 << " Y " << moves.y << " Y2 "
                   << moves.y2;
    }
};

Moves movesOf(const GlyphIDPosition& glyph) {
    return {glyph.getMoveX1(), glyph.getMoveX2(), glyph.getMoveY(), glyph.getMoveY2()};
}

/// Width 600 and moves 10, 500, 3, 4.
GlyphIDPosition movedGlyph(int flags = 0) {
    GlyphIDPosition glyph(1, 600);
    glyph.setGlyphID(5, GlyphClassDef::Base);
    glyph.setMoveX1(10);
    glyph.setMoveX2(500);
    glyph.setMoveY(3);
    glyph.setMoveY2(4);
    glyph.setFlag(static_cast<unsigned short>(flags));
    return glyph;
}

Moves afterValue(GlyphIDPosition glyph, int x1, int y, int x2, int y2) {
    GlyphPlacement::addValue(glyph, x1, y, x2, y2);
    return movesOf(glyph);
}

Moves afterAttach(GlyphIDPosition glyph, int x1, int y, int x2 = kAbsent, int y2 = kAbsent) {
    GlyphPlacement::attach(glyph, x1, y, x2, y2);
    return movesOf(glyph);
}

TEST(GlyphPlacement, AbsentIsTheLowestInteger) {
    EXPECT_EQ(static_cast<unsigned int>(kAbsent), 0x80000000U);
}

TEST(GlyphPlacement, AValueAddsEachAmountThatIsPresent) {
    const GlyphIDPosition glyph = movedGlyph();
    EXPECT_EQ(afterValue(glyph, kAbsent, kAbsent, kAbsent, kAbsent), movesOf(glyph));
    EXPECT_EQ(afterValue(glyph, 30, kAbsent, kAbsent, kAbsent), (Moves{40, 470, 3, 4}))
        << "the pen after the glyph stays";
    EXPECT_EQ(afterValue(glyph, kAbsent, 7, kAbsent, kAbsent), (Moves{10, 500, 10, 4}));
    EXPECT_EQ(afterValue(glyph, kAbsent, kAbsent, -50, kAbsent), (Moves{10, 450, 3, 4}));
    EXPECT_EQ(afterValue(glyph, kAbsent, kAbsent, kAbsent, -6), (Moves{10, 500, 3, -2}));
    EXPECT_EQ(afterValue(glyph, 30, 7, -50, -6), (Moves{40, 420, 10, -2}));
    EXPECT_EQ(afterValue(glyph, 0, 0, 0, 0), movesOf(glyph));
}

TEST(GlyphPlacement, AValueAddsInStrictModeAsWell) {
    EXPECT_EQ(afterValue(movedGlyph(GLYPH_FLAG_LOOKUP_SKIP), 30, 7, -50, -6),
              (Moves{40, 420, 10, -2}));
}

TEST(GlyphPlacement, AnAttachmentWithoutStrictModeIsAValue) {
    EXPECT_EQ(afterAttach(movedGlyph(), 30, 7), (Moves{40, 470, 10, 4}));
    EXPECT_EQ(afterAttach(movedGlyph(), 30, 7, -50, -6), (Moves{40, 420, 10, -2}));
    for (const int other : {0x1000, 0x2000, 0x4000, 0x7FFD})
        EXPECT_EQ(afterAttach(movedGlyph(other), 30, 7), (Moves{40, 470, 10, 4})) << other;
}

TEST(GlyphPlacement, AnAttachmentInStrictModeStores) {
    const GlyphIDPosition glyph = movedGlyph(GLYPH_FLAG_LOOKUP_SKIP);
    EXPECT_EQ(afterAttach(glyph, kAbsent, kAbsent), movesOf(glyph));
    EXPECT_EQ(afterAttach(glyph, 30, kAbsent), (Moves{30, 480, 3, 4}))
        << "the pen after the glyph stays";
    EXPECT_EQ(afterAttach(glyph, kAbsent, 7), (Moves{10, 500, 7, 4}));
    EXPECT_EQ(afterAttach(glyph, 30, 7), (Moves{30, 480, 7, 4}));
    EXPECT_EQ(afterAttach(glyph, 0, 0), (Moves{0, 510, 0, 4})) << "0 is present";
}

TEST(GlyphPlacement, AStrictAttachmentWithAnAdvanceStartsFromTheWidth) {
    const GlyphIDPosition glyph = movedGlyph(GLYPH_FLAG_LOOKUP_SKIP);
    EXPECT_EQ(afterAttach(glyph, 30, kAbsent, 25), (Moves{30, 600 - 30 + 25, 3, 4}));
    EXPECT_EQ(afterAttach(glyph, kAbsent, kAbsent, 25), (Moves{10, 600 - 10 + 25, 3, 4}));
    EXPECT_EQ(afterAttach(glyph, kAbsent, kAbsent, 0), (Moves{10, 590, 3, 4}));
}

// Only the placement of an attachment counts there.
TEST(GlyphPlacement, AStrictAttachmentIgnoresTheVerticalAdvance) {
    EXPECT_EQ(afterAttach(movedGlyph(GLYPH_FLAG_LOOKUP_SKIP), 30, 7, kAbsent, 99).y2, 4);
}

TEST(GlyphPlacement, AStrictAttachmentTwiceIsAsOnce) {
    GlyphIDPosition glyph = movedGlyph(GLYPH_FLAG_LOOKUP_SKIP);
    GlyphPlacement::attach(glyph, 30, 7);
    const GlyphIDPosition once = glyph;
    GlyphPlacement::attach(glyph, 30, 7);
    EXPECT_EQ(glyph, once);
}

TEST(GlyphPlacement, PositionsFromOutsideAreTakenBackFirst) {
    const GlyphIDPosition glyph = movedGlyph(GLYPH_FLAG_OUTSIDE_GPOS);
    EXPECT_EQ(afterValue(glyph, kAbsent, 50, kAbsent, kAbsent), (Moves{0, 600, 50, 0}))
        << "a lone y as well";
    EXPECT_EQ(afterValue(glyph, 30, 7, -50, -6), (Moves{30, 520, 7, -6}));
    EXPECT_EQ(afterAttach(glyph, 30, 7), (Moves{30, 570, 7, 0}));
    EXPECT_EQ(afterValue(glyph, kAbsent, kAbsent, kAbsent, kAbsent), (Moves{0, 600, 0, 0}));
    EXPECT_EQ(afterAttach(glyph, kAbsent, kAbsent), (Moves{0, 600, 0, 0}));

    const GlyphIDPosition strict = movedGlyph(GLYPH_FLAG_OUTSIDE_GPOS | GLYPH_FLAG_LOOKUP_SKIP);
    EXPECT_EQ(afterAttach(strict, 30, kAbsent), (Moves{30, 570, 0, 0}));
    EXPECT_EQ(afterAttach(strict, kAbsent, 7), (Moves{0, 600, 7, 0}));
}

TEST(GlyphPlacement, TakingBackClearsThatFlagAndNoOther) {
    GlyphIDPosition glyph = movedGlyph(0xFFFF);
    GlyphPlacement::addValue(glyph, 1, 1, 1, 1);
    EXPECT_EQ(glyph.getFlag(), 0xFFFD);
    EXPECT_EQ(glyph.getWidth(), 600);
    EXPECT_EQ(glyph.getGlyphIDClassPair(), GlyphIDClassPair(5, GlyphClassDef::Base));
    EXPECT_EQ(glyph.getCorrespondLength(), 1);
    const Moves before = movesOf(glyph);
    GlyphPlacement::addValue(glyph, kAbsent, kAbsent, kAbsent, kAbsent);
    EXPECT_EQ(movesOf(glyph), before) << "it is taken back once";

    glyph = movedGlyph(0xFFFF);
    GlyphPlacement::attach(glyph, 1, 1);
    EXPECT_EQ(glyph.getFlag(), 0xFFFD);
}

TEST(GlyphPlacement, SumsKeepTheirLow16Bits) {
    GlyphIDPosition glyph(1, 32767);
    EXPECT_EQ(afterValue(glyph, -1, 40000, kAbsent, 65536), (Moves{-1, -32768, -25536, 0}));
    EXPECT_EQ(afterValue(glyph, 65536, 0, 65537, 0), (Moves{0, -32768, 0, 0}));
    glyph.setFlag(GLYPH_FLAG_LOOKUP_SKIP);
    EXPECT_EQ(afterAttach(glyph, -1, 40000), (Moves{-1, -32768, -25536, 0}));
    EXPECT_EQ(afterAttach(glyph, 0, 0, 1), (Moves{0, -32768, 0, 0}));
}

TEST(GlyphPlacement, NoAmountOverflows) {
    const std::array<int, 7> amounts = {kAbsent, kAbsent + 1,  -65536,  0,
                                        65535,   kHighest - 1, kHighest};
    for (const int flags : {0x0000, 0x0002, 0x8000, 0x8002}) {
        for (const int x : amounts) {
            for (const int advance : amounts) {
                const GlyphIDPosition glyph = movedGlyph(flags);
                const Moves value = afterValue(glyph, x, x, advance, advance);
                const Moves start = (flags & GLYPH_FLAG_OUTSIDE_GPOS) != 0 ? Moves{0, 600, 0, 0}
                                                                           : Moves{10, 500, 3, 4};
                const auto sum = [](int a, int b) {
                    return static_cast<int>(
                        static_cast<short>((a + static_cast<long long>(b)) & 0xFFFF));
                };
                const int x1 = x == kAbsent ? 0 : x;
                const int x2 = advance == kAbsent ? 0 : advance;
                const int y2 = advance == kAbsent ? 0 : advance;
                EXPECT_EQ(value, (Moves{sum(start.x1, x1), sum(sum(start.x2, -x1), x2),
                                        sum(start.y, x1), sum(start.y2, y2)}))
                    << x << ' ' << advance;
                const Moves attached = afterAttach(glyph, x, x, advance, advance);
                if ((flags & GLYPH_FLAG_LOOKUP_SKIP) == 0) {
                    EXPECT_EQ(attached, value);
                } else {
                    const int newX1 = x == kAbsent ? start.x1 : sum(x, 0);
                    const int newX2 = advance == kAbsent ? sum(start.x2, start.x1 - newX1)
                                                         : sum(600 - newX1, advance);
                    const int newY = x == kAbsent ? start.y : sum(x, 0);
                    EXPECT_EQ(attached, (Moves{newX1, newX2, newY, start.y2}));
                }
            }
        }
    }
}

} // namespace
} // namespace KWFontService_NS
