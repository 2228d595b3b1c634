#include "cff/CFFStream.h"

#include "cff/CffFixture.h"

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(CFFStream, OffsetsCountFromTheTableAndEndWithIt) {
    std::istringstream stream("0123456789");
    CFFStream table(stream, 2, 5);
    std::array<std::uint8_t, 3> bytes{};
    EXPECT_TRUE(table.read(2, bytes));
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{'4', '5', '6'}));
    EXPECT_FALSE(table.read(3, bytes));
    EXPECT_EQ(table.readUpTo(3, bytes), 2U);
    EXPECT_EQ(table.readUpTo(5, bytes), 0U);
    EXPECT_EQ(table.readUpTo(~std::uint64_t{0}, bytes), 0U);
    // The short reads have not spoiled the stream.
    EXPECT_TRUE(table.read(0, bytes));
}

TEST(CFFStream, ALengthBeyondTheTableIsRefusedBeforeAnythingIsAllocated) {
    std::istringstream stream("0123456789");
    CFFStream table(stream, 2, 5);
    std::vector<std::uint8_t> bytes;
    EXPECT_FALSE(table.read(1, 0xFFFFFFFFU, bytes));
    EXPECT_EQ(bytes.capacity(), 0U);
    EXPECT_TRUE(table.read(5, 0, bytes));
    EXPECT_FALSE(table.read(6, 0, bytes));
    EXPECT_TRUE(table.read(1, 4, bytes));
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{'3', '4', '5', '6'}));
}

TEST(CFFStream, ATableLongerThanItsFileIsAShortRead) {
    std::istringstream stream("0123456789");
    CFFStream table(stream, 2, 0xFFFFFFFF);
    std::vector<std::uint8_t> bytes;
    EXPECT_FALSE(table.read(1, 0xFFFFFF00U, bytes));
    EXPECT_LE(bytes.capacity(), std::size_t{1} << 20);
    EXPECT_TRUE(table.read(1, 7, bytes));
}

TEST(CFFCursor, ReadsForwardThroughEveryPiece) {
    std::string text;
    for (int i = 0; i < 3000; ++i)
        text.push_back(static_cast<char>(i * 7));
    std::istringstream stream(text);
    CFFStream table(stream, 0, 3000);
    CFFCursor cursor(table, 1);
    for (unsigned i = 1; i + 1 < 3000; i += 3) {
        const unsigned high = i * 7 & 0xFF;
        const unsigned low = (i + 1) * 7 & 0xFF;
        ASSERT_EQ(cursor.u16(), std::optional<std::uint16_t>((high << 8) + low)) << i;
        const auto byte = cursor.u8();
        if (i + 2 < 3000)
            ASSERT_EQ(byte, std::optional<std::uint8_t>((i + 2) * 7 & 0xFF)) << i;
        else
            ASSERT_EQ(byte, std::nullopt);
    }
    EXPECT_EQ(cursor.u8(), std::nullopt);
}

TEST(CFFCursor, ANumberCutInHalfIsNone) {
    std::istringstream stream("abc");
    CFFStream table(stream, 0, 3);
    CFFCursor cursor(table, 2);
    EXPECT_EQ(cursor.u16(), std::nullopt);
    CFFCursor beyond(table, 100);
    EXPECT_EQ(beyond.u8(), std::nullopt);
}

TEST(CFFStream, CopiesPiecesOfAnyLengthThatTheTableHas) {
    const Bytes bytes = Bytes().fill(70000, 1).fill(70000, 2);
    TableStream stream(bytes);
    KWCommonNS::KWMemStream output;
    output.append("x");
    EXPECT_TRUE(stream.table.copy(1, 139998, output));
    EXPECT_EQ(Bytes::ofText({output.data(), output.size()}),
              Bytes::ofText("x").bytes(bytes.slice(1, 139998)));
    EXPECT_TRUE(stream.table.copy(140000, 0, output));
    EXPECT_FALSE(stream.table.copy(140000, 1, output));
    EXPECT_FALSE(stream.table.copy(140001, 0, output));
    EXPECT_FALSE(stream.table.copy(1, ~std::uint64_t{0}, output));
    output.setstate(std::ios::badbit);
    EXPECT_FALSE(stream.table.copy(0, 1, output));
}

} // namespace
} // namespace KWFontService_NS
