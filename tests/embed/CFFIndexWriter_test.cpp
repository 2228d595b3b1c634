#include "embed/CFFIndexWriter.h"

#include "CffOutput.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

Bytes headOf(const std::vector<std::uint32_t>& offsets) {
    KWMemStream output;
    EXPECT_EQ(writeIndexHead(output, offsets), offsets.size() > 1);
    return bytesOf(output);
}

TEST(CFFIndexWriter, TheWidthOfOffsetsFollowsTheEndOfTheData) {
    EXPECT_EQ(headOf({0, 254}), (Bytes{0, 1, 1, 1, 255}));
    EXPECT_EQ(headOf({0, 255}), (Bytes{0, 1, 2, 0, 1, 1, 0}));
    EXPECT_EQ(headOf({0, 65534}), (Bytes{0, 1, 2, 0, 1, 255, 255}));
    EXPECT_EQ(headOf({0, 65535}), (Bytes{0, 1, 3, 0, 0, 1, 1, 0, 0}));
    EXPECT_EQ(headOf({0, 0xFFFFFE}), (Bytes{0, 1, 3, 0, 0, 1, 255, 255, 255}));
    EXPECT_EQ(headOf({0, 0xFFFFFF}), (Bytes{0, 1, 4, 0, 0, 0, 1, 1, 0, 0, 0}));
    EXPECT_EQ(headOf({0, 3, 3, 8}), (Bytes{0, 3, 1, 1, 4, 4, 9}));
}

TEST(CFFIndexWriter, WithoutItemsItIsACountOfTwoBytes) {
    EXPECT_EQ(headOf({0}), (Bytes{0, 0}));
    EXPECT_EQ(headOf({}), (Bytes{0, 0}));
    KWMemStream output;
    KWMemStream data;
    data.append("never written");
    writeIndex(output, data, std::vector<std::uint32_t>{0});
    EXPECT_EQ(bytesOf(output), (Bytes{0, 0}));
}

TEST(CFFIndexWriter, AnIndexIsItsHeadAndItsData) {
    KWMemStream output;
    KWMemStream data;
    data.append("abcde");
    writeIndex(output, data, std::vector<std::uint32_t>{0, 2, 5});
    EXPECT_EQ(bytesOf(output), cffIndex({Bytes::ofText("ab"), Bytes::ofText("cde")}));
}

TEST(CFFIndexWriter, ACallerMayAskForWiderOffsets) {
    KWMemStream output;
    EXPECT_TRUE(writeIndexHead(output, std::vector<std::uint32_t>{0, 2}, 4));
    EXPECT_EQ(bytesOf(output), (Bytes{0, 1, 4, 0, 0, 0, 1, 0, 0, 0, 3}));
}

TEST(CFFIndexWriter, AnIndexIsCopiedAsItStands) {
    const Bytes index{0, 1, 3, 0, 0, 1, 0, 0, 3, 77, 78};
    TableStream stream(joined(Bytes{9, 9}, index, Bytes{5}));
    std::uint64_t at = 2;
    KWMemStream output;
    EXPECT_TRUE(copyIndex(stream.table, at, output));
    EXPECT_EQ(bytesOf(output), index);
    EXPECT_EQ(at, 2 + index.size());
    at = 2;
    EXPECT_TRUE(skipIndex(stream.table, at));
    EXPECT_EQ(at, 2 + index.size());
}

TEST(CFFIndexWriter, AnEmptyIndexHasTwoBytesWhateverFollows) {
    TableStream stream(Bytes{0, 0, 4, 0, 0, 0, 9});
    std::uint64_t at = 0;
    KWMemStream output;
    EXPECT_TRUE(copyIndex(stream.table, at, output));
    EXPECT_EQ(bytesOf(output), (Bytes{0, 0}));
    EXPECT_EQ(at, 2u);
    at = 0;
    EXPECT_TRUE(skipIndex(stream.table, at));
    EXPECT_EQ(at, 2u);
}

TEST(CFFIndexWriter, AnIndexThatIsNotAllThereIsNotCopied) {
    TableStream stream(Bytes{0, 1, 1, 1, 9, 77, 78});
    std::uint64_t at = 0;
    KWMemStream output;
    EXPECT_FALSE(copyIndex(stream.table, at, output));
    at = 6;
    EXPECT_FALSE(copyIndex(stream.table, at, output));
    EXPECT_EQ(output.size(), 0u);
    for (const int offSize : {0, 5, 255}) {
        TableStream lying(Bytes{0, 1, offSize, 1, 2, 77, 78, 79, 80, 81, 82, 83, 84});
        at = 0;
        EXPECT_FALSE(skipIndex(lying.table, at)) << offSize;
    }
}

} // namespace
} // namespace KWFontService_NS
