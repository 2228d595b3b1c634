#include "KWCommon15/KWMemStream.h"

#include "SourceDoubles.h"
#include "common/KWLimits.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <vector>

using KWCommonNS::KWMemStream;
using KWCommonNS::KWMemStreamBuf;
using namespace KWTest;

namespace {

std::string contents(KWMemStream& stream) {
    return stream.size() == 0 ? std::string() : std::string(stream.data(), stream.size());
}

struct WindowTest : testing::Test {
    std::string bytes = patternBytes(100000);
    CountingStream source{bytes};
    KWMemStream stream{&source, 512};
    std::vector<std::pair<std::size_t, std::streamsize>>& reads = source.buffer.reads;
};

} // namespace

TEST_F(WindowTest, ReadsNothingBeforeItIsAsked) {
    EXPECT_EQ(stream.length(), 100000);
    stream.seekg(70000);
    EXPECT_EQ(stream.tellg(), 70000);
    stream.seekg(-5, std::ios_base::end);
    EXPECT_EQ(stream.tellg(), 99995);
    EXPECT_TRUE(reads.empty());
    EXPECT_TRUE(stream.rdbuf()->hasSource());
}

TEST_F(WindowTest, ReadsOnlyThePieceThatIsAskedFor) {
    EXPECT_EQ(readAt(stream, 50000, 4), bytes.substr(50000, 4));
    EXPECT_EQ(readAt(stream, 50400, 100), bytes.substr(50400, 100));
    EXPECT_EQ(readAt(stream, 50002, 8), bytes.substr(50002, 8));
    EXPECT_EQ(reads, (std::vector<std::pair<std::size_t, std::streamsize>>{{50000, 512}}));
    EXPECT_EQ(readAt(stream, 10, 1), bytes.substr(10, 1));
    EXPECT_EQ(reads.size(), 2U);
}

TEST_F(WindowTest, ALargeReadGoesStraightToTheCaller) {
    EXPECT_EQ(readAt(stream, 100, 50000), bytes.substr(100, 50000));
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].second, 50000);
    EXPECT_EQ(stream.tellg(), 50100);
    EXPECT_EQ(readBytes(stream, 3), bytes.substr(50100, 3));
    // What is buffered is used first.
    EXPECT_EQ(readBytes(stream, 2000), bytes.substr(50103, 2000));
    EXPECT_EQ(reads.back(), (std::pair<std::size_t, std::streamsize>{50612, 1491}));
}

TEST_F(WindowTest, APositionPastTheEndIsTakenAndHoldsNothing) {
    EXPECT_EQ(readAt(stream, 100000, 1), "");
    EXPECT_EQ(readAt(stream, 1LL << 40, 1), "");
    EXPECT_EQ(readAt(stream, 1LL << 40, 10000), "");
    EXPECT_EQ(readAt(stream, 99999, 10), bytes.substr(99999));
}

TEST_F(WindowTest, DoesNotMindThatOthersMoveTheSource) {
    EXPECT_EQ(readAt(stream, 0, 4), bytes.substr(0, 4));
    source.seekg(77);
    EXPECT_EQ(readAt(stream, 600, 4), bytes.substr(600, 4));
}

TEST_F(WindowTest, GivesBackACharacterAcrossTheEdgeOfTheWindow) {
    EXPECT_EQ(readAt(stream, 1000, 1), bytes.substr(1000, 1));
    stream.seekg(5000);
    stream.unget();
    EXPECT_EQ(stream.get(), static_cast<unsigned char>(bytes[4999]));
}

TEST_F(WindowTest, AWritePullsInTheSourceAndLetsItGo) {
    EXPECT_EQ(readAt(stream, 50000, 4), bytes.substr(50000, 4));
    stream.clear();
    stream.write("AB", 2);
    EXPECT_FALSE(stream.rdbuf()->hasSource());
    EXPECT_EQ(contents(stream), "AB" + bytes.substr(2));
    EXPECT_EQ(stream.tellg(), 50004); // the get position stays
    reads.clear();
    EXPECT_EQ(readAt(stream, 60000, 4), bytes.substr(60000, 4));
    EXPECT_TRUE(reads.empty());
}

