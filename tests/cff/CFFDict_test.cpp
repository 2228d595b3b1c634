#include "cff/CFFDict.h"

#include "common/KWLimits.h"
#include "support/CffTable.h"

#include <KWCommon15/KWNamedValue.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// One operand, which must take all the bytes.
KWValue operandOf(const Bytes& bytes) {
    std::size_t cursor = 0;
    KWValue value;
    EXPECT_TRUE(readCFFOperand(ByteView(bytes), cursor, value)) << bytes.hex();
    EXPECT_EQ(cursor, bytes.size()) << bytes.hex();
    return value;
}

void expectInteger(const Bytes& bytes, int expected) {
    const KWValue value = operandOf(bytes);
    EXPECT_TRUE(value.isInteger()) << bytes.hex();
    EXPECT_EQ(value.getIntegerValue(), expected) << bytes.hex();
}

TEST(CFFOperand, IntegersOfOneAndTwoBytes) {
    expectInteger({32}, -107);
    expectInteger({139}, 0);
    expectInteger({246}, 107);
    expectInteger({247, 0}, 108);
    expectInteger({250, 255}, 1131);
    expectInteger({251, 0}, -108);
    expectInteger({254, 255}, -1131);
}

// Unlike in charstrings.
TEST(CFFOperand, AShortIntegerHasNoSign) {
    expectInteger({28, 0x00, 0x6A}, 106);
    expectInteger({28, 0xFF, 0x6A}, 65386);
}

TEST(CFFOperand, ALongIntegerHasASign) {
    expectInteger({29, 0x7F, 0xFF, 0xFF, 0xFF}, 0x7FFFFFFF);
    expectInteger({29, 0xFF, 0xFF, 0xFF, 0x6A}, -150);
}

void expectReal(const Bytes& bytes, double expected) {
    const KWValue value = operandOf(bytes);
    EXPECT_TRUE(value.isReal()) << bytes.hex();
    EXPECT_DOUBLE_EQ(value.getRealValue(), expected) << bytes.hex();
}

TEST(CFFOperand, ARealIsReadByNibbles) {
    expectReal({30, 0xE2, 0xA2, 0x5F}, -2.25);
    expectReal({30, 0x0A, 0x14, 0x05, 0x41, 0xC3, 0xFF}, 0.140541e-3);
    expectReal({30, 0x1B, 0x3F}, 1e3);
    expectReal({30, 0xA5, 0xF0}, 0.5);              // ends in the high nibble
    expectReal({30, 0x1D, 0xD2, 0xA5, 0xFF}, 12.5); // 13 counts for nothing
}

TEST(CFFOperand, ARealWithoutPointIsAnInteger) {
    expectInteger({30, 0xE1, 0x2F}, -12);
}

TEST(CFFOperand, ARealThatIsNoNumberIsNull) {
    for (const Bytes& bytes : {Bytes{30, 0xFF}, Bytes{30, 0xEE, 0xFF}, Bytes{30, 0xAF},
                               Bytes{30, 0x1C, 0xFF}, Bytes{30, 0xBF}})
        EXPECT_TRUE(operandOf(bytes).isNull()) << bytes.hex();
}

TEST(CFFOperand, BytesThatTheFormatReservesAreNull) {
    EXPECT_TRUE(operandOf({31}).isNull());
    EXPECT_TRUE(operandOf({255}).isNull());
}

TEST(CFFOperand, OneThatIsCutOffIsNone) {
    for (const Bytes& bytes : {Bytes{}, Bytes{28}, Bytes{28, 1}, Bytes{29, 1, 2, 3}, Bytes{247},
                               Bytes{254}, Bytes{30}, Bytes{30, 0x12, 0x34}}) {
        std::size_t cursor = 0;
        KWValue value;
        EXPECT_FALSE(readCFFOperand(ByteView(bytes), cursor, value)) << bytes.hex();
        EXPECT_EQ(cursor, bytes.size());
        EXPECT_TRUE(value.isNull());
    }
}

TEST(CFFOperand, ARealOfAnyLengthIsReadToItsEnd) {
    Bytes bytes = Bytes{30, 0x1A}.fill(70000, 0x23).u8(0x4F);
    EXPECT_NEAR(operandOf(bytes).getRealValue(), 1.2323232323, 1e-10);
    bytes = Bytes{30}.fill(70000, 0x99).u8(0xFF);
    EXPECT_GT(operandOf(bytes).getRealValue(), 1e300);
}

