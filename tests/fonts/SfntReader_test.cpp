#include "fonts/SfntFixture.h"
#include "fonts/SfntReader.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::complaintOf;

class SfntReaderTest : public testing::Test {
protected:
    std::istringstream stream{"0123456789"};
    TTI_Directory directory;
    KWError error;
    SfntReader reader{stream, directory, error, nullptr};
};

TEST_F(SfntReaderTest, ReadsFromAnAbsoluteOffset) {
    std::array<std::uint8_t, 3> bytes;
    stream.seekg(7);
    EXPECT_TRUE(reader.read(2, bytes));
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{'2', '3', '4'}));
}

TEST_F(SfntReaderTest, AFailedStreamStateIsClearedFirst) {
    std::array<std::uint8_t, 4> bytes;
    EXPECT_FALSE(reader.read(8, bytes));
    EXPECT_TRUE(reader.read(0, bytes));
}

TEST_F(SfntReaderTest, AShortReadAnswersWhatThereIs) {
    std::array<std::uint8_t, 4> bytes;
    EXPECT_EQ(reader.readUpTo(8, bytes), 2U);
    EXPECT_EQ(reader.readUpTo(10, bytes), 0U);
    EXPECT_EQ(reader.readUpTo(11, bytes), 0U);
    EXPECT_EQ(reader.readUpTo(0xFFFFFFFFFFFFFFFF, bytes), 0U);
}

TEST_F(SfntReaderTest, ALengthThatLiesCostsNoMemory) {
    std::vector<std::uint8_t> bytes;
    EXPECT_FALSE(reader.read(1, 0xFFFFFFF0U, bytes));
    EXPECT_EQ(bytes.size(), 9U);
    EXPECT_LE(bytes.capacity(), std::size_t{1} << 20);
}

TEST_F(SfntReaderTest, ReadsAcrossTheTrustedBlock) {
    std::string text(3 << 20, 'x');
    text.back() = 'y';
    std::istringstream large(text);
    SfntReader largeReader(large, directory, error, nullptr);
    std::vector<std::uint8_t> bytes;
    ASSERT_TRUE(largeReader.read(1, text.size() - 1, bytes));
    EXPECT_EQ(bytes.size(), text.size() - 1);
    EXPECT_EQ(bytes.back(), 'y');
}

TEST_F(SfntReaderTest, AReadPastTheBudgetOfAScanIsShort) {
    constexpr std::size_t kCost = KWCommonNS::kFacesScanReadCost;
    ScanBudget budget(2 * kCost + 4);
    SfntReader scan(stream, directory, error, nullptr, &budget);
    std::array<std::uint8_t, 2> two;
    std::vector<std::uint8_t> bytes{1};
    EXPECT_TRUE(scan.read(0, two)) << "counts as much as a longer one";
    EXPECT_FALSE(scan.read(0, kCost + 5, bytes));
    EXPECT_TRUE(bytes.empty());
    EXPECT_EQ(scan.readUpTo(0, kCost + 4, bytes), 10U) << "what is asked for counts";
    EXPECT_EQ(scan.readUpTo(0, two), 0U);
}

TEST_F(SfntReaderTest, AFailureIsReportedAndFalse) {
    EXPECT_FALSE(reader.fail(FS_ERROR_FONT_FILE, "detail"));
    EXPECT_EQ(complaintOf(error), KWTest::fileError("detail"));
}

} // namespace
} // namespace KWFontService_NS