TEST_F(WindowTest, AppendGoesBehindTheSourcesBytes) {
    stream += "tail";
    EXPECT_EQ(contents(stream), bytes + "tail");
}

TEST_F(WindowTest, DataPullsInTheSource) {
    ASSERT_NE(stream.data(), nullptr);
    EXPECT_EQ(contents(stream), bytes);
    EXPECT_FALSE(stream.rdbuf()->hasSource());
}

TEST_F(WindowTest, KeepMemoryReadsEveryByteOnce) {
    EXPECT_EQ(readAt(stream, 3000, 10), bytes.substr(3000, 10));
    stream.rdbuf()->setKeepMemory(true);
    EXPECT_EQ(stream.tellg(), 3010);
    EXPECT_EQ(readBytes(stream, 10), bytes.substr(3010, 10));
    reads.clear();
    EXPECT_EQ(readAt(stream, 0, 3000), bytes.substr(0, 3000));
    EXPECT_TRUE(reads.empty());
    EXPECT_EQ(readAt(stream, 90000, 10), bytes.substr(90000, 10));
    reads.clear();
    EXPECT_EQ(readAt(stream, 40000, 20000), bytes.substr(40000, 20000));
    EXPECT_TRUE(reads.empty());
    stream.clear();
    stream.seekg(100001);
    EXPECT_TRUE(stream.fail());
    EXPECT_EQ(readAt(stream, 99990, 20), bytes.substr(99990));
    EXPECT_EQ(stream.length(), 100000);
}

TEST_F(WindowTest, TheGetPositionBeginsWhereTheSourceStands) {
    source.seekg(200);
    KWMemStream later(&source, 64);
    EXPECT_EQ(later.tellg(), 200);
    EXPECT_EQ(readBytes(later, 2), bytes.substr(200, 2));
    EXPECT_EQ(readAt(later, 0, 2), bytes.substr(0, 2)); // positions are those of the source
}

TEST_F(WindowTest, ASourceThatIsShorterThanItSaysGivesShortReads) {
    KWMemStream window(&source, 1U << 20);
    EXPECT_EQ(readBytes(window, 200000), bytes);
    EXPECT_TRUE(window.eof());
}

TEST(MemStreamBuf, ASourceThatCannotSeekIsKeptAsFarAsItWasRead) {
    const std::string bytes = patternBytes(50000);
    CountingStream source(bytes, false);
    KWMemStream stream(&source, 100);
    EXPECT_EQ(readBytes(stream, 10), bytes.substr(0, 10));
    EXPECT_LE(source.buffer.reads.size(), 1U);
    EXPECT_EQ(readAt(stream, 20000, 10), bytes.substr(20000, 10));
    EXPECT_EQ(readAt(stream, 5, 10), bytes.substr(5, 10)); // backwards, from memory
    EXPECT_EQ(stream.length(), 50000);
    stream.seekg(50001);
    EXPECT_TRUE(stream.fail());
    EXPECT_EQ(contents(stream), bytes);
}

TEST(MemStreamBuf, AFarSeekInASourceThatCannotSeekReadsNoMoreThanThereIs) {
    CountingStream source("abc", false);
    KWMemStream stream(&source, 100);
    stream.seekg(std::numeric_limits<std::int64_t>::max());
    EXPECT_TRUE(stream.fail());
    EXPECT_EQ(readAt(stream, 0, 10), "abc");
}

TEST(MemStreamBuf, SetSourceStartsAnew) {
    KWMemStream stream;
    stream << "old";
    bool deleted = false;
    auto* const source = new CountingStream("new source");
    source->deleted = &deleted;
    stream.rdbuf()->setSource(source, false);
    EXPECT_EQ(readBytes(stream, 100), "new source");
    std::istringstream other("other");
    stream.rdbuf()->setSource(&other, true);
    EXPECT_TRUE(deleted);
    EXPECT_EQ(readBytes(stream, 100), "other");
    stream.rdbuf()->setSource(nullptr, true);
    EXPECT_EQ(stream.length(), 0);
    EXPECT_EQ(readBytes(stream, 1), "");
}

