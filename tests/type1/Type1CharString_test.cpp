#include "type1/Type1CharString.h"

#include "support/Type1Font.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWCommonNS::KWMemStream;
using KWCommonNS::KWValue;
using KWTest::Bytes;

struct Scan {
    std::string tokens; // in parentheses, since names may have blanks
    int last = 0;
};

std::string textOf(const std::vector<KWValue>& tokens) {
    std::string text;
    for (const KWValue& token : tokens) {
        EXPECT_TRUE(token.isInteger() || token.isName());
        std::string word;
        token.toString().toUTF8String(word);
        text += "(" + word + ")";
    }
    return text;
}

Scan scan(const Bytes& charString) {
    std::vector<KWValue> tokens;
    const int last = scanCharString(charString.vector(), tokens);
    return {textOf(tokens), last};
}

Scan scanStream(const Bytes& contents, bool plain, std::streamoff start = 0) {
    KWMemStream stream;
    stream.append(contents.data(), contents.size());
    stream.seekg(start);
    std::vector<KWValue> tokens;
    const int last = scanCharString(stream, tokens, plain);
    return {textOf(tokens), last};
}

TEST(Type1CharString, NumbersOfEveryForm) {
    EXPECT_EQ(scan({32}).tokens, "(-107)");
    EXPECT_EQ(scan({139, 246}).tokens, "(0)(107)");
    EXPECT_EQ(scan({247, 0, 250, 255}).tokens, "(108)(1131)");
    EXPECT_EQ(scan({251, 0, 254, 255}).tokens, "(-108)(-1131)");
    EXPECT_EQ(scan({255, 0, 1, 0, 0}).tokens, "(65536)");
    EXPECT_EQ(scan({255, 0xFF, 0xFF, 0xFF, 0xFE}).tokens, "(-2)");
    EXPECT_EQ(scan({255, 0x80, 0, 0, 0}).tokens, "(-2147483648)");
}

TEST(Type1CharString, OperatorsOfOneByteHaveTheirNames) {
    const std::pair<int, const char*> rows[] = {
        {1, "hstem"},     {3, "vstem"},    {4, "vmoveto"},    {5, "rlineto"},
        {6, "hlineto"},   {7, "vlineto"},  {8, "rrcurveto"},  {9, "closepath"},
        {10, "callsubr"}, {11, "return"},  {13, "hsbw"},      {14, "endchar"},
        {21, "rmoveto"},  {22, "hmoveto"}, {30, "vhcurveto"}, {31, "hvcurveto"}};
    for (const auto& [op, name] : rows) {
        const Scan result = scan(Bytes().u8(op));
        EXPECT_EQ(result.tokens, "(" + std::string(name) + ")");
        EXPECT_EQ(result.last, op);
    }
}

TEST(Type1CharString, OperatorsBehindTheEscapeHaveTheirNames) {
    const std::pair<int, const char*> rows[] = {
        {0, "dotsection"}, {1, "vstem3"},         {6, "seac"}, {7, "sbw"},
        {12, "div"},       {16, "callothersubr"}, {17, "pop"}, {33, "setcurrentpoint"}};
    for (const auto& [second, name] : rows) {
        const Scan result = scan(Bytes{12}.u8(second));
        EXPECT_EQ(result.tokens, "(" + std::string(name) + ")");
        EXPECT_EQ(result.last, 12 * 256 + second);
    }
}

// What compares names relies on the blank.
TEST(Type1CharString, Hstem3BeginsWithABlank) {
    EXPECT_EQ(scan({12, 2}).tokens, "( hstem3)");
}

TEST(Type1CharString, UnknownOperatorsKeepTheirNumbers) {
    EXPECT_EQ(scan({12, 3}).tokens, "(?12-3)");
    EXPECT_EQ(scan({12, 255}).tokens, "(?12-255)");
    EXPECT_EQ(scan({0, 2, 15, 29}).tokens, "(?0)(?2)(?15)(?29)");
}

