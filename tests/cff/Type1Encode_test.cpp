#include "cff/Type1Encode.h"

#include "cff/CharStringFixture.h"
#include "cff/Type1Bytes.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

Bytes encoded(const CharStringTokens& tokens) {
    KWCommonNS::KWMemStream out;
    encodeType1CharString(tokens, out);
    const auto* data = reinterpret_cast<const std::uint8_t*>(out.data());
    return out.size() == 0 ? Bytes() : Bytes(std::vector<std::uint8_t>(data, data + out.size()));
}
Bytes encoded(FS_Word op) {
    return encoded({KWValue(cffKey(op))});
}

TEST(Type1Encode, IntegersTakeOneByteTwoOrFive) {
    EXPECT_EQ(encoded({0}), Bytes{139});
    EXPECT_EQ(encoded({-107}), Bytes{32});
    EXPECT_EQ(encoded({107}), Bytes{246});
    EXPECT_EQ(encoded({108}), (Bytes{247, 0}));
    EXPECT_EQ(encoded({1131}), (Bytes{250, 255}));
    EXPECT_EQ(encoded({-108}), (Bytes{251, 0}));
    EXPECT_EQ(encoded({-1131}), (Bytes{254, 255}));
    EXPECT_EQ(encoded({1132}), (Bytes{255, 0, 0, 0x04, 0x6C}));
    EXPECT_EQ(encoded({-1132}), (Bytes{255, 0xFF, 0xFF, 0xFB, 0x94}));
    EXPECT_EQ(encoded({0x12345678}), (Bytes{255, 0x12, 0x34, 0x56, 0x78}));
    EXPECT_EQ(encoded({-0x7FFFFFFF - 1}), (Bytes{255, 0x80, 0, 0, 0}));
}

TEST(Type1Encode, OperatorsOfOneByte) {
    const std::pair<FS_Word, int> operators[] = {
        {FS_Word::hstem, 1},      {FS_Word::vstem, 3},     {FS_Word::vmoveto, 4},
        {FS_Word::rlineto, 5},    {FS_Word::hlineto, 6},   {FS_Word::vlineto, 7},
        {FS_Word::rrcurveto, 8},  {FS_Word::closepath, 9}, {FS_Word::callsubr, 10},
        {FS_Word::return_, 11},   {FS_Word::hsbw, 13},     {FS_Word::endchar, 14},
        {FS_Word::rmoveto, 21},   {FS_Word::hmoveto, 22},  {FS_Word::vhcurveto, 30},
        {FS_Word::hvcurveto, 31},
    };
    for (const auto& [op, byte] : operators)
        EXPECT_EQ(encoded(op), Bytes{byte}) << byte;
}

TEST(Type1Encode, OperatorsBehindTheEscape) {
    const std::pair<FS_Word, int> operators[] = {
        {FS_Word::dotsection, 0},     {FS_Word::vstem3, 1}, {FS_Word::hstem3, 2},
        {FS_Word::seac, 6},           {FS_Word::sbw, 7},    {FS_Word::div, 12},
        {FS_Word::callothersubr, 16}, {FS_Word::pop, 17},   {FS_Word::setcurrentpoint, 33},
    };
    for (const auto& [op, second] : operators)
        EXPECT_EQ(encoded(op), (Bytes{12, second})) << second;
}

TEST(Type1Encode, WhatHasNoBytesIsLeftOut) {
    for (const FS_Word op : {FS_Word::none, FS_Word::hintmask, FS_Word::rlinecurve, FS_Word::random,
                             FS_Word::callgsubr, FS_Word::true_})
        EXPECT_EQ(encoded({1, KWValue(cffKey(op)), 2}), (Bytes{140, 141}));
    EXPECT_EQ(encoded({KWValue(0.5), KWValue(), KWValue(true), 3}), Bytes{142});
    EXPECT_EQ(encoded(CharStringTokens()), Bytes());
}

TEST(Type1Encode, AWholeCharstringReadsBack) {
    const CharStringTokens tokens{0,
                                  500,
                                  KWValue(cffKey(FS_Word::hsbw)),
                                  -20,
                                  3000,
                                  7,
                                  KWValue(cffKey(FS_Word::div)),
                                  KWValue(cffKey(FS_Word::rmoveto)),
                                  KWValue(cffKey(FS_Word::endchar))};
    EXPECT_EQ(textOf(type1Tokens(encoded(tokens))), "0 500 hsbw -20 3000 7 div rmoveto endchar");
}

} // namespace
} // namespace KWFontService_NS