TEST(MemStreamBuf, SetSourceToTheSameSourceDoesNotDeleteIt) {
    auto* const source = new CountingStream("abc");
    bool deleted = false;
    source->deleted = &deleted;
    {
        KWMemStream stream(source, 16, false);
        stream.rdbuf()->setSource(source, false);
        EXPECT_FALSE(deleted);
        EXPECT_EQ(readBytes(stream, 3), "abc");
    }
    EXPECT_TRUE(deleted);
}

TEST(MemStreamBuf, KeepMemoryChosenBeforehandHoldsForALaterSource) {
    CountingStream source("0123456789");
    source.seekg(4);
    KWMemStream stream;
    stream.rdbuf()->setKeepMemory(true);
    stream.rdbuf()->setSource(&source, true);
    EXPECT_EQ(stream.tellg(), 4);
    EXPECT_EQ(readBytes(stream, 2), "45");
    EXPECT_EQ(readAt(stream, 0, 2), "01");
}

TEST(MemStreamBuf, ASourceWithoutABufferIsEmpty) {
    std::istream source(nullptr);
    KWMemStream stream(&source, 16);
    EXPECT_EQ(stream.length(), 0);
    EXPECT_EQ(readBytes(stream, 1), "");
}

TEST(MemStreamBuf, AbandonBufferGivesTheMemoryAway) {
    KWMemStream stream;
    stream << "abc";
    std::size_t count = 0;
    char* const bytes = stream.rdbuf()->abandonBuffer(&count);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(std::string(bytes, count), "abc");
    EXPECT_EQ(stream.length(), 0);
    stream << "new";
    EXPECT_EQ(contents(stream), "new");
    EXPECT_EQ(std::string(bytes, count), "abc");
    KWMemStreamBuf::freeBuffer(bytes);
    KWMemStreamBuf::freeBuffer(nullptr);
}

TEST(MemStreamBuf, AbandonBufferOfAnEmptyStreamIsNull) {
    KWMemStream stream(nullptr, 100);
    std::size_t count = 7;
    EXPECT_EQ(stream.rdbuf()->abandonBuffer(&count), nullptr);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(stream.rdbuf()->abandonBuffer(), nullptr);
}

TEST(MemStreamBuf, WhatIsReservedForDoesNotMoveWhileItIsWritten) {
    KWMemStream stream;
    stream << "abc";
    stream.rdbuf()->reserve(100000);
    EXPECT_EQ(contents(stream), "abc");
    const char* const bytes = stream.data();
    for (int i = 0; i < 99997; ++i)
        stream += 'x';
    EXPECT_EQ(stream.data(), bytes);
    stream.rdbuf()->reserve(10);
    EXPECT_EQ(stream.length(), 100000);
    EXPECT_EQ(stream.data(), bytes);
}

TEST(MemStreamBuf, AReserveThatMemoryDoesNotSufficeForChangesNothing) {
    KWMemStream stream;
    stream << "abc";
    stream.rdbuf()->reserve(std::numeric_limits<std::size_t>::max());
    EXPECT_TRUE(stream.good());
    stream << "def";
    EXPECT_EQ(contents(stream), "abcdef");
}

TEST(MemStreamBuf, AReserveLeavesASourceAttached) {
    std::istringstream source("abc");
    KWMemStream stream(&source);
    stream.rdbuf()->reserve(100);
    EXPECT_TRUE(stream.rdbuf()->hasSource());
    EXPECT_EQ(contents(stream), "abc");
}

