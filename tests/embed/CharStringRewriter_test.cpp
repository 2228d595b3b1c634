#include "embed/CharStringRewriter.h"

#include "CffOutput.h"
#include "cff/CharStringFlatten.h"
#include "cff/CharStringWalk.h"
#include "common/KWLimits.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

Bytes rewritten(const Bytes& charString, const Subrs& subrs = Subrs()) {
    std::string out;
    CharStringBudget budget(std::size_t{1} << 20);
    makeNewCharString(out, viewOf(charString), subrs, budget);
    return Bytes::ofText(out);
}

TEST(MakeNewCharString, KeepsWhatStandsAloneByteForByte) {
    const Bytes numbers{28, 0, 5, 255, 0, 5, 0, 0, 139, 247, 0, 21};
    EXPECT_EQ(rewritten(joined(numbers, Bytes{14})), joined(numbers, Bytes{14}));
    EXPECT_EQ(rewritten(Bytes()), Bytes());
}

TEST(MakeNewCharString, AppendsToWhatIsThere) {
    std::string out = "x";
    CharStringBudget budget(100);
    const Subrs subrs;
    makeNewCharString(out, viewOf(Bytes{139, 14}), subrs, budget);
    makeNewCharString(out, viewOf(Bytes{140, 141, 12, 10, 22, 14}), subrs, budget);
    EXPECT_EQ(Bytes::ofText(out), (Bytes{'x', 139, 14, 142, 22, 14}));
}

TEST(MakeNewCharString, PutsSubrsInThePlaceOfTheirCalls) {
    const Subrs subrs({Bytes{141, 142, 21, 11}}, {Bytes{140, 22, 11}});
    EXPECT_EQ(rewritten(joined(Bytes{150}, callOf(0), callOf(0, true), Bytes{14}), subrs),
              (Bytes{150, 140, 22, 141, 142, 21, 14}));
}

TEST(MakeNewCharString, PutsSubrsOfSubrsThereToo) {
    const Subrs subrs({joined(Bytes{141}, callOf(1), Bytes{143, 11})},
                      {joined(callOf(0, true), Bytes{22, 11}), Bytes{142, 11}});
    EXPECT_EQ(rewritten(joined(callOf(0), Bytes{14}), subrs), (Bytes{141, 142, 143, 22, 14}));
}

TEST(MakeNewCharString, TakesTheBiasFromTheNumberOfSubrs) {
    std::vector<Bytes> many(1240, Bytes{11});
    many[0] = Bytes{140, 22, 11};
    const Subrs subrs(many, {});
    EXPECT_EQ(
        rewritten(joined(Bytes{28}.u16(static_cast<std::uint16_t>(-1131)), Bytes{29, 14}), subrs),
        (Bytes{140, 22, 14}));
}

TEST(MakeNewCharString, ReturnEndsItsLevel) {
    const Subrs subrs({}, {Bytes{140, 22, 11, 141, 22}});
    EXPECT_EQ(rewritten(joined(callOf(0), Bytes{142, 7, 14}), subrs), (Bytes{140, 22, 142, 7, 14}));
    EXPECT_EQ(rewritten(Bytes{140, 22, 11, 141, 22}), (Bytes{140, 22}));
}

TEST(MakeNewCharString, EndcharInASubrEndsTheGlyph) {
    const Subrs subrs({}, {Bytes{140, 22, 14}});
    EXPECT_EQ(rewritten(joined(callOf(0), Bytes{142, 7, 14}), subrs), (Bytes{140, 22, 14}));
}

TEST(MakeNewCharString, MasksAreAsLongAsTheStemsOfSubrsAsk) {
    // Nine stems, in a subr; a mask byte looks like a call.
    const Subrs subrs({}, {joined(Bytes().fill(18, 139), Bytes{18, 11}), Bytes{140, 22, 11}});
    EXPECT_EQ(
        rewritten(joined(callOf(0), Bytes{19, 10, 29, 150, 150, 1}, callOf(1), Bytes{14}), subrs),
        joined(Bytes().fill(18, 139), Bytes{18, 19, 10, 29, 150, 150, 1, 140, 22, 14}));
}

TEST(MakeNewCharString, AMaskMayStandInASubr) {
    const Subrs subrs({}, {Bytes{139, 139, 19, 0x80, 11}});
    EXPECT_EQ(rewritten(joined(Bytes{139, 139, 18}, callOf(0), Bytes{14}), subrs),
              (Bytes{139, 139, 18, 139, 139, 19, 0x80, 14}));
}

