#include "cff/Type2ToType1.h"

#include "cff/CharStringFixture.h"
#include "cff/CharStringFlatten.h"

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A glyph of a font whose defaultWidthX is 500 and whose nominalWidthX is 600.
struct Converted {
    bool ok = false;
    CharStringTokens tokens;
    std::vector<CharStringTokens> subrs = Type2ToType1::standardSubrs();

    explicit Converted(const Bytes& charString) {
        CharStringTokens flat;
        FlatCounts counts;
        CharStringBudget budget(1 << 16);
        const Subrs none;
        flattenCharString(viewOf(charString), none, flat, counts, budget);
        ok = Type2ToType1(500, 600).convert(flat, subrs, tokens);
    }
};

/// What comes behind the width of a glyph; "-" for one that fails.
std::string pathOf(const Bytes& charString) {
    const Converted converted(charString);
    if (!converted.ok)
        return "-";
    std::string text = textOf(converted.tokens);
    const std::string width = "0 500 hsbw ";
    EXPECT_EQ(text.substr(0, width.size()), width);
    return text.substr(width.size());
}

std::string textOf(const Converted& converted) {
    return converted.ok ? KWTest::textOf(converted.tokens) : "-";
}

TEST(Type2ToType1, TheStandardSubrs) {
    const auto subrs = Type2ToType1::standardSubrs();
    ASSERT_EQ(subrs.size(), 4U);
    EXPECT_EQ(KWTest::textOf(subrs[0]), "3 0 callothersubr pop pop setcurrentpoint return");
    EXPECT_EQ(KWTest::textOf(subrs[1]), "0 1 callothersubr return");
    EXPECT_EQ(KWTest::textOf(subrs[2]), "0 2 callothersubr return");
    EXPECT_EQ(KWTest::textOf(subrs[3]), "return");
}

TEST(Type2ToType1, TheWidthIsTheOddOperandOfTheFirstOperator) {
    EXPECT_EQ(textOf(Converted({14})), "0 500 hsbw endchar");
    EXPECT_EQ(textOf(Converted({140, 14})), "0 601 hsbw endchar");
    EXPECT_EQ(textOf(Converted({141, 22, 14})), "0 500 hsbw 2 hmoveto endchar");
    EXPECT_EQ(textOf(Converted({140, 141, 22, 14})), "0 601 hsbw 2 hmoveto endchar");
    EXPECT_EQ(textOf(Converted({140, 141, 4, 14})), "0 601 hsbw 2 vmoveto endchar");
    EXPECT_EQ(textOf(Converted({140, 141, 142, 21, 14})), "0 601 hsbw 2 3 rmoveto endchar");
    for (const int op : {1, 18})
        EXPECT_EQ(textOf(Converted({140, 141, 142, op, 14})), "0 601 hsbw 2 3 hstem endchar");
    for (const int op : {3, 23})
        EXPECT_EQ(textOf(Converted({140, 141, 142, op, 14})), "0 601 hsbw 2 3 vstem endchar");
    EXPECT_EQ(textOf(Converted({141, 142, 1, 14})), "0 500 hsbw 2 3 hstem endchar");
}

TEST(Type2ToType1, WidthsThatThePrivateDictLacksAreZero) {
    std::vector<CharStringTokens> subrs;
    CharStringTokens out;
    EXPECT_TRUE(Type2ToType1(KWValue(), KWValue()).convert({}, subrs, out));
    EXPECT_EQ(KWTest::textOf(out), "0 0 hsbw endchar");
}

TEST(Type2ToType1, AnyOtherFirstOperatorFailsTheGlyph) {
    for (const int op : {5, 6, 7, 8, 19, 20, 24, 25, 26, 27, 30, 31})
        EXPECT_FALSE(Converted({139, 139, op, 0, 14}).ok) << op;
    EXPECT_FALSE(Converted({139, 12, 35, 14}).ok);
}

TEST(Type2ToType1, ACharstringThatJustStopsIsEnded) {
    EXPECT_EQ(pathOf({}), "endchar");
    EXPECT_EQ(pathOf({140, 22, 141}), "1 hmoveto endchar");
}

TEST(Type2ToType1, NothingFollowsEndchar) {
    EXPECT_EQ(pathOf({14, 140, 22}), "endchar");
}

TEST(Type2ToType1, AnAccentedCharacterFailsTheGlyph) {
    EXPECT_FALSE(Converted({139, 139, 139, 139, 14}).ok);
    EXPECT_FALSE(Converted({139, 139, 139, 139, 139, 14}).ok);
    EXPECT_FALSE(Converted({139, 22, 139, 14}).ok);
}

