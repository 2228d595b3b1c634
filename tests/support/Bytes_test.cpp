#include "support/Bytes.h"

#include "common/ByteView.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace KWTest {
namespace {

TEST(Bytes, NumbersAreBigEndian) {
    const Bytes bytes = Bytes().u8(1).u16(0x0203).u24(0x040506).u32(0x0708090Au).i16(-2).i32(-1);
    EXPECT_EQ(bytes.hex(), "01 02 03 04 05 06 07 08 09 0A FF FE FF FF FF FF");
}

TEST(Bytes, ANumberThatDoesNotFitItsFieldThrows) {
    EXPECT_THROW(Bytes().u8(256), std::out_of_range);
    EXPECT_THROW(Bytes().u16(-32769), std::out_of_range);
    EXPECT_THROW(Bytes().i16(32768), std::out_of_range);
    EXPECT_THROW(Bytes().i32(0x80000000u), std::out_of_range);
    EXPECT_THROW(Bytes().f2dot14(2.0), std::out_of_range);
    EXPECT_THROW(Bytes().u24(0x1000000), std::out_of_range);
    EXPECT_THROW(Bytes().u32(std::uint64_t{1} << 32), std::out_of_range);
    EXPECT_THROW(Bytes().u32(~std::uint64_t{0} - std::uint64_t{0xFFFFFFFFu}), std::out_of_range);
    EXPECT_EQ(Bytes().u32(0xFFFFFFFFu), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(Bytes, FixedPointNumbersAreRoundedToTheirGrid) {
    EXPECT_EQ(Bytes().f2dot14(-0.5), (Bytes{0xE0, 0x00}));
    EXPECT_EQ(Bytes().fixed(-1.5), (Bytes{0xFF, 0xFE, 0x80, 0x00}));
}

TEST(Bytes, TextTagsAndUtf16AreWrittenAsTheyStand) {
    EXPECT_EQ(Bytes().tag("CFF").hex(), "43 46 46 20");
    EXPECT_THROW(Bytes().tag("glyfs"), std::out_of_range);
    EXPECT_EQ(Bytes::ofText("%!"), (Bytes{0x25, 0x21}));
    EXPECT_EQ(Bytes().utf16be(u"A\u3042"), (Bytes{0x00, 0x41, 0x30, 0x42}));
}

TEST(Bytes, ALabelNamesThePlaceOfItsField) {
    Bytes bytes;
    bytes.u16(4, "format").u16(0, "length").label("rest").zero(3);
    EXPECT_EQ(bytes.offsetOf("length"), 2u);
    EXPECT_EQ(bytes.offsetOf("rest"), 4u);
    bytes.patchU16At("length", bytes.size()).patchU8At("rest", 9).patchU16At(5u, -1);
    EXPECT_EQ(bytes, (Bytes{0, 4, 0, 7, 9, 0xFF, 0xFF}));
    EXPECT_THROW(bytes.offsetOf("nowhere"), std::out_of_range);
    EXPECT_THROW(bytes.patchU32At(4u, 0), std::out_of_range);
}

TEST(Bytes, PaddingFillsUpToTheMultiple) {
    EXPECT_EQ(Bytes().padTo(4).size(), 0u);
    EXPECT_EQ(Bytes().u8(1).padTo(4), (Bytes{1, 0, 0, 0}));
    EXPECT_EQ(Bytes().u32(1).padTo(4).size(), 4u);
}

TEST(Bytes, TruncationAndSlices) {
    const Bytes bytes{1, 2, 3, 4};
    EXPECT_EQ(Bytes(bytes).truncate(2), (Bytes{1, 2}));
    EXPECT_EQ(Bytes(bytes).truncate(9), bytes);
    EXPECT_EQ(bytes.slice(1, 2), (Bytes{2, 3}));
    EXPECT_THROW(bytes.slice(3, 2), std::out_of_range);
}

TEST(Bytes, ReadingBackIsBigEndianAndChecked) {
    const Bytes bytes{0xFF, 0xFE, 0x00, 0x01};
    EXPECT_EQ(bytes.u8At(0), 0xFF);
    EXPECT_EQ(bytes.u16At(1), 0xFE00);
    EXPECT_EQ(bytes.i16At(0), -2);
    EXPECT_EQ(bytes.u32At(0), 0xFFFE0001u);
    EXPECT_THROW(bytes.u32At(1), std::out_of_range);
}

TEST(Bytes, AViewReadsThemInPlace) {
    const Bytes bytes{0x12, 0x34};
    const KWCommonNS::ByteView view(bytes);
    EXPECT_EQ(view.data(), bytes.data());
    EXPECT_EQ(view.u16(0), 0x1234);
}

TEST(Bytes, ItsOwnBytesCanBeAppended) {
    Bytes bytes{1, 2};
    bytes.bytes(bytes);
    EXPECT_EQ(bytes, (Bytes{1, 2, 1, 2}));
}

} // namespace
} // namespace KWTest