TEST(CFFOperand, OfALongRealTheFirstCharactersCount) {
    const auto tinyOf = [](std::size_t zeros) {
        // .000...1, times as much as makes it 0.1 again
        std::string text = '.' + std::string(zeros, '0') + "1E" + std::to_string(zeros);
        return operandOf(cffReal(text));
    };
    EXPECT_DOUBLE_EQ(tinyOf(200).getRealValue(), 0.1);
    EXPECT_EQ(tinyOf(KWCommonNS::kMaxDictRealLength).getRealValue(), 0);
}

// --- rows ---------------------------------------------------------------------------------------

struct Row {
    Bytes op;
    FS_Word key;
    CFFEntry entry;
};

Bytes escaped(int second) {
    return Bytes{12, second};
}

/// The operands 7, 2.5 before an operator, as the row keeps them.
KWValue storedOf(CFFEntry entry) {
    KWValue array;
    switch (entry) {
    case CFFEntry::Integer:
        return 2;
    case CFFEntry::Number:
        return 2.5;
    case CFFEntry::IntegerFlag:
    case CFFEntry::NumberFlag:
        return cffKey(FS_Word::true_);
    case CFFEntry::Array:
        array.setNamedItem(cffKey(1), 7);
        array.setNamedItem(cffKey(2), 2.5);
        break;
    }
    return array;
}

void expectRows(const std::vector<Row>& rows, std::span<const CFFDictRow> table) {
    EXPECT_EQ(rows.size(), table.size());
    for (const Row& row : rows) {
        const Bytes dict = Bytes{139 + 7}.bytes(cffReal("2.5")).bytes(row.op);
        KWValue expected;
        expected.setNamedItem(cffKey(row.key), storedOf(row.entry));
        EXPECT_EQ(readCFFDict(ByteView(dict), table), expected) << row.op.hex();
    }
}

/// Every operator that is not in a list of rows.
void expectTheRestDropped(const std::vector<Row>& rows, std::span<const CFFDictRow> table) {
    for (int op = 0; op < 28 + 256; ++op) {
        const Bytes bytes = op < 28 ? Bytes{op} : escaped(op - 28);
        if (bytes == Bytes{12} || std::ranges::find(rows, bytes, &Row::op) != rows.end())
            continue;
        const Bytes dict = Bytes{139 + 7}.bytes(bytes);
        EXPECT_TRUE(readCFFDict(ByteView(dict), table).isNull()) << bytes.hex();
    }
}

using enum CFFEntry;

TEST(CFFDict, TheRowsOfTheTopDict) {
    const std::vector<Row> rows{{{0}, FS_Word::version, Integer},
                                {{1}, FS_Word::Notice, Integer},
                                {{2}, FS_Word::FullName, Integer},
                                {{3}, FS_Word::FamilyName, Integer},
                                {{4}, FS_Word::Weight, Integer},
                                {{5}, FS_Word::FontBBox, Array},
                                {escaped(0), FS_Word::Copyright, Integer},
                                {escaped(1), FS_Word::isFixedPitch, IntegerFlag},
                                {escaped(2), FS_Word::ItalicAngle, Integer},
                                {escaped(3), FS_Word::UnderlinePosition, Integer},
                                {escaped(4), FS_Word::UnderlineThickness, Integer},
                                {escaped(5), FS_Word::PaintType, Integer},
                                {escaped(6), FS_Word::CharstringType, Integer},
                                {escaped(7), FS_Word::FontMatrix, Array},
                                {escaped(8), FS_Word::StrokeWidth, Integer},
                                {escaped(20), FS_Word::SyntheticBase, Integer},
                                {escaped(21), FS_Word::PostScript, Integer},
                                {escaped(22), FS_Word::BaseFontName, Integer},
                                {escaped(23), FS_Word::BaseFontBlend, Array},
                                {escaped(30), FS_Word::ROS, Array},
                                {escaped(31), FS_Word::CIDFontVersion, Integer},
                                {escaped(32), FS_Word::CIDFontRevision, Integer},
                                {escaped(33), FS_Word::CIDFontType, Integer},
                                {escaped(34), FS_Word::CIDCount, Integer},
                                {escaped(35), FS_Word::UIDBase, Integer},
                                {escaped(36), FS_Word::FDArray, Integer},
                                {escaped(37), FS_Word::FDSelect, Integer},
                                {escaped(38), FS_Word::FontName, Integer},
                                {{13}, FS_Word::UniqueID, Integer},
                                {{14}, FS_Word::XUID, Integer},
                                {{15}, FS_Word::charset, Integer},
                                {{16}, FS_Word::Encoding, Integer},
                                {{17}, FS_Word::CharStrings, Integer},
                                {{18}, FS_Word::Private, Array}};
    expectRows(rows, topDictRows());
    expectTheRestDropped(rows, topDictRows());
}

