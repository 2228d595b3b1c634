#include "cff/CharStringFlatten.h"

#include "cff/CharStringFixture.h"

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr int k0 = 139 + subrNumber(0);
constexpr int k1 = 139 + subrNumber(1);

struct Flat {
    CharStringTokens tokens;
    FlatCounts counts;

    explicit Flat(const Bytes& charString, const Subrs& subrs = Subrs(),
                  std::size_t allowed = 1 << 20) {
        CharStringBudget budget(allowed);
        flattenCharString(viewOf(charString), subrs, tokens, counts, budget);
    }
    std::string text() const { return textOf(tokens); }
};

TEST(FlattenCharString, SubrsStandInTheirPlaces) {
    const Subrs subrs({{141, 22, 11}}, {{143, k0, 29, 144, 11}});
    EXPECT_EQ(Flat({140, k0, 10, 145, 21, 14}, subrs).text(), "1 4 2 hmoveto 5 6 rmoveto endchar");
}

TEST(FlattenCharString, NumbersOfFormTwoFiveFiveAreReals) {
    EXPECT_EQ(Flat({255, 0, 1, 0x80, 0, 22}).text(), "1.5 hmoveto");
    EXPECT_EQ(Flat({255, 0xFF, 0xFF, 0x80, 0, 22}).text(), "-0.5 hmoveto");
    EXPECT_TRUE(Flat({255, 0, 1, 0, 0, 22}).tokens[0].isReal());
}

TEST(FlattenCharString, MaskBytesFollowTheirNumber) {
    EXPECT_EQ(Flat({140, 140, 18, 140, 140, 19, 0xC0, 20, 0x80, 14}).text(),
              "1 1 hstemhm 1 1 hintmask 1 192 cntrmask 1 128 endchar");
    // Nine stems, of either direction.
    for (const auto& [op, name] : {std::pair{18, "hstemhm"}, {23, "vstemhm"}}) {
        const Flat flat(Bytes().fill(18, 139).u8(op).u8(19).u8(1).u8(2).u8(14));
        EXPECT_EQ(flat.text().substr(36), name + std::string(" hintmask 2 1 2 endchar"));
    }
}

TEST(FlattenCharString, StemsAreCountedByTheirDirection) {
    const Flat flat({140, 140, 140, 1, 140, 140, 140, 140, 3, 140, 140, 19, 0});
    EXPECT_EQ(flat.counts.hstems, 1);
    EXPECT_EQ(flat.counts.vstems, 3);
    EXPECT_EQ(flat.counts.operands, 0);
    const Flat hm({140, 140, 18, 140, 140, 23, 140});
    EXPECT_EQ(hm.counts.hstems, 1);
    EXPECT_EQ(hm.counts.vstems, 1);
    EXPECT_EQ(hm.counts.operands, 1);
}

TEST(FlattenCharString, StemsOfASubrCountForTheMaskOfItsCaller) {
    const Subrs subrs({}, {Bytes().fill(18, 139).u8(18).u8(11)});
    const Flat flat({k0, 10, 19, 14, 14, 22}, subrs);
    EXPECT_EQ(flat.text().substr(36), "hstemhm hintmask 2 14 14 hmoveto");
}

TEST(FlattenCharString, ArithmeticIsDoneAtOnce) {
    EXPECT_EQ(Flat({140, 141, 12, 10, 22, 14}).text(), "3 hmoveto endchar");
    EXPECT_EQ(Flat({145, 140, 12, 20, 140, 12, 21, 22}).text(), "6 hmoveto");
    // The result is an operand: one stem, whose mask has one byte.
    EXPECT_EQ(Flat({140, 141, 142, 12, 10, 1, 19, 14, 22}).text(),
              "1 5 hstem hintmask 1 14 hmoveto");
    // Operands of the operator before are not touched.
    EXPECT_EQ(Flat({140, 22, 12, 18, 141, 22}).text(), "1 hmoveto 2 hmoveto");
}

TEST(FlattenCharString, ASubrMayCalculateTheNumberOfAnother) {
    const Subrs subrs({}, {{139 + subrNumber(0), 140, 12, 10, 11}, {150, 22, 11}});
    EXPECT_EQ(Flat({k0, 10, 10, 14}, subrs).text(), "11 hmoveto endchar");
}

TEST(FlattenCharString, WhatType1LacksStays) {
    EXPECT_EQ(Flat({12, 23, 12, 8, 12, 13, 16, 2, 12, 0}).text(),
              "random store load blend <> dotsection");
}

TEST(FlattenCharString, EndcharOfASubrEndsTheGlyph) {
    const Subrs subrs({}, {{140, 22, 14}});
    EXPECT_EQ(Flat({k0, 10, 141, 22, 14}, subrs).text(), "1 hmoveto endchar");
}

TEST(FlattenCharString, CallsThatLeadNowhereAreLeftOut) {
    EXPECT_EQ(Flat({10, 140, 10, 29, 141, 22}).text(), "2 hmoveto");
    EXPECT_EQ(Flat({140, 22, 10, 141, 22}).text(), "1 hmoveto 2 hmoveto");
}

TEST(FlattenCharString, ItGoesOnBehindWhatIsThere) {
    Flat flat({140, 140});
    EXPECT_EQ(flat.counts.operands, 2);
    CharStringBudget budget(100);
    const Subrs subrs;
    const Bytes more{12, 10, 22};
    flattenCharString(viewOf(more), subrs, flat.tokens, flat.counts, budget);
    EXPECT_EQ(flat.text(), "2 hmoveto");
}

TEST(FlattenCharString, TheBudgetEndsSubrsThatCallEachOther) {
    const Subrs subrs({}, {{140, 22, k0, 10, k0, 10, 11}, {k1, 10, 11}});
    EXPECT_LE(Flat({k0, 10, 14}, subrs, 70000).tokens.size(), 20001U);
    EXPECT_EQ(Flat({k1, 10, 14}, subrs).text(), "endchar");
}

} // namespace
} // namespace KWFontService_NS
