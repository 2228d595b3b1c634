#include "cff/CharString.h"

#include "cff/CharStringFixture.h"
#include "common/KWLimits.h"
#include "support/Rng.h"

#include <map>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Word = FS_Word;

TEST(CharStringOperators, OfOneByte) {
    const std::map<int, Word> rows{
        {1, Word::hstem},       {3, Word::vstem},      {4, Word::vmoveto},
        {5, Word::rlineto},     {6, Word::hlineto},    {7, Word::vlineto},
        {8, Word::rrcurveto},   {10, Word::callsubr},  {11, Word::return_},
        {14, Word::endchar},    {16, Word::blend},     {18, Word::hstemhm},
        {19, Word::hintmask},   {20, Word::cntrmask},  {21, Word::rmoveto},
        {22, Word::hmoveto},    {23, Word::vstemhm},   {24, Word::rcurveline},
        {25, Word::rlinecurve}, {26, Word::vvcurveto}, {27, Word::hhcurveto},
        {29, Word::callgsubr},  {30, Word::vhcurveto}, {31, Word::hvcurveto}};
    for (int byte = 0; byte < 256; ++byte) {
        const auto row = rows.find(byte);
        EXPECT_EQ(charStringOperator(static_cast<std::uint8_t>(byte)),
                  row != rows.end() ? row->second : Word::none)
            << byte;
    }
}

TEST(CharStringOperators, BehindTheEscape) {
    const std::map<int, Word> rows{
        {0, Word::dotsection}, {3, Word::and_},    {4, Word::or_},   {5, Word::not_},
        {8, Word::store},      {9, Word::abs},     {10, Word::add},  {11, Word::sub},
        {12, Word::div},       {13, Word::load},   {14, Word::neg},  {15, Word::eq},
        {18, Word::drop},      {20, Word::put},    {21, Word::get},  {22, Word::ifelse},
        {23, Word::random},    {24, Word::mul},    {26, Word::sqrt}, {27, Word::dup},
        {28, Word::exch},      {29, Word::index},  {30, Word::roll}, {34, Word::hflex},
        {35, Word::flex},      {36, Word::hflex1}, {37, Word::flex1}};
    for (int byte = 0; byte < 256; ++byte) {
        const auto row = rows.find(byte);
        EXPECT_EQ(charStringEscape(static_cast<std::uint8_t>(byte)),
                  row != rows.end() ? row->second : Word::none)
            << byte;
    }
}

TEST(CharStringSubrs, ANumberCountsFromTheBias) {
    const Subrs subrs({{1}, {2}}, {{3}});
    const CharStringSubrs all = subrs;
    EXPECT_EQ(bytesOf(all.find(true, -107).value()), (Bytes{1}));
    EXPECT_EQ(bytesOf(all.find(true, -106).value()), (Bytes{2}));
    EXPECT_EQ(bytesOf(all.find(false, -107).value()), (Bytes{3}));
    EXPECT_FALSE(all.find(true, -105));
    EXPECT_FALSE(all.find(true, -108));
    EXPECT_FALSE(all.find(false, 0x7FFFFFFF));
    EXPECT_FALSE(all.find(false, -0x7FFFFFFF));
}

/// The only number of a charstring.
int numberOf(const Bytes& bytes, bool isFixed = false) {
    CharStringCounts counts;
    CharStringScanner scanner(viewOf(bytes), counts);
    EXPECT_TRUE(scanner.next()) << bytes.hex();
    EXPECT_TRUE(scanner.isNumber());
    EXPECT_EQ(scanner.isFixed(), isFixed);
    const int number = scanner.number();
    EXPECT_FALSE(scanner.next()) << bytes.hex();
    EXPECT_EQ(counts, (CharStringCounts{1, 0}));
    return number;
}