TEST(MemStreamBuf, AbandonBufferPullsInTheSource) {
    std::istringstream source("from a source");
    KWMemStream stream(&source, 4);
    std::size_t count = 0;
    char* const bytes = stream.rdbuf()->abandonBuffer(&count);
    EXPECT_EQ(std::string(bytes, count), "from a source");
    KWMemStreamBuf::freeBuffer(bytes);
}

// Every search is made in memory and through windows smaller than the pattern's surroundings.
class SearchTest : public testing::TestWithParam<int> {
protected:
    KWMemStream& open(const std::string& text) {
        source_ = std::make_unique<CountingStream>(text, GetParam() >= 0);
        stream_ = GetParam() == 0
                      ? std::make_unique<KWMemStream>()
                      : std::make_unique<KWMemStream>(
                            source_.get(), static_cast<std::size_t>(std::abs(GetParam())));
        if (GetParam() == 0)
            *stream_ << text;
        return *stream_;
    }
    bool search(KWMemStream& stream, std::string_view pattern) {
        return stream.rdbuf()->searchSeek(pattern.data(), pattern.size());
    }

private:
    std::unique_ptr<CountingStream> source_;
    std::unique_ptr<KWMemStream> stream_;
};

INSTANTIATE_TEST_SUITE_P(MemoryWindowAndKept, SearchTest, testing::Values(0, 1, 2, 3, 7, 64, -2));

TEST_P(SearchTest, FindsThePatternAtOrBehindThePosition) {
    KWMemStream& stream = open("aab aabaab aabaac end");
    EXPECT_TRUE(search(stream, "aabaac"));
    EXPECT_EQ(stream.tellg(), 11);
    EXPECT_TRUE(search(stream, "aabaac")); // at the position itself
    EXPECT_EQ(stream.tellg(), 11);
    EXPECT_TRUE(search(stream, "end"));
    EXPECT_EQ(stream.tellg(), 18);
    EXPECT_TRUE(search(stream, ""));
    EXPECT_EQ(stream.tellg(), 18);
}

TEST_P(SearchTest, StaysWhenThePatternDoesNotCome) {
    KWMemStream& stream = open("abcabcab");
    stream.seekg(2);
    EXPECT_FALSE(search(stream, "abcd"));
    EXPECT_EQ(stream.tellg(), 2);
    EXPECT_FALSE(search(stream, "abcabca")); // begins before the position
    EXPECT_EQ(stream.tellg(), 2);
    EXPECT_EQ(stream.get(), 'c');
}

TEST_P(SearchTest, SkipsBytesOfASet) {
    KWMemStream& stream = open(" \t\r\nx  \xFF");
    EXPECT_TRUE(stream.rdbuf()->skipSeek(" \t\r\n", 4));
    EXPECT_EQ(stream.tellg(), 4);
    EXPECT_TRUE(stream.rdbuf()->skipSeek(" ", 1)); // nothing to skip
    EXPECT_EQ(stream.tellg(), 4);
    EXPECT_TRUE(stream.rdbuf()->skipSeek("x ", 2));
    EXPECT_EQ(stream.tellg(), 7);
    EXPECT_FALSE(stream.rdbuf()->skipSeek("\xFF", 1));
    EXPECT_EQ(stream.tellg(), 8);
}

TEST_P(SearchTest, SeeksPastEveryKindOfLineEnd) {
    KWMemStream& stream = open("a\rb\nc\r\nd\n\re\r");
    std::vector<int> starts;
    while (stream.rdbuf()->seekEOL())
        starts.push_back(static_cast<int>(stream.tellg()));
    EXPECT_EQ(starts, (std::vector{2, 4, 7, 9, 10, 12}));
    KWMemStream& last = open("no end");
    EXPECT_FALSE(last.rdbuf()->seekEOL());
    EXPECT_EQ(last.tellg(), 6);
}