TEST(MakeNewCharString, ArithmeticBecomesItsResult) {
    EXPECT_EQ(rewritten(Bytes{140, 141, 12, 10, 22, 14}), (Bytes{142, 22, 14}));
    EXPECT_EQ(rewritten(Bytes{149, 12, 14, 22, 14}), (Bytes{129, 22, 14})) << "neg";
    EXPECT_EQ(rewritten(Bytes{140, 141, 12, 12, 22, 14}), (Bytes{255, 0, 0, 0x80, 0, 22, 14}))
        << "div";
    EXPECT_EQ(rewritten(Bytes{28, 0x40, 0, 142, 12, 24, 22, 14}),
              (Bytes{255, 0x7F, 0xFF, 0xFF, 0xFF, 22, 14}))
        << "more than there is room for";
    EXPECT_EQ(rewritten(Bytes{28, 0xC0, 0, 142, 12, 24, 22, 14}),
              (Bytes{255, 0x80, 0, 0, 1, 22, 14}));
}

TEST(MakeNewCharString, IndexWithANegativeNumberCopiesTheTop) {
    EXPECT_EQ(rewritten(Bytes{150, 151, 138, 12, 29, 6, 14}), (Bytes{150, 151, 151, 6, 14}));
}

TEST(MakeNewCharString, ACalledNumberMayBeCalculated) {
    const Subrs subrs({}, {Bytes{140, 22, 11}, Bytes{141, 22, 11}});
    EXPECT_EQ(rewritten(joined(Bytes{139 + subrNumber(0), 140, 12, 10, 10, 14}), subrs),
              (Bytes{141, 22, 14}));
}

TEST(MakeNewCharString, ACalledNumberMayComeFromTheCallerOrFromASubr) {
    const Subrs subrs({Bytes{142, 22, 11}}, {Bytes{29, 11}, Bytes{139 + subrNumber(0), 11}});
    EXPECT_EQ(rewritten(joined(Bytes{139 + subrNumber(0)}, callOf(0), Bytes{14}), subrs),
              (Bytes{142, 22, 14}));
    EXPECT_EQ(rewritten(joined(callOf(1), Bytes{29, 14}), subrs), (Bytes{142, 22, 14}));
    // As a number of form 255, which has 65536ths.
    EXPECT_EQ(rewritten(Bytes{255, 0xFF, 0x95, 0, 0, 29, 14}, subrs), (Bytes{142, 22, 14}));
}

TEST(MakeNewCharString, StemsAndMasksStayInStepWithArithmetic) {
    // Two stems of four numbers, of which one is a sum.
    EXPECT_EQ(
        rewritten(Bytes{140, 141, 142, 143, 140, 12, 10, 18, 19, 0xC0, 150, 150, 12, 11, 22, 14}),
        (Bytes{140, 141, 142, 144, 18, 19, 0xC0, 139, 22, 14}));
}

TEST(MakeNewCharString, EveryOperatorKeepsItsByte) {
    for (int op = 1; op < 32; ++op) {
        const FS_Word word = charStringOperator(static_cast<std::uint8_t>(op));
        if (word == FS_Word::none || op == 10 || op == 11 || op == 29)
            continue;
        const bool isMask = op == 19 || op == 20;
        const Bytes tail = isMask ? Bytes{static_cast<int>(op), 0} : Bytes{static_cast<int>(op)};
        // The sum before it has all written anew.
        EXPECT_EQ(rewritten(joined(Bytes{140, 140, 12, 10}, tail)), joined(Bytes{141}, tail)) << op;
    }
    for (const int op : {0, 8, 13, 23, 34, 35, 36, 37})
        EXPECT_EQ(rewritten(joined(Bytes{140, 140, 12, 10}, Bytes{12, op})),
                  joined(Bytes{141}, Bytes{12, op}))
            << op;
    EXPECT_EQ(rewritten(Bytes{140, 140, 12, 10, 2, 14}), (Bytes{141, 0, 14})) << "an unknown one";
}

TEST(MakeNewCharString, CallsOfNothingAreLeftOutWithTheirNumbers) {
    EXPECT_EQ(rewritten(joined(Bytes{150}, callOf(7), callOf(7, true), Bytes{22, 14})),
              (Bytes{150, 22, 14}));
    EXPECT_EQ(rewritten(Bytes{10, 29, 150, 22, 14}), (Bytes{150, 22, 14}));
}

