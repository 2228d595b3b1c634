#include "common/FileStream.h"

#include "SourceDoubles.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

using KWCommonNS::FileStream;
using namespace KWTest;

namespace {

struct Call {
    std::uint64_t offset;
    std::size_t count;
    bool operator==(const Call&) const = default;
};

// A file whose length may be a lie, as when it is cut short after it was opened.
class File : public KWPlatform::FileReader {
public:
    File(std::string bytes, std::vector<Call>& calls, std::uint64_t claimedSize)
        : bytes_(std::move(bytes)), calls_(calls), claimedSize_(claimedSize) {}

    std::size_t readAt(std::uint64_t offset, void* buffer, std::size_t count) override {
        calls_.push_back({offset, count});
        if (offset >= bytes_.size())
            return 0;
        const std::size_t got = std::min(count, bytes_.size() - static_cast<std::size_t>(offset));
        std::memcpy(buffer, bytes_.data() + offset, got);
        return got;
    }
    std::uint64_t size() const override { return claimedSize_; }

private:
    std::string bytes_;
    std::vector<Call>& calls_;
    std::uint64_t claimedSize_;
};

struct FileStreamTest : testing::Test {
    std::string bytes = patternBytes(20000);
    std::vector<Call> calls;
    FileStream stream{std::make_unique<File>(bytes, calls, bytes.size())};
};

} // namespace

TEST_F(FileStreamTest, OpeningAndSeekingReadNothing) {
    stream.seekg(5000);
    stream.seekg(-10, std::ios_base::end);
    EXPECT_EQ(stream.tellg(), 19990);
    stream.seekg(-90, std::ios_base::cur);
    EXPECT_EQ(stream.tellg(), 19900);
    EXPECT_TRUE(calls.empty());
}

TEST_F(FileStreamTest, SeeksWithinThePieceDoNotRefillIt) {
    EXPECT_EQ(readAt(stream, 100, 4), bytes.substr(100, 4));
    EXPECT_EQ(readAt(stream, 3000, 16), bytes.substr(3000, 16));
    EXPECT_EQ(readAt(stream, 100, 200), bytes.substr(100, 200));
    EXPECT_EQ(readAt(stream, 4100, 96), bytes.substr(4100, 96));
    EXPECT_EQ(calls, (std::vector<Call>{{100, 4096}}));
    EXPECT_EQ(readAt(stream, 99, 1), bytes.substr(99, 1)); // before the piece
    EXPECT_EQ(calls.size(), 2U);
}

TEST_F(FileStreamTest, AfterManySeeksElsewhereLittleMoreIsReadThanWhatIsWanted) {
    for (std::size_t i = 0; i < 16; ++i) { // the first seek leads nowhere
        const std::size_t at = i % 2 * 10000;
        EXPECT_EQ(readAt(stream, static_cast<std::streamoff>(at), 100), bytes.substr(at, 100));
        EXPECT_EQ(calls.back(), (Call{at, 4096}));
    }
    EXPECT_EQ(readAt(stream, 0, 100), bytes.substr(0, 100));
    EXPECT_EQ(calls.back(), (Call{0, 512}));
    EXPECT_EQ(readAt(stream, 10000, 600), bytes.substr(10000, 600));
    EXPECT_EQ(calls.back(), (Call{10000, 600}));
    EXPECT_EQ(readAt(stream, 12000, 512), bytes.substr(12000, 512));
    // On from there: pieces are large again.
    EXPECT_EQ(readBytes(stream, 1), bytes.substr(12512, 1));
    EXPECT_EQ(calls.back(), (Call{12512, 4096}));
    EXPECT_EQ(readAt(stream, 0, 1), bytes.substr(0, 1));
    EXPECT_EQ(calls.back(), (Call{0, 4096}));
}

TEST_F(FileStreamTest, AReadThatIsLargerThanTheBufferGoesStraightToTheCaller) {
    EXPECT_EQ(readBytes(stream, 10), bytes.substr(0, 10));
    EXPECT_EQ(readBytes(stream, 12000), bytes.substr(10, 12000));
    EXPECT_EQ(stream.tellg(), 12010);
    EXPECT_EQ(calls, (std::vector<Call>{{0, 4096}, {4096, 12010 - 4096}}));
    EXPECT_EQ(readBytes(stream, 5), bytes.substr(12010, 5));
}

TEST_F(FileStreamTest, AReadAcrossTheEndIsShort) {
    EXPECT_EQ(readAt(stream, 19995, 100), bytes.substr(19995));
    EXPECT_TRUE(stream.eof());
    EXPECT_EQ(readAt(stream, 15000, 8192), bytes.substr(15000));
    EXPECT_TRUE(stream.eof());
}

TEST_F(FileStreamTest, APositionPastTheEndFindsNothing) {
    EXPECT_EQ(readAt(stream, 20000, 1), "");
    EXPECT_EQ(readAt(stream, std::numeric_limits<std::int64_t>::max(), 1), "");
    EXPECT_EQ(readAt(stream, std::numeric_limits<std::int64_t>::max(), 8192), "");
    stream.clear();
    stream.seekg(10);
    stream.seekg(std::numeric_limits<std::int64_t>::max(), std::ios_base::cur);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    stream.seekg(-1);
    EXPECT_TRUE(stream.fail());
    EXPECT_EQ(readAt(stream, 0, 3), bytes.substr(0, 3));
}

TEST_F(FileStreamTest, TellsHowMuchIsLeft) {
    EXPECT_EQ(stream.rdbuf()->in_avail(), 20000);
    stream.seekg(20000);
    EXPECT_EQ(stream.rdbuf()->in_avail(), -1);
}

TEST_F(FileStreamTest, GivesBackACharacterBeforeTheBufferedPiece) {
    stream.seekg(100);
    stream.unget();
    EXPECT_EQ(stream.get(), static_cast<unsigned char>(bytes[99]));
    stream.seekg(10000);
    stream.putback(bytes[9999]);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.tellg(), 9999);
    stream.seekg(5);
    stream.putback(static_cast<char>(bytes[4] + 1)); // another character
    EXPECT_TRUE(stream.bad());
    stream.clear();
    EXPECT_EQ(stream.tellg(), 5);
    stream.seekg(0);
    stream.unget(); // nothing before the start
    EXPECT_TRUE(stream.bad());
}

TEST(FileStream, AFileThatIsShorterThanItWasGivesShortReads) {
    std::vector<Call> calls;
    FileStream stream(std::make_unique<File>("abc", calls, 100000));
    EXPECT_EQ(readBytes(stream, 50000), "abc");
    EXPECT_EQ(readAt(stream, 2, 10), "c");
    EXPECT_EQ(readAt(stream, 5000, 10), "");
    stream.clear();
    stream.seekg(0, std::ios_base::end);
    EXPECT_EQ(stream.tellg(), 100000);
    EXPECT_EQ(readBytes(stream, 1), "");
}
