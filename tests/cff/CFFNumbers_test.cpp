#include "cff/CFFNumbers.h"

#include "cff/CFFDict.h"
#include "support/CffTable.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWMemStream;

Bytes integerBytes(int value) {
    KWMemStream output;
    writeCFFInteger(output, value);
    return Bytes::ofText({output.data(), output.size()});
}

Bytes dictBytes(const KWValue& value) {
    KWMemStream output;
    writeDictValue(output, value);
    return Bytes::ofText({output.data(), output.size()});
}

TEST(WriteCFFInteger, TakesTheShortestForm) {
    EXPECT_EQ(integerBytes(0), (Bytes{139}));
    EXPECT_EQ(integerBytes(107), (Bytes{246}));
    EXPECT_EQ(integerBytes(-107), (Bytes{32}));
    EXPECT_EQ(integerBytes(108), (Bytes{247, 0}));
    EXPECT_EQ(integerBytes(1131), (Bytes{250, 255}));
    EXPECT_EQ(integerBytes(-108), (Bytes{251, 0}));
    EXPECT_EQ(integerBytes(-1131), (Bytes{254, 255}));
    EXPECT_EQ(integerBytes(1132), (Bytes{28, 0x04, 0x6C}));
    EXPECT_EQ(integerBytes(-1132), (Bytes{28, 0xFB, 0x94}));
    EXPECT_EQ(integerBytes(32767), (Bytes{28, 0x7F, 0xFF}));
    EXPECT_EQ(integerBytes(-32768), (Bytes{28, 0x80, 0x00}));
}

TEST(WriteCFFInteger, BeyondSixteenBitsTakesTheFormOfCharstrings) {
    EXPECT_EQ(integerBytes(32768), (Bytes{255, 0, 0, 0x80, 0}));
    EXPECT_EQ(integerBytes(-32769), (Bytes{255, 0xFF, 0xFF, 0x7F, 0xFF}));
}

TEST(WriteDictValue, BeyondSixteenBitsTakesTheFormOfDicts) {
    EXPECT_EQ(dictBytes(32767), (Bytes{28, 0x7F, 0xFF}));
    EXPECT_EQ(dictBytes(32768), (Bytes{29, 0, 0, 0x80, 0}));
    EXPECT_EQ(dictBytes(-32769), (Bytes{29, 0xFF, 0xFF, 0x7F, 0xFF}));
    EXPECT_EQ(dictBytes(-5), (Bytes{134}));
}

TEST(WriteDictValue, WordsAreOneAndZero) {
    EXPECT_EQ(dictBytes(cffKey(FS_Word::true_)), (Bytes{140}));
    EXPECT_EQ(dictBytes(KWCommonNS::KWNameEnum::True), (Bytes{140}));
    EXPECT_EQ(dictBytes(cffKey(FS_Word::false_)), (Bytes{139}));
    EXPECT_EQ(dictBytes(cffKey(FS_Word::CharStrings)), (Bytes{139}));
}

TEST(WriteDictValue, RealsAreWrittenByNibbles) {
    EXPECT_EQ(dictBytes(0.5), (Bytes{30, 0x0A, 0x5F}));
    EXPECT_EQ(dictBytes(-2.25), (Bytes{30, 0xE2, 0xA2, 0x5F}));
    EXPECT_EQ(dictBytes(0.25), (Bytes{30, 0x0A, 0x25, 0xFF})); // an even count
    EXPECT_EQ(dictBytes(1e-7), (Bytes{30, 0x1C, 0x7F}));
    EXPECT_EQ(dictBytes(1e21), (Bytes{30, 0x1B, 0x21, 0xFF}));
}

TEST(WriteDictValue, WhatIsWrittenIsReadAgain) {
    for (const double value : {0.001, -0.0001, 0.039625, 1.5e-9, 123456.75, -1e30}) {
        const Bytes bytes = dictBytes(value);
        std::size_t cursor = 0;
        KWValue read;
        ASSERT_TRUE(readCFFOperand(ByteView(bytes), cursor, read)) << value;
        EXPECT_EQ(cursor, bytes.size()) << value;
        EXPECT_DOUBLE_EQ(read.getRealValue(), value);
    }
}

} // namespace
} // namespace KWFontService_NS