TEST(CharStringScanner, NumbersOfEveryForm) {
    EXPECT_EQ(numberOf({32}), -107);
    EXPECT_EQ(numberOf({139}), 0);
    EXPECT_EQ(numberOf({246}), 107);
    EXPECT_EQ(numberOf({247, 0}), 108);
    EXPECT_EQ(numberOf({250, 255}), 1131);
    EXPECT_EQ(numberOf({251, 0}), -108);
    EXPECT_EQ(numberOf({254, 255}), -(3 * 256) - 255 - 108);
    EXPECT_EQ(numberOf({28, 0x7F, 0xFF}), 32767);
    // Unlike in a DICT.
    EXPECT_EQ(numberOf({28, 0xFF, 0x6A}), -150);
    EXPECT_EQ(numberOf({255, 0, 1, 0, 0}, true), 65536);
    EXPECT_EQ(numberOf({255, 0xFF, 0xFF, 0xFF, 0xFF}, true), -1);
}

TEST(CharStringScanner, WhatIsCutOffEndsTheCharstring) {
    for (const Bytes& bytes : {Bytes{}, Bytes{12}, Bytes{28, 1}, Bytes{255, 1, 2, 3}, Bytes{247},
                               Bytes{254}, Bytes{19}}) {
        CharStringCounts counts;
        CharStringScanner scanner(viewOf(bytes), counts);
        EXPECT_FALSE(scanner.next()) << bytes.hex();
        EXPECT_FALSE(scanner.next()) << bytes.hex();
    }
}

/// The counts at the end of a charstring.
CharStringCounts countsOf(const Bytes& bytes, CharStringCounts counts = {}) {
    CharStringScanner scanner(viewOf(bytes), counts);
    while (scanner.next()) {
    }
    return counts;
}

TEST(CharStringScanner, EveryPairBeforeAStemOperatorIsAStem) {
    for (const int op : {1, 3, 18, 23}) {
        EXPECT_EQ(countsOf({139, 139, 139, 139, op}), (CharStringCounts{0, 2})) << op;
        // The width gets lost in the division.
        EXPECT_EQ(countsOf({139, 139, 139, 139, 139, op}), (CharStringCounts{0, 2})) << op;
    }
    EXPECT_EQ(countsOf({139, 139, 1, 139, 139, 3, 139}), (CharStringCounts{1, 2}));
}

TEST(CharStringScanner, OtherOperatorsClearTheOperands) {
    EXPECT_EQ(countsOf({139, 139, 21}), CharStringCounts{});
    EXPECT_EQ(countsOf({139, 139, 12, 10}), CharStringCounts{}); // arithmetic too
    EXPECT_EQ(countsOf({139, 139, 2}), CharStringCounts{});
    EXPECT_EQ(countsOf({139, 139, 11}), (CharStringCounts{2, 0})); // but for `return`
    EXPECT_EQ(countsOf({139, 139, 10}), (CharStringCounts{1, 0})); // a call takes one
    EXPECT_EQ(countsOf({29}), CharStringCounts{});
}

TEST(CharStringScanner, AMaskHasABitForEachStem) {
    for (const int op : {19, 20}) {
        for (int stems = 0; stems <= 17; ++stems) {
            Bytes bytes;
            bytes.fill(static_cast<std::size_t>(2 * stems), 139).u8(op);
            const auto maskSize = static_cast<std::size_t>(stems == 0 ? 1 : (stems + 7) / 8);
            bytes.fill(maskSize, 14).u8(22);
            CharStringCounts counts;
            CharStringScanner scanner(viewOf(bytes), counts);
            for (int i = 0; i < 2 * stems; ++i)
                ASSERT_TRUE(scanner.next());
            ASSERT_TRUE(scanner.next()) << stems;
            EXPECT_EQ(scanner.op(), op == 19 ? Word::hintmask : Word::cntrmask);
            EXPECT_EQ(scanner.mask().size(), maskSize) << stems;
            EXPECT_EQ(counts.stems, stems);
            ASSERT_TRUE(scanner.next()) << stems;
            EXPECT_EQ(scanner.op(), Word::hmoveto) << stems;
        }
    }
}

TEST(CharStringScanner, AMaskIsAsLongAsTheStemsThatItStartsWith) {
    EXPECT_EQ(countsOf({19, 139, 139, 139}, {0, 9}), (CharStringCounts{1, 9}));
    EXPECT_EQ(countsOf({19, 139, 139, 139}, {0, 8}), (CharStringCounts{2, 8}));
}