TEST(Type1CharString, TheResultIsTheLastOperator) {
    EXPECT_EQ(scan({}).last, -1);
    EXPECT_EQ(scan({139, 140}).last, -1);
    EXPECT_EQ(scan({139, 14, 140}).last, 14);
    EXPECT_EQ(scan(KWTest::Type1CharString().seac(1, 2, 3, 65, 194).build()).last, kType1Seac);
}

TEST(Type1CharString, WhatIsCutOffIsLeftOut) {
    EXPECT_EQ(scan({139, 247}).tokens, "(0)");
    EXPECT_EQ(scan({139, 251}).tokens, "(0)");
    EXPECT_EQ(scan({139, 255, 1, 2, 3}).tokens, "(0)");
    const Scan result = scan({14, 12});
    EXPECT_EQ(result.tokens, "(endchar)");
    EXPECT_EQ(result.last, 14);
}

TEST(Type1CharString, AnEncryptedOneIsReadWholeBehindItsLeadBytes) {
    const Bytes charString = KWTest::Type1CharString().hsbw(20, 600).endchar().build();
    const Scan result = scanStream(KWTest::type1Encrypted(charString, 4330), false, 3);
    EXPECT_EQ(result.tokens, "(20)(600)(hsbw)(endchar)");
    EXPECT_EQ(result.last, 14);
}

TEST(Type1CharString, OneShorterThanItsLeadBytesIsEmpty) {
    for (std::size_t size = 0; size <= 4; ++size)
        EXPECT_EQ(scanStream(Bytes().zero(size), false).last, -1) << size;
}

TEST(Type1CharString, APlainOneIsReadFromThePosition) {
    EXPECT_EQ(scanStream({14, 13, 139}, true, 1).tokens, "(hsbw)(0)");
    EXPECT_EQ(scanStream({14}, true, 1).tokens, "");
}

// --- seac ---------------------------------------------------------------------------------------

std::optional<std::pair<int, int>> seacOf(const KWTest::Type1CharString& charString) {
    const auto seac = findType1Seac(charString.build().vector());
    return seac ? std::optional(std::pair(seac->base, seac->accent)) : std::nullopt;
}

TEST(Type1CharString, TheLastTwoNumbersOfSeacAreItsParts) {
    using KWTest::Type1CharString;
    EXPECT_EQ(seacOf(Type1CharString().hsbw(20, 600).seac(100, 250, 0, 65, 194)),
              std::pair(65, 194));
    EXPECT_EQ(seacOf(Type1CharString().op({65, 194}, 0x0C06)), std::pair(65, 194));
    EXPECT_EQ(seacOf(Type1CharString().seac(0, 0, 0, -1, 100000)), std::pair(-1, 100000));
}

TEST(Type1CharString, TheFirstSeacCounts) {
    using KWTest::Type1CharString;
    EXPECT_EQ(seacOf(Type1CharString().seac(0, 0, 0, 1, 2).endchar().seac(0, 0, 0, 3, 4)),
              std::pair(1, 2));
}

TEST(Type1CharString, SeacNeedsTwoNumbersRightBeforeIt) {
    using KWTest::Type1CharString;
    EXPECT_EQ(seacOf(Type1CharString().hsbw(20, 600).endchar()), std::nullopt);
    EXPECT_EQ(seacOf(Type1CharString().hsbw(20, 600).op({}, 0x0C06)), std::nullopt);
    EXPECT_EQ(seacOf(Type1CharString().op({65}, 0x0C06)), std::nullopt);
    EXPECT_EQ(seacOf({}), std::nullopt);
    EXPECT_FALSE(findType1Seac(Bytes{140, 141, 12}.vector()));
}

TEST(Type1CharString, TokensAreAppended) {
    std::vector<KWValue> tokens{KWValue(7)};
    scanCharString(std::vector<std::uint8_t>{14}, tokens);
    EXPECT_EQ(textOf(tokens), "(7)(endchar)");
}

} // namespace
} // namespace KWFontService_NS