TEST_P(SearchTest, SumsBigEndianWordsAndPadsTheLast) {
    KWMemStream& stream = open(std::string("\x01\x02\x03\x04\xFF\xFF\xFF\xFF\x80\x40\x20", 11));
    EXPECT_EQ(stream.rdbuf()->calcOTFTableChecksum(), 0x01020304U + 0xFFFFFFFFU + 0x80402000U);
    EXPECT_EQ(stream.tellg(), 0);
    EXPECT_EQ(stream.get(), 1);
    EXPECT_EQ(open("").rdbuf()->calcOTFTableChecksum(), 0U);
}

TEST(MemStreamBuf, ChecksumOfALongSourceGoesThroughAllOfIt) {
    const std::string bytes = patternBytes(70001);
    CountingStream source(bytes);
    KWMemStream stream(&source, 512);
    const std::uint32_t expected = KWMemStreamBuf::calcOTFTableChecksum(bytes.data(), bytes.size());
    EXPECT_EQ(stream.rdbuf()->calcOTFTableChecksum(), expected);
    EXPECT_TRUE(stream.rdbuf()->hasSource());
    stream.rdbuf()->setKeepMemory(true);
    EXPECT_EQ(stream.rdbuf()->calcOTFTableChecksum(), expected);
}

TEST(MemStreamBuf, SeekOfBothPositionsMovesBothInMemory) {
    KWMemStream stream;
    stream << "0123456789";
    EXPECT_EQ(stream.rdbuf()->pubseekoff(3, std::ios_base::beg), 3);
    EXPECT_EQ(stream.tellg(), 3);
    EXPECT_EQ(stream.tellp(), 3);
    EXPECT_EQ(stream.rdbuf()->pubseekoff(0, std::ios_base::cur), -1); // which of the two?
}

TEST(MemStreamBuf, SeekOfBothPositionsLeavesASourceAttached) {
    std::istringstream source("0123456789");
    KWMemStream stream(&source, 4);
    EXPECT_EQ(stream.rdbuf()->pubseekoff(3, std::ios_base::beg), 3);
    EXPECT_TRUE(stream.rdbuf()->hasSource());
    EXPECT_EQ(stream.get(), '3');
}

TEST(MemStreamBuf, AWritePastTheEndFillsTheGapWithZeros) {
    for (const int way : {0, 1, 2}) {
        KWMemStream stream;
        stream << "abc";
        stream.seekp(1000);
        ASSERT_TRUE(stream.good());
        EXPECT_EQ(stream.tellp(), 1000);
        EXPECT_EQ(stream.length(), 3) << "nothing is there before the write";
        EXPECT_EQ(contents(stream), "abc");
        std::istringstream from("X");
        if (way == 0)
            stream.put('X');
        else if (way == 1)
            stream.write("X", 1);
        else
            EXPECT_EQ(stream.copyStream(from), 1);
        EXPECT_EQ(contents(stream), "abc" + std::string(997, '\0') + "X");
        EXPECT_EQ(stream.tellp(), 1001);
        EXPECT_EQ(readAt(stream, 999, 5), std::string("\0X", 2));
    }
}

TEST(MemStreamBuf, TheGapIsZeroWhereOldBytesLay) {
    KWMemStream stream;
    stream << std::string(500, 'x');
    stream.remove();
    stream << "a";
    stream.seekp(400);
    stream << "b";
    EXPECT_EQ(contents(stream), "a" + std::string(399, '\0') + "b");
}

TEST(MemStreamBuf, APutPositionPastTheEndChangesNothingWithoutAWrite) {
    KWMemStream stream;
    stream.seekp(50);
    EXPECT_EQ(stream.length(), 0);
    EXPECT_EQ(stream.data(), nullptr);
    stream << "abc";
    stream.seekp(5000);
    std::istringstream empty("");
    EXPECT_EQ(stream.copyStream(empty), 0);
    stream.write("", 0);
    EXPECT_EQ(stream.length(), 53);
    EXPECT_EQ(stream.tellp(), 5000);
    stream.seekp(-3, std::ios_base::cur);
    EXPECT_EQ(stream.tellp(), 4997);
    stream.seekp(51);
    stream << "X";
    EXPECT_EQ(contents(stream), std::string(50, '\0') + "aXc");
    stream.seekp(60);
    stream += "end"; // append goes to the end of the contents
    EXPECT_EQ(contents(stream), std::string(50, '\0') + "aXcend");
}