TEST(Type2ToType1, MovesTakeTheirOperandsOnly) {
    EXPECT_EQ(pathOf({140, 22, 141, 4, 142, 143, 21, 14}),
              "1 hmoveto 2 vmoveto 3 4 rmoveto endchar");
    for (const int op : {22, 4}) {
        EXPECT_FALSE(Converted({140, 22, 140, 140, op, 14}).ok) << op;
        EXPECT_FALSE(Converted({140, 22, op, 14}).ok) << op;
        EXPECT_FALSE(Converted({op, 14}).ok) << op;
    }
    EXPECT_FALSE(Converted({140, 22, 140, 140, 140, 21, 14}).ok);
    EXPECT_FALSE(Converted({140, 22, 140, 21, 14}).ok);
}

/// The path behind a first move.
std::string drawn(const Bytes& bytes) {
    const std::string text = pathOf(Bytes{139, 22}.bytes(bytes).u8(14));
    const std::string before = "0 hmoveto ";
    const std::string behind = " endchar";
    if (text.size() < before.size() + behind.size())
        return text;
    return text.substr(before.size(), text.size() - before.size() - behind.size());
}

TEST(Type2ToType1, Lines) {
    EXPECT_EQ(drawn({140, 141, 142, 6}), "1 hlineto 2 vlineto 3 hlineto");
    EXPECT_EQ(drawn({140, 141, 142, 7}), "1 vlineto 2 hlineto 3 vlineto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 5}), "1 2 rlineto 3 4 rlineto");
}

TEST(Type2ToType1, Curves) {
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 148, 149, 150, 151, 8}),
              "1 2 3 4 5 6 rrcurveto 7 8 9 10 11 12 rrcurveto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 27}),
              "1 0 2 3 4 0 rrcurveto 5 0 6 7 8 0 rrcurveto");
    EXPECT_EQ(drawn({149, 140, 141, 142, 143, 144, 145, 146, 147, 27}),
              "1 10 2 3 4 0 rrcurveto 5 0 6 7 8 0 rrcurveto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 26}), "0 1 2 3 0 4 rrcurveto");
    EXPECT_EQ(drawn({149, 140, 141, 142, 143, 26}), "10 1 2 3 0 4 rrcurveto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 31}),
              "1 2 3 4 hvcurveto 5 6 7 8 vhcurveto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 30}),
              "1 2 3 4 vhcurveto 5 6 7 8 hvcurveto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 31}), "1 0 2 3 5 4 rrcurveto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 30}), "0 1 2 3 4 5 rrcurveto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 148, 31}),
              "1 2 3 4 hvcurveto 0 5 6 7 8 9 rrcurveto");
}

TEST(Type2ToType1, CurvesWithALine) {
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 24}),
              "1 2 3 4 5 6 rrcurveto 7 8 rlineto");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 25}),
              "1 2 rlineto 3 4 5 6 7 8 rrcurveto");
    EXPECT_FALSE(Converted({139, 22, 139, 24, 14}).ok);
    EXPECT_FALSE(Converted({139, 22, 139, 139, 139, 139, 139, 25, 14}).ok);
}

TEST(Type2ToType1, FlexWithoutADirectionIsTwoCurves) {
    const Bytes flex{140, 141, 142, 143, 144, 145, 146, 147, 148, 149, 150, 151, 189, 12, 35};
    EXPECT_EQ(drawn(flex), "1 2 3 4 5 6 rrcurveto 7 8 9 10 11 12 rrcurveto");
    EXPECT_EQ(drawn(Bytes{199}.bytes(flex)), drawn(flex)); // the last 13 operands
    EXPECT_FALSE(Converted({139, 22, 139, 12, 35, 14}).ok);
}

TEST(Type2ToType1, Flex1ComesBackToItsLine) {
    // dx 25, dy 30: the last number is y.
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 148, 149, 150, 12, 37}),
              "1 2 3 4 5 6 rrcurveto 7 8 9 10 -25 11 rrcurveto");
    EXPECT_EQ(drawn({141, 140, 143, 142, 145, 144, 147, 146, 149, 148, 150, 12, 37}),
              "2 1 4 3 6 5 rrcurveto 8 7 10 9 11 -25 rrcurveto");
    // dx -15, dy 5: how far counts, not whereto.
    EXPECT_EQ(drawn({136, 140, 136, 140, 136, 140, 136, 140, 136, 140, 150, 12, 37}),
              "-3 1 -3 1 -3 1 rrcurveto -3 1 -3 1 11 -5 rrcurveto");
    // As far along both: the last number is y.
    EXPECT_EQ(drawn({140, 140, 140, 140, 140, 140, 140, 140, 140, 140, 150, 12, 37}),
              "1 1 1 1 1 1 rrcurveto 1 1 1 1 -5 11 rrcurveto");
}

