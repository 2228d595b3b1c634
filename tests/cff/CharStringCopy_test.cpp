#include "cff/CharStringCopy.h"

#include "cff/CharStringFixture.h"

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr std::size_t kPlenty = 1 << 20;
constexpr int k0 = 139 + subrNumber(0);
constexpr int k1 = 139 + subrNumber(1);

Bytes copyOf(const Bytes& charString, const Subrs& subrs, const SubrNumbers& globals,
             const SubrNumbers& locals, CharStringCounts counts = {}) {
    CharStringBudget budget(kPlenty);
    SubrWalker walker(subrs, budget);
    KWCommonNS::KWMemStream output;
    copyCharString(output, viewOf(charString), walker, globals, locals, counts);
    return Bytes::ofText({output.data(), output.size()});
}

TEST(CopyCharString, WithoutCallsIsByteForByte) {
    const Bytes all{255, 0,  1,  2, 3,   28,  0,  1,  247, 0, 21, 12,
                    10,  12, 99, 2, 139, 139, 18, 19, 10,  5, 14, 7};
    EXPECT_EQ(copyOf(all, Subrs(), {{0, 9}}, {{0, 9}}), all);
    EXPECT_EQ(copyOf({}, Subrs(), {}, {}), Bytes());
}

TEST(CopyCharString, OperandsOfCallsAreReplaced) {
    const Subrs subrs({{11}, {11}}, {{11}});
    EXPECT_EQ(copyOf({140, k0, 10, k1, 29, 14}, subrs, {{-106, -107}}, {{-107, 1000}}),
              (Bytes{140, 250, 124, 10, k0, 29, 14}));
    // Numbers of any form, in the shortest form.
    EXPECT_EQ(copyOf({28, 0xFF, 0x95, 10, 255, 0xFF, 0xFF, 0xFF, 0x95, 29}, subrs, {{-107, -32768}},
                     {{-107, 0}}),
              (Bytes{139, 10, 28, 0x80, 0, 29}));
}

TEST(CopyCharString, OperandsThatTheMapLacksStay) {
    const Bytes charString{28, 0, 5, 10, k0, 29, 14};
    EXPECT_EQ(copyOf(charString, Subrs(), {{5, 6}}, {{-107, 6}}), charString);
}

TEST(CopyCharString, NumbersBehindACallAreNoOperands) {
    EXPECT_EQ(copyOf({140, 10, 140, 140, 140, 5, 14}, Subrs(), {}, {{1, 2}}),
              (Bytes{141, 10, 140, 140, 140, 5, 14}));
}

TEST(CopyCharString, ASubrBeyondTheIndexIsReplacedWhereTheMapHasIt) {
    EXPECT_EQ(copyOf({140, 10, 14}, Subrs(), {}, {{1, 2}}), (Bytes{141, 10, 14}));
}

TEST(CopyCharString, OnlyANumberRightBeforeItsCallIsAnOperand) {
    const Bytes charString{140, 141, 12, 10, 10, 14};
    EXPECT_EQ(copyOf(charString, Subrs(), {}, {{1, 9}, {2, 9}, {3, 9}}), charString);
}

TEST(CopyCharString, StemsOfASubrCountForTheMaskBehindIt) {
    // Nine stems: the mask has two bytes, the second of which looks like the start of a number.
    const Subrs subrs({}, {Bytes().fill(18, 139).u8(18).u8(11)});
    EXPECT_EQ(copyOf({k0, 10, 19, 0, 28, k0, 10, 14}, subrs, {}, {{-107, 0}}),
              (Bytes{139, 10, 19, 0, 28, 139, 10, 14}));
}

TEST(CopyCharString, ASubrStartsWithTheStemsThatItIsEnteredWith) {
    const Bytes subr{19, k0, 10, k0, 10, 11};
    const Subrs subrs({}, {{11}});
    EXPECT_EQ(copyOf(subr, subrs, {}, {{-107, 0}}, {0, 9}), (Bytes{19, k0, 10, 139, 10, 11}));
    EXPECT_EQ(copyOf(subr, subrs, {}, {{-107, 0}}, {0, 8}), (Bytes{19, k0, 10, 139, 10, 11}));
    EXPECT_EQ(copyOf({19, 139, k0, 10, 11}, subrs, {}, {{-107, 0}}, {0, 8}),
              (Bytes{19, 139, 139, 10, 11}));
    EXPECT_EQ(copyOf({19, 139, k0, 10, 11}, subrs, {}, {{-107, 0}}, {0, 9}),
              (Bytes{19, 139, k0, 10, 11}));
}

TEST(CopyCharString, WhatIsCutOffIsCopied) {
    for (const Bytes& charString : {Bytes{140, 28, 1}, Bytes{140, 12}, Bytes{139, 139, 1, 19}})
        EXPECT_EQ(copyOf(charString, Subrs(), {}, {}), charString);
}

} // namespace
} // namespace KWFontService_NS
