#include "typeset/NumberText.h"

#include <gtest/gtest.h>

using namespace typeset;

TEST(NumberText, NumbersHaveThreeDecimalsAtMost) {
    EXPECT_EQ(decimalText(12), "12");
    EXPECT_EQ(decimalText(-1.25), "-1.25");
    EXPECT_EQ(decimalText(0.12345), "0.123");
    EXPECT_EQ(decimalText(-0.0001), "0");
    EXPECT_EQ(decimalText(1200), "1200");
}

TEST(NumberText, BytesBecomeDigitsAndComeBack) {
    EXPECT_EQ(hexText(0xAB, 1), "AB");
    EXPECT_EQ(hexText(0xAB, 2), "00AB");
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    EXPECT_EQ(hexLines(bytes.substr(0, 5), 2), "0001\n0203\n04");
    EXPECT_EQ(bytesOfHex(hexLines(bytes, 32)), bytes);
    EXPECT_EQ(bytesOfHex("0a\n0B>"), "\x0A\x0B");
    EXPECT_EQ(bytesOfHex("0a 1"), "\x0A") << "half a byte is none";
}