TEST(CharStringScanner, AnOperandCountsRightBeforeItsCall) {
    CharStringCounts counts;
    const Bytes bytes{140, 141, 10, 142, 142, 12, 10, 29, 143, 21, 144, 10, 145, 146};
    CharStringScanner scanner(viewOf(bytes), counts);
    std::vector<std::optional<int>> operands;
    while (scanner.next()) {
        if (!scanner.isNumber() && scanner.isCall())
            operands.push_back(scanner.callOperand());
        else
            EXPECT_EQ(scanner.callOperand(), std::nullopt);
    }
    EXPECT_EQ(operands, (std::vector<std::optional<int>>{2, std::nullopt, 5}));
}

TEST(CharStringScanner, CountsThatLieStayWithinTheirLimits) {
    const Bytes numbers = Bytes().fill(60000, 139);
    EXPECT_EQ(countsOf(numbers).operands, KWCommonNS::kMaxCharStringOperands);
    Bytes stems;
    for (int i = 0; i < 30000; ++i)
        stems.u8(139).u8(139).u8(1);
    EXPECT_EQ(countsOf(stems).stems, KWCommonNS::kMaxCharStringStems);
}

TEST(CharStringScanner, ToTheNextOperatorIsTheSameAsStepByStep) {
    Rng random(11);
    for (int round = 0; round < 3000; ++round) {
        // Bytes of all kinds, short numbers among them as often as in fonts.
        Bytes charString;
        for (std::uint32_t i = random.below(40); i > 0; --i)
            charString.u8(random.below(4) == 0 ? random.below(256) : 32 + random.below(224));
        CharStringCounts counts{3, 5};
        CharStringCounts sameCounts = counts;
        CharStringScanner steps(viewOf(charString), counts);
        CharStringScanner leaps(viewOf(charString), sameCounts);
        for (bool goesOn = true; goesOn;) {
            std::vector<int> numbers;
            std::vector<int> sameNumbers;
            while ((goesOn = steps.next()) && steps.isNumber())
                numbers.push_back(steps.number());
            const auto read = [&](std::size_t begin, std::size_t count) {
                for (const std::uint8_t* at = viewOf(charString).data() + begin; count > 0;
                     --count, at += charStringNumberSize(*at))
                    sameNumbers.push_back(charStringNumber(at));
            };
            ASSERT_EQ(leaps.nextOperator(read), goesOn);
            ASSERT_EQ(sameNumbers, numbers);
            ASSERT_EQ(sameCounts, counts);
            if (!goesOn)
                break;
            ASSERT_EQ(leaps.op(), steps.op());
            ASSERT_FALSE(leaps.isNumber());
            ASSERT_EQ(leaps.start(), steps.start());
            ASSERT_EQ(leaps.callOperand(), steps.callOperand());
            ASSERT_EQ(leaps.mask().size(), steps.mask().size());
            if (leaps.callOperand()) {
                ASSERT_EQ(leaps.numberStart(), steps.numberStart());
            }
        }
    }
}

TEST(CharStringScanner, ManyNumbersBeforeAnOperatorAreAtTheLimitAsOneByOne) {
    const Bytes charString = Bytes().fill(KWCommonNS::kMaxCharStringOperands + 100, 140).u8(1);
    CharStringCounts counts;
    CharStringScanner scanner(viewOf(charString), counts);
    std::size_t numbers = 0;
    const auto count = [&numbers](std::size_t, std::size_t more) { numbers += more; };
    EXPECT_TRUE(scanner.nextOperator(count));
    EXPECT_EQ(numbers, KWCommonNS::kMaxCharStringOperands + std::size_t{100});
    EXPECT_EQ(counts.stems, KWCommonNS::kMaxCharStringOperands / 2);
    EXPECT_FALSE(scanner.nextOperator(count));
}

TEST(CharStringBudget, WhatIsLeftIsNotExceeded) {
    CharStringBudget budget(10);
    EXPECT_TRUE(budget.charge(7));
    EXPECT_FALSE(budget.charge(4));
    EXPECT_TRUE(budget.charge(3));
    EXPECT_TRUE(budget.charge(0));
    EXPECT_FALSE(budget.charge(1));
}

} // namespace
} // namespace KWFontService_NS