TEST(CFFDict, TheRowsOfThePrivateDict) {
    const std::vector<Row> rows{{{6}, FS_Word::BlueValues, Array},
                                {{7}, FS_Word::OtherBlues, Array},
                                {{8}, FS_Word::FamilyBlues, Array},
                                {{9}, FS_Word::FamilyOtherBlues, Array},
                                {{10}, FS_Word::StdHW, Number},
                                {{11}, FS_Word::StdVW, Number},
                                {escaped(9), FS_Word::BlueScale, Number},
                                {escaped(10), FS_Word::BlueShift, Number},
                                {escaped(11), FS_Word::BlueFuzz, Number},
                                {escaped(12), FS_Word::StemSnapH, Array},
                                {escaped(13), FS_Word::StemSnapV, Array},
                                {escaped(14), FS_Word::ForceBold, NumberFlag},
                                {escaped(17), FS_Word::LanguageGroup, Number},
                                {escaped(18), FS_Word::ExpansionFactor, Number},
                                {escaped(19), FS_Word::initialRandomSeed, Number},
                                {{19}, FS_Word::Subrs, Number},
                                {{20}, FS_Word::defaultWidthX, Number},
                                {{21}, FS_Word::nominalWidthX, Number}};
    expectRows(rows, privateDictRows());
    expectTheRestDropped(rows, privateDictRows());
}

TEST(CFFDict, TheRowsOfAFontDict) {
    const std::vector<Row> rows{{escaped(38), FS_Word::FontName, Integer},
                                {{18}, FS_Word::Private, Array}};
    expectRows(rows, fontDictRows());
    expectTheRestDropped(rows, fontDictRows()); // FontMatrix among them
}

TEST(CFFDict, KeysAreTheNumbersOfTheirWords) {
    const Bytes dict{139, 17, 139, 0};
    const KWValue top = readCFFDict(ByteView(dict), topDictRows());
    ASSERT_EQ(top.getNamedValueMap().size(), 2U);
    auto entry = top.getNamedValueMap().begin();
    EXPECT_EQ(static_cast<int>(KWCommonNS::KWNameEnum(entry++->name)), 11);
    EXPECT_EQ(static_cast<int>(KWCommonNS::KWNameEnum(entry->name)), 153);
}

// --- what becomes of operands -------------------------------------------------------------------

KWValue topEntry(const Bytes& dict, FS_Word key) {
    return readCFFDict(ByteView(dict), topDictRows()).getNamedItem(cffKey(key));
}
KWValue privateEntry(const Bytes& dict, FS_Word key) {
    return readCFFDict(ByteView(dict), privateDictRows()).getNamedItem(cffKey(key));
}

TEST(CFFDict, ItalicAngleIsCutToAWholeNumber) {
    const KWValue angle = topEntry(cffReal("-12.5").u8(12).u8(2), FS_Word::ItalicAngle);
    EXPECT_TRUE(angle.isInteger());
    EXPECT_EQ(angle.getIntegerValue(), -12);
}

TEST(CFFDict, AFontBBoxOfShortIntegersLosesItsSigns) {
    const Bytes dict = Bytes{28, 0xFF, 0x6A, 251, 42}.bytes(cffInteger(-150)).u8(139).u8(5);
    const KWValue box = topEntry(dict, FS_Word::FontBBox);
    EXPECT_EQ(box.getNamedItem(cffKey(1)).getIntegerValue(), 65386);
    EXPECT_EQ(box.getNamedItem(cffKey(2)).getIntegerValue(), -150);
    EXPECT_EQ(box.getNamedItem(cffKey(3)).getIntegerValue(), -150);
}