TEST(Type2ToType1, LevelFlexIsTheFlexMechanism) {
    EXPECT_EQ(pathOf({149, 159, 21, 140, 141, 142, 143, 144, 145, 146, 12, 34, 14}),
              "10 20 rmoveto 1 callsubr 7 0 rmoveto 2 callsubr -6 0 rmoveto 2 callsubr "
              "2 3 rmoveto 2 callsubr 4 0 rmoveto 2 callsubr 5 0 rmoveto 2 callsubr "
              "6 -3 rmoveto 2 callsubr 7 0 rmoveto 2 callsubr 50 35 20 0 callsubr endchar");
    EXPECT_EQ(drawn({140, 141, 142, 143, 144, 145, 146, 147, 148, 12, 36}),
              "1 callsubr 9 0 rmoveto 2 callsubr -8 2 rmoveto 2 callsubr 3 4 rmoveto 2 callsubr "
              "5 0 rmoveto 2 callsubr 6 0 rmoveto 2 callsubr 7 8 rmoveto 2 callsubr "
              "9 -14 rmoveto 2 callsubr 50 31 0 0 callsubr");
}

TEST(Type2ToType1, TheFlexEndsWhereThePathHasCome) {
    // After lines and curves of every kind.
    const std::string text =
        drawn({140, 6,  141, 7,   142, 143, 5,  140, 140, 140, 140, 140, 140, 8,   141, 141, 141,
               141, 31, 142, 142, 142, 142, 30, 139, 139, 139, 139, 139, 139, 139, 12,  34});
    // x: 1 + 3 + 3 + 4 + 6, y: 2 + 4 + 3 + 4 + 6
    EXPECT_NE(text.find("50 17 19 0 callsubr"), std::string::npos) << text;
}

TEST(Type2ToType1, StemsAreCountedFromTheOrigin) {
    EXPECT_EQ(pathOf({149, 144, 159, 146, 1, 142, 141, 3, 14}),
              "10 5 hstem 35 7 hstem 3 2 vstem endchar");
}

TEST(Type2ToType1, HintReplacementIsASubr) {
    const Converted converted(
        {149, 144, 159, 146, 18, 142, 141, 23, 19, 0xE0, 140, 22, 19, 0x60, 141, 22, 19, 0x80, 14});
    EXPECT_EQ(textOf(converted),
              "0 500 hsbw 10 5 hstem 35 7 hstem 3 2 vstem 1 hmoveto "
              "4 1 3 callothersubr pop callsubr 2 hmoveto 5 1 3 callothersubr pop callsubr "
              "endchar");
    ASSERT_EQ(converted.subrs.size(), 6U);
    EXPECT_EQ(KWTest::textOf(converted.subrs[4]), "35 7 hstem 3 2 vstem return");
    EXPECT_EQ(KWTest::textOf(converted.subrs[5]), "10 5 hstem return");
}

TEST(Type2ToType1, AMaskDeclaresTheVerticalStemsBeforeIt) {
    EXPECT_EQ(pathOf({149, 144, 18, 142, 141, 19, 0xC0, 14}), "10 5 hstem 3 2 vstem endchar");
}

TEST(Type2ToType1, BitsBeyondTheStemsMeanNothing) {
    const Converted converted({149, 144, 18, 19, 0x80, 19, 0xFF, 14});
    ASSERT_EQ(converted.subrs.size(), 5U);
    EXPECT_EQ(KWTest::textOf(converted.subrs[4]), "10 5 hstem return");
}

TEST(Type2ToType1, CounterMasksBecomeCounterControl) {
    // Stems 10 15, 35 42 horizontally, 3 5, 20 25, 40 46 vertically.
    const Bytes stems{149, 144, 159, 146, 18, 142, 141, 154, 144, 154, 145};
    const std::string declared = "10 5 hstem 35 7 hstem 3 2 vstem 20 5 vstem 40 6 vstem ";
    EXPECT_EQ(pathOf(Bytes(stems).bytes(Bytes{20, 0b00111000, 14})),
              declared + "0 1 3 2 15 5 21 -6 8 13 callothersubr endchar");
    EXPECT_EQ(pathOf(Bytes(stems).bytes(Bytes{20, 0b11000000, 20, 0b00110000, 14})),
              declared + "1 10 5 27 -7 1 3 2 20 -5 10 13 callothersubr endchar");
    EXPECT_EQ(pathOf(Bytes(stems).bytes(Bytes{20, 0, 14})), declared + "endchar");
    EXPECT_EQ(pathOf(Bytes(stems).bytes(Bytes{20, 0b10000000, 140, 22, 14})),
              declared + "1 15 -5 0 4 13 callothersubr 1 hmoveto endchar");
}

