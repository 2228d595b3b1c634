#include "cff/CFFIndex.h"

#include "cff/CffFixture.h"

namespace KWFontService_NS {
namespace {

using namespace KWTest;

std::optional<CFFIndex> indexOf(const Bytes& bytes, std::uint64_t at = 0) {
    TableStream stream(bytes);
    return CFFIndex::read(stream.table, at);
}

std::optional<std::uint64_t> endOf(const Bytes& bytes, std::uint64_t at = 0) {
    TableStream stream(bytes);
    const auto head = CFFIndexHead::read(stream.table, at);
    if (!head)
        return std::nullopt;
    return head->end();
}

TEST(CFFIndex, ItemsLieBetweenTheirOffsets) {
    const Bytes bytes = Bytes{9, 9}.bytes(cffIndex({Bytes{1}, Bytes{}, Bytes{2, 3}})).u8(9);
    const auto index = indexOf(bytes, 2);
    ASSERT_TRUE(index);
    ASSERT_EQ(index->size(), 3U);
    EXPECT_EQ(bytesOf((*index)[0]), (Bytes{1}));
    EXPECT_EQ(bytesOf((*index)[1]), Bytes{});
    EXPECT_EQ(bytesOf((*index)[2]), (Bytes{2, 3}));
    EXPECT_TRUE((*index)[3].empty());
    EXPECT_EQ(index->end(), bytes.size() - 1);
    EXPECT_EQ(index->dataSize(), 3U);
    EXPECT_EQ(index->byteSize(), 4U + 3U);
}

TEST(CFFIndex, OffsetsHaveOneToFourBytes) {
    const Bytes one{0, 1, 1, 1, 3, 'a', 'b'};
    const Bytes two{0, 1, 2, 0, 1, 0, 3, 'a', 'b'};
    const Bytes three{0, 1, 3, 0, 0, 1, 0, 0, 3, 'a', 'b'};
    const Bytes four{0, 1, 4, 0, 0, 0, 1, 0, 0, 0, 3, 'a', 'b'};
    for (const Bytes& bytes : {one, two, three, four}) {
        const auto index = indexOf(bytes);
        ASSERT_TRUE(index) << bytes.hex();
        EXPECT_EQ(index->text(0), "ab");
        EXPECT_EQ(index->end(), bytes.size());
    }
}

TEST(CFFIndex, AnyOtherWidthIsRefused) {
    for (int offSize = 0; offSize < 256; ++offSize) {
        Bytes bytes = Bytes().u16(1).u8(offSize);
        bytes.fill(2 * 255U, 1).zero(16);
        EXPECT_EQ(indexOf(bytes).has_value(), offSize >= 1 && offSize <= 2) << offSize;
    }
}

TEST(CFFIndex, DataThatEndsBeforeItBeginsIsRefused) {
    EXPECT_FALSE(indexOf({0, 1, 1, 1, 0, 'a', 'b'}));
    EXPECT_EQ(endOf({0, 1, 1, 1, 0, 'a', 'b'}), std::nullopt);
    EXPECT_TRUE(indexOf({0, 1, 1, 1, 1, 'a', 'b'}));
}

TEST(CFFIndex, DataBeyondTheTableIsRefused) {
    EXPECT_FALSE(indexOf({0, 1, 1, 1, 4, 'a', 'b'}));
    EXPECT_FALSE(indexOf({0, 1, 4, 0, 0, 0, 1, 0xFF, 0xFF, 0xFF, 0xFF, 'a', 'b'}));
    EXPECT_FALSE(indexOf({0xFF, 0xFF, 4, 0, 0, 0, 1}));
    EXPECT_FALSE(indexOf({0, 1}));
    EXPECT_FALSE(indexOf({0}));
    EXPECT_FALSE(indexOf({0, 1, 1, 1, 1}, 100));
}

TEST(CFFIndex, AnItemWhoseOffsetsLieIsEmptyAndTheOthersAreNot) {
    const auto index = indexOf({0, 5, 1, 1, 2, 9, 1, 0, 4, 'a', 'b', 'c'});
    ASSERT_TRUE(index);
    EXPECT_EQ(index->text(0), "a");
    EXPECT_EQ(index->text(1), ""); // up to 9: past the end
    EXPECT_EQ(index->text(2), ""); // backwards
    EXPECT_EQ(index->text(3), ""); // backwards, to 0
    EXPECT_EQ(index->text(4), ""); // from 0
}

TEST(CFFIndex, TheLargestCountHasAnOffsetMore) {
    Bytes bytes = Bytes().u16(0xFFFF).u8(1).fill(0xFFFF, 1).u8(3).u8('a').u8('b');
    const auto index = indexOf(bytes);
    ASSERT_TRUE(index);
    EXPECT_EQ(index->size(), 0xFFFFU);
    EXPECT_EQ(index->text(0xFFFD), "");
    EXPECT_EQ(index->text(0xFFFE), "ab");
    EXPECT_EQ(index->end(), bytes.size());
}

TEST(CFFIndexHead, AnItemHasAPlaceWhereItsOffsetsDoNotLie) {
    TableStream stream({0, 5, 1, 1, 2, 9, 1, 0, 4, 'a', 'b', 'c', 0, 0, 0, 0, 0, 0});
    const auto head = CFFIndexHead::read(stream.table, 0);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->dataStart(), 9U);
    const auto first = head->item(0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->offset, 9U);
    EXPECT_EQ(first->length, 1U);
    for (std::size_t i = 1; i < 7; ++i) // beyond the data, backwards twice, from 0, not there
        EXPECT_FALSE(head->item(i)) << i;
}

TEST(CFFIndex, ItemsMayLieOverEachOther) {
    const auto index = indexOf({0, 3, 1, 1, 4, 1, 4, 'a', 'b', 'c'});
    ASSERT_TRUE(index);
    EXPECT_EQ(index->text(0), "abc");
    EXPECT_EQ(index->text(1), "");
    EXPECT_EQ(index->text(2), "abc");
}

TEST(CFFIndex, AnEmptyOneIsSteppedOverWhereTheNextCountIsSmall) {
    EXPECT_EQ(endOf({0, 0, 0, 2, 1}), 2U);
    EXPECT_EQ(endOf({0, 0}), 2U); // at the end of the table
    const auto index = indexOf({0, 0, 0, 0});
    ASSERT_TRUE(index);
    EXPECT_TRUE(index->empty());
    EXPECT_TRUE((*index)[0].empty());
}

// An INDEX is read as three bytes and its offsets even when it is empty.
TEST(CFFIndex, AnEmptyOneBeforeALargeOneThrowsTheWalkOff) {
    // What follows has 0x0105 items and offsets of 2 bytes: the walk takes 01 for the width, 05 for
    // the last offset.
    EXPECT_EQ(endOf({0, 0, 1, 5, 2, 0, 1}), 8U);
    EXPECT_EQ(endOf({0, 0, 4, 5, 2, 0, 1}), 7U + 0x05020001 - 1);
    // A width that does not exist reads as 0, and so does an offset that the table lacks.
    EXPECT_EQ(endOf({0, 0, 9, 5, 2, 0, 1}), 11U);
    EXPECT_EQ(endOf({0, 0, 2}), 4U);
}

TEST(CFFIndex, TheCountAloneNeedsTwoBytes) {
    TableStream stream({9, 0x12, 0x34});
    EXPECT_EQ(readIndexCount(stream.table, 1), std::optional<std::uint16_t>(0x1234));
    EXPECT_EQ(readIndexCount(stream.table, 2), std::nullopt);
    EXPECT_EQ(readIndexCount(stream.table, 0), std::nullopt);
}

TEST(CFFIndex, TheBiasOfSubrsGrowsWithTheirNumber) {
    EXPECT_EQ(subrBias(0), 107);
    EXPECT_EQ(subrBias(1239), 107);
    EXPECT_EQ(subrBias(1240), 1131);
    EXPECT_EQ(subrBias(33899), 1131);
    EXPECT_EQ(subrBias(33900), 32768);
    EXPECT_EQ(subrBias(65535), 32768);
}

} // namespace
} // namespace KWFontService_NS