TEST(MemStreamBuf, TheGapHasALimit) {
    KWMemStream stream;
    stream << "abc";
    stream.seekp(static_cast<std::streamoff>(KWCommonNS::kMaxPutGap) + 3);
    EXPECT_TRUE(stream.good());
    stream.seekp(static_cast<std::streamoff>(KWCommonNS::kMaxPutGap) + 4);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    stream.seekp(std::numeric_limits<std::streamoff>::max());
    EXPECT_TRUE(stream.fail());
    EXPECT_EQ(stream.length(), 3);
}

TEST(MemStreamBuf, TellingThePutPositionLeavesASourceAttached) {
    std::istringstream source("0123456789");
    KWMemStream stream(&source, 4);
    EXPECT_EQ(stream.tellp(), 0);
    EXPECT_TRUE(stream.rdbuf()->hasSource());
    stream << "A";
    EXPECT_EQ(contents(stream), "A123456789");
}

namespace {

struct ThrowingBuf : std::streambuf {
    bool broken = true;
    bool seekable = true;
    int_type underflow() override { return traits_type::eof(); }
    std::streamsize xsgetn(char* to, std::streamsize) override {
        if (broken)
            throw std::runtime_error("device gone");
        *to = 'x';
        return 1;
    }
    pos_type seekoff(off_type offset, std::ios_base::seekdir, std::ios_base::openmode) override {
        if (!seekable)
            throw std::runtime_error("no position");
        return pos_type(offset);
    }
    pos_type seekpos(pos_type position, std::ios_base::openmode) override { return position; }
};

} // namespace

TEST(MemStreamBuf, ASourceThatThrowsGivesNothingAndLeavesTheStreamUsable) {
    ThrowingBuf buffer;
    std::istream source(&buffer);
    KWMemStream stream(&source, 16);
    EXPECT_EQ(stream.get(), EOF);
    EXPECT_TRUE(stream.eof());
    buffer.broken = false;
    EXPECT_EQ(readAt(stream, 5, 1), "x");
}

TEST(MemStreamBuf, WhatASourceThrowsDoesNotEscape) {
    for (const bool seekable : {false, true}) {
        ThrowingBuf buffer;
        buffer.seekable = seekable;
        std::istream source(&buffer);
        KWMemStream stream(&source, 16);
        EXPECT_EQ(stream.length(), 0);
        EXPECT_FALSE(stream.rdbuf()->searchSeek("a", 1));
        EXPECT_FALSE(stream.rdbuf()->skipSeek("a", 1));
        EXPECT_FALSE(stream.rdbuf()->seekEOL());
        EXPECT_EQ(stream.rdbuf()->calcOTFTableChecksum(), 0U);
        stream.rdbuf()->setKeepMemory(true);
        EXPECT_EQ(stream.data(), nullptr);
    }
}

TEST(MemStreamBuf, CopyStreamFromASourceThatThrowsSetsItsBadbit) {
    ThrowingBuf buffer;
    std::istream source(&buffer);
    KWMemStream stream;
    stream << "abc";
    EXPECT_EQ(stream.copyStream(source, 5), 0);
    EXPECT_TRUE(source.bad());
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(contents(stream), "abc");
}

TEST(MemStreamBuf, AnOwnedSourceThatThrowsAtOnceIsDeleted) {
    struct Source : std::istream {
        explicit Source(bool& gone) : std::istream(nullptr), deleted(gone) {
            buffer.seekable = false;
            init(&buffer);
        }
        ~Source() override { deleted = true; }
        ThrowingBuf buffer;
        bool& deleted;
    };
    bool deleted = false;
    { KWMemStream stream(new Source(deleted), 16, false); }
    EXPECT_TRUE(deleted);
}