/// What a group of vertical stems, each a unit wide and a unit apart, comes to.
std::string counterControlOf(int stems) {
    Bytes charString;
    charString.fill(static_cast<std::size_t>(2 * stems), 140).u8(23);
    const std::string text = pathOf(charString.u8(20).u8(0xFF).u8(0xF0).u8(14));
    return text.substr(text.rfind("vstem ") + 6);
}

TEST(Type2ToType1, LongCounterControlIsCutFromTheEnd) {
    const std::string nine = "1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 ";
    EXPECT_EQ(counterControlOf(10), "0 1 " + nine + "2 -1 22 13 callothersubr endchar");
    EXPECT_EQ(counterControlOf(11), nine + "1 1 2 -1 22 12 callothersubr "
                                           "0 1 2 13 callothersubr endchar");
}

TEST(Type2ToType1, DotsectionStays) {
    EXPECT_EQ(drawn({12, 0}), "dotsection");
}

// A Type 1 font has nothing to take their place, and what they draw is not known.
TEST(Type2ToType1, OperatorsThatType1LacksFailTheGlyph) {
    for (const Bytes& op : {Bytes{12, 23}, Bytes{12, 8}, Bytes{12, 13}, Bytes{16}, Bytes{2}})
        EXPECT_EQ(drawn(op), "-") << op.hex();
}

TEST(Type2ToType1, FractionsBecomeDivisions) {
    EXPECT_EQ(drawn({255, 0, 1, 0x80, 0, 6}), "3 2 div hlineto");
    EXPECT_EQ(drawn({255, 0xFF, 0xFF, 0xFF, 0xFF, 6}), "-1 65536 div hlineto");
    EXPECT_EQ(drawn({255, 0, 5, 0, 0, 6}), "5 hlineto");
    EXPECT_EQ(drawn({255, 0x7F, 0xFF, 0xFF, 0xFF, 6}), "2147483647 65536 div hlineto");
    // 32767 + 7233 1/65536: both do not fit.
    EXPECT_EQ(drawn({28, 0x7F, 0xFF, 255, 0x1C, 0x41, 0, 1, 12, 10, 6}), "40000 hlineto");
}

TEST(Type2ToType1, NumbersBeyondIntegersAreCutToThem) {
    const Bytes most{28, 0x7F, 0xFF};
    const Bytes product = Bytes(most).bytes(most).u8(12).u8(24).u8(149).u8(12).u8(24);
    EXPECT_EQ(drawn(Bytes(product).u8(6)), "2147483647 hlineto");
    EXPECT_EQ(drawn(Bytes(product).u8(12).u8(14).u8(6)), "-2147483648 hlineto");
}

TEST(Type2ToType1, AMaskThatIsTooShortSelectsWhatItHas) {
    std::vector<CharStringTokens> subrs;
    CharStringTokens stems{cffKey(FS_Word::hstem)};
    stems.insert(stems.begin(), 20, KWValue(1));
    for (const int bytes : {0, 1}) {
        stems.insert(stems.end(), {cffKey(FS_Word::hintmask), bytes});
        stems.insert(stems.end(), static_cast<std::size_t>(bytes), KWValue(0xFF));
    }
    stems.insert(stems.end(), {0xFF, cffKey(FS_Word::hmoveto)}); // no mask any more
    CharStringTokens out;
    EXPECT_TRUE(Type2ToType1(0, 0).convert(stems, subrs, out));
    ASSERT_EQ(subrs.size(), 1U);
    EXPECT_EQ(subrs[0].size(), 8 * 3 + 1U);
}

TEST(Type2ToType1, NoTokensThatLieDoHarm) {
    const CharStringTokens lists[] = {
        {cffKey(FS_Word::hintmask)},
        {1, 2, cffKey(FS_Word::hstem), cffKey(FS_Word::hintmask), 9, 1},
        {1, 2, cffKey(FS_Word::hstem), cffKey(FS_Word::cntrmask), -5, 1},
        {1, cffKey(FS_Word::hmoveto), 1, 2, cffKey(FS_Word::flex1)}};
    for (const CharStringTokens& tokens : lists) {
        std::vector<CharStringTokens> subrs;
        CharStringTokens out;
        Type2ToType1(0, 0).convert(tokens, subrs, out);
        EXPECT_LE(out.size(), 20U);
    }
}

} // namespace
} // namespace KWFontService_NS