TEST(MakeNewCharString, WhatIsCutOffIsLeftOut) {
    const Subrs subrs({}, {Bytes{140, 22, 28, 1}, Bytes{140, 22, 12}, Bytes{141, 255, 0, 0},
                           Bytes{142, 247}, joined(Bytes{139, 139, 18, 19})});
    EXPECT_EQ(rewritten(joined(callOf(0), callOf(1), Bytes{14}), subrs),
              (Bytes{140, 22, 140, 22, 14}));
    EXPECT_EQ(rewritten(joined(callOf(2), callOf(3), Bytes{21, 14}), subrs),
              (Bytes{141, 142, 21, 14}));
    EXPECT_EQ(rewritten(joined(callOf(4), Bytes{14}), subrs), (Bytes{139, 139, 18, 14}));
}

TEST(MakeNewCharString, SubrsThatCallThemselvesEndAtTheLimit) {
    const Subrs subrs({}, {joined(Bytes{140, 22}, callOf(0), Bytes{11})});
    const Bytes out = rewritten(joined(callOf(0), Bytes{14}), subrs);
    EXPECT_EQ(out.size(), 2u * KWCommonNS::kMaxSubrDepth + 1);
}

TEST(MakeNewCharString, SpendsItsBudgetAndSaysSo) {
    std::vector<Bytes> locals;
    for (int i = 0; i < 12; ++i) {
        Bytes subr{140, 22};
        for (int k = 0; k < 50; ++k)
            subr.bytes(callOf(i + 1));
        locals.push_back(subr.u8(11));
    }
    const Subrs subrs({}, locals);
    for (const Bytes& before : {Bytes(), Bytes{140, 140, 12, 10, 22}}) {
        std::string out;
        CharStringBudget budget(10000);
        makeNewCharString(out, viewOf(joined(before, callOf(0), Bytes{14})), subrs, budget);
        EXPECT_TRUE(budget.isSpent());
        EXPECT_LE(out.size(), 10000u);
    }
}

/// What a charstring draws, as far as tokens tell, with the calls in it carried out.
std::string drawingOf(const Bytes& charString, const Subrs& subrs) {
    CharStringTokens tokens;
    FlatCounts counts;
    CharStringBudget budget(std::size_t{1} << 20);
    flattenCharString(viewOf(charString), subrs, tokens, counts, budget);
    return textOf(tokens);
}

TEST(MakeNewCharString, DrawsWhatTheSourceDrew) {
    Rng random(3);
    const std::vector<int> operators{1, 3, 4, 5, 6, 7, 8, 18, 21, 22, 23, 24, 25, 26, 27, 30, 31};
    const auto charString = [&](int calls) {
        Bytes bytes;
        for (std::uint32_t i = random.below(6) + 1; i > 0; --i) {
            for (std::uint32_t k = random.below(5); k > 0; --k)
                bytes.u8(32 + random.below(223)).u8(32 + random.below(200));
            bytes.u8(139);
            if (random.below(12) == 0)
                bytes.u8(140).u8(12).u8(random.below(2) == 0 ? 10 : 24);
            if (calls > 0 && random.below(3) == 0)
                bytes.bytes(callOf(4 - calls, random.below(2) == 0));
            if (random.below(5) == 0)
                bytes.bytes(Bytes{19, 0x55, 0x55, 0x55, 0x55}); // any length
            else
                bytes.u8(operators[random.below(static_cast<std::uint32_t>(operators.size()))]);
        }
        return bytes;
    };
    int involved = 0;
    for (int round = 0; round < 500; ++round) {
        std::vector<Bytes> globals;
        std::vector<Bytes> locals;
        for (int calls = 4; calls > 0; --calls) {
            globals.push_back(charString(calls - 1).u8(11));
            locals.push_back(charString(calls - 1).u8(11));
        }
        const Subrs subrs(globals, locals);
        const Bytes source = charString(4).u8(14);
        const Bytes made = rewritten(source, subrs);
        const std::string drawing = drawingOf(made, Subrs());
        ASSERT_EQ(drawing, drawingOf(source, subrs)) << round << '\n' << source.hex();
        CharStringTokens tokens;
        CharStringCounts counts;
        CharStringBudget budget(std::size_t{1} << 20);
        walkCharString(viewOf(made), tokens, Subrs(), counts, nullptr, nullptr, budget);
        for (const KWValue& token : tokens) {
            ASSERT_NE(token, KWValue(cffKey(FS_Word::callsubr)));
            ASSERT_NE(token, KWValue(cffKey(FS_Word::callgsubr)));
            ASSERT_NE(token, KWValue(cffKey(FS_Word::return_)));
            ASSERT_NE(token, KWValue(cffKey(FS_Word::add)));
        }
        involved += source.str().find("\x0C") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(involved, 20);
}

} // namespace
} // namespace KWFontService_NS