TEST(CFFDict, FixedPitchIsAnythingButZero) {
    EXPECT_EQ(topEntry({140, 12, 1}, FS_Word::isFixedPitch), cffKey(FS_Word::true_));
    EXPECT_EQ(topEntry({138, 12, 1}, FS_Word::isFixedPitch), cffKey(FS_Word::true_));
    EXPECT_EQ(topEntry({139, 12, 1}, FS_Word::isFixedPitch), cffKey(FS_Word::false_));
    EXPECT_EQ(topEntry(cffReal("0.5").u8(12).u8(1), FS_Word::isFixedPitch),
              cffKey(FS_Word::false_));
}

TEST(CFFDict, ForceBoldIsAnythingButTheIntegerZero) {
    EXPECT_EQ(privateEntry({139, 12, 14}, FS_Word::ForceBold), cffKey(FS_Word::false_));
    EXPECT_EQ(privateEntry({140, 12, 14}, FS_Word::ForceBold), cffKey(FS_Word::true_));
    EXPECT_EQ(privateEntry(cffReal("0.0").u8(12).u8(14), FS_Word::ForceBold),
              cffKey(FS_Word::true_));
}

TEST(CFFDict, OperandsGoWithTheirOperatorEvenWhenItIsDropped) {
    const Bytes dict{140, 141, 6, 142, 5};
    const KWValue box = topEntry(dict, FS_Word::FontBBox);
    EXPECT_EQ(box.getNamedValueMap().size(), 1U);
    EXPECT_EQ(box.getNamedItem(cffKey(1)).getIntegerValue(), 3);
    for (int op = 19; op < 28; ++op)
        EXPECT_EQ(topEntry({140, op, 141, 1}, FS_Word::Notice), KWValue(2)) << op;
}

TEST(CFFDict, TheLastOfTwoEntriesStands) {
    EXPECT_EQ(topEntry({140, 1, 150, 1}, FS_Word::Notice).getIntegerValue(), 11);
}

TEST(CFFDict, AnOperatorWithoutOperandsLeavesNothing) {
    for (const CFFDictRow& row : topDictRows()) {
        Bytes dict;
        if (row.op > 0xFF)
            dict.u16(row.op);
        else
            dict.u8(row.op);
        EXPECT_TRUE(readCFFDict(ByteView(dict), topDictRows()).isNull()) << row.op;
    }
    const Bytes dict{140, 1, 2};
    CFFDictWalker walk{ByteView(dict)};
    ASSERT_TRUE(walk.next() && walk.next());
    EXPECT_EQ(walk.op(), 2);
    EXPECT_TRUE(walk.operands().empty());
    EXPECT_TRUE(walk.last().isNull());
}

TEST(CFFDict, AnOperandThatIsNoValueKeepsItsPlace) {
    const KWValue box = topEntry({31, 140, 5}, FS_Word::FontBBox);
    EXPECT_TRUE(box.getNamedItem(cffKey(1)).isNull());
    EXPECT_EQ(box.getNamedItem(cffKey(2)).getIntegerValue(), 1);
    EXPECT_EQ(topEntry({140, 255, 1}, FS_Word::Notice), KWValue(0));
}

TEST(CFFDict, WhatIsCutOffEndsTheDict) {
    EXPECT_TRUE(readCFFDict(ByteView(Bytes{140, 12}), topDictRows()).isNull());
    const Bytes dict{140, 1, 29, 0, 0};
    EXPECT_EQ(topEntry(dict, FS_Word::Notice).getIntegerValue(), 1);
    const Bytes endless = Bytes{140, 1, 30}.fill(65000, 0x12);
    EXPECT_EQ(topEntry(endless, FS_Word::Notice).getIntegerValue(), 1);
}

TEST(CFFDict, OperandsWithoutEndAreNotKept) {
    Bytes dict = Bytes{140, 1}.fill(65000, 141);
    CFFDictWalker walk{ByteView(dict)};
    ASSERT_TRUE(walk.next());
    ASSERT_FALSE(walk.next());
    dict.u8(150).u8(14);
    // The last one is known whatever stands before it.
    EXPECT_EQ(topEntry(dict, FS_Word::XUID).getIntegerValue(), 11);
    dict.truncate(dict.size() - 1).u8(5);
    const KWValue box = topEntry(dict, FS_Word::FontBBox);
    EXPECT_EQ(box.getNamedValueMap().size(), KWCommonNS::kMaxDictOperands);
}

} // namespace
} // namespace KWFontService_NS
