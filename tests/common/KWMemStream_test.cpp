#include "KWCommon15/KWMemStream.h"

#include "SourceDoubles.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>

using KWCommonNS::KWMemStream;
using KWCommonNS::KWMemStreamBuf;
using namespace KWTest;

namespace {

std::string contents(KWMemStream& stream) {
    return stream.size() == 0 ? std::string() : std::string(stream.data(), stream.size());
}

} // namespace

TEST(MemStream, IsAnOrdinaryStreamInBothDirections) {
    KWMemStream stream;
    stream << "one " << 2 << '\n';
    std::string word;
    int number = 0;
    stream >> word >> number;
    EXPECT_EQ(word, "one");
    EXPECT_EQ(number, 2);
    EXPECT_EQ(stream.length(), 6);
    EXPECT_EQ(contents(stream), "one 2\n");
}

TEST(MemStream, AnEmptyOneHasNoBytes) {
    KWMemStream stream(nullptr, 8192);
    EXPECT_EQ(stream.length(), 0);
    EXPECT_EQ(stream.data(), nullptr);
    EXPECT_EQ(stream.get(), EOF);
    stream.clear();
    EXPECT_EQ(stream.tellg(), 0);
    EXPECT_EQ(stream.tellp(), 0);
}

TEST(MemStream, OverwritesInPlaceAfterASeek) {
    KWMemStream stream;
    stream << "0123456789";
    stream.seekp(2);
    stream << "AB";
    EXPECT_EQ(stream.tellp(), 4);
    EXPECT_EQ(stream.length(), 10); // the length is not the position
    stream.seekp(0, std::ios_base::end);
    stream << "!";
    EXPECT_EQ(contents(stream), "01AB456789!");
    EXPECT_EQ(readAt(stream, 9, 5), "9!");
    EXPECT_EQ(readAt(stream, 2, 2), "AB");
}

TEST(MemStream, ReadsWhatWasWrittenAfterTheEndWasFound) {
    KWMemStream stream;
    stream << "ab";
    EXPECT_EQ(readBytes(stream, 5), "ab");
    EXPECT_TRUE(stream.eof());
    stream.clear();
    stream << "cd";
    EXPECT_EQ(readBytes(stream, 5), "cd");
}

TEST(MemStream, SeeksFromEndAndPositionAndDoesNotReadPastTheEnd) {
    KWMemStream stream;
    stream << "0123456789";
    stream.seekg(-3, std::ios_base::end);
    EXPECT_EQ(stream.get(), '7');
    stream.seekg(-2, std::ios_base::cur);
    EXPECT_EQ(stream.get(), '6');
    stream.seekg(10);
    EXPECT_EQ(stream.tellg(), 10);
    stream.seekg(11);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    stream.seekg(-1);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    stream.seekp(-1);
    EXPECT_TRUE(stream.fail());
    stream.clear();
    EXPECT_EQ(stream.tellp(), 10);
}

TEST(MemStream, WriteStrWritesAtThePutPosition) {
    KWMemStream stream;
    stream.writeStr("hello").writeStr(nullptr).writeStr("");
    stream.seekp(1);
    stream.writeStr("a");
    EXPECT_EQ(contents(stream), "hallo");
}

TEST(MemStream, AppendWritesAtTheEndWhereverThePositionIs) {
    KWMemStream stream;
    stream << "abc";
    stream.seekp(0);
    stream.append(std::string("d\0e", 3));
    EXPECT_EQ(contents(stream), std::string("abcd\0e", 6));
    stream.seekp(0);
    stream += std::string("f");
    stream += "gh";
    stream += 'i';
    stream += static_cast<const char*>(nullptr);
    EXPECT_EQ(stream.tellp(), 10);
    EXPECT_EQ(contents(stream), std::string("abcd\0efghi", 10));
}

TEST(MemStream, AppendAndWriteStrWorkAfterReadingToTheEnd) {
    KWMemStream stream;
    stream << "ab";
    EXPECT_EQ(stream.get(), 'a');
    EXPECT_EQ(stream.get(), 'b');
    EXPECT_EQ(stream.peek(), EOF);
    stream.append("c");
    EXPECT_EQ(stream.get(), 'c');
    EXPECT_EQ(stream.peek(), EOF);
    stream.writeStr("d");
    EXPECT_EQ(contents(stream), "abcd");
}

TEST(MemStream, CopyStreamTakesSoManyBytes) {
    std::istringstream from(patternBytes(300000));
    KWMemStream stream;
    stream << "x";
    EXPECT_EQ(stream.copyStream(from, 5), 5);
    EXPECT_EQ(stream.copyStream(from, 0), 0);
    EXPECT_EQ(stream.copyStream(from, 200000), 200000);
    EXPECT_EQ(from.tellg(), 200005);
    EXPECT_EQ(contents(stream), "x" + patternBytes(300000).substr(0, 200005));
    EXPECT_EQ(stream.copyStream(from), 99995);
    EXPECT_TRUE(stream.good());
    EXPECT_TRUE(from.eof());
    EXPECT_FALSE(from.fail());
    EXPECT_EQ(stream.length(), 300001);
}

TEST(MemStream, CopyStreamAnswersWhatCameWhenTheSourceEnds) {
    std::istringstream from("abc");
    KWMemStream stream;
    EXPECT_EQ(stream.copyStream(from, std::streamsize{1} << 40), 3);
    EXPECT_TRUE(from.fail());
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.copyStream(from, 1), 0); // a failed source gives nothing
    EXPECT_EQ(contents(stream), "abc");
}

TEST(MemStream, CopyStreamOfANegativeCountGivesNothing) {
    std::istringstream from("abc");
    KWMemStream stream;
    EXPECT_EQ(stream.copyStream(from, -1), 0);
    EXPECT_TRUE(stream.good());
    EXPECT_TRUE(from.good());
    EXPECT_EQ(stream.copyStream(from, KWMemStreamBuf::kToTheEnd), 3);
    EXPECT_FALSE(from.fail());
}

TEST(MemStream, CopyStreamInTheMiddleOverwrites) {
    std::istringstream from("XY");
    KWMemStream stream;
    stream << "abcdef";
    stream.seekp(2);
    stream.copyStream(from, 2);
    EXPECT_EQ(contents(stream), "abXYef");
}

TEST(MemStream, CopyStreamFromItselfGivesNothing) {
    KWMemStream stream;
    stream << "abc";
    EXPECT_EQ(stream.rdbuf()->copyStream(stream, 3), 0);
    EXPECT_EQ(stream.copyStream(stream, 3), 0);
    EXPECT_EQ(stream.copyStream(stream), 0);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(contents(stream), "abc");
}

TEST(MemStream, WritesItsOwnBytesAgainWhileItGrows) {
    KWMemStream stream;
    stream << patternBytes(128);
    for (int i = 0; i < 8; ++i)
        stream.write(stream.data(), stream.length());
    EXPECT_EQ(stream.length(), 128 << 8);
    EXPECT_EQ(contents(stream).substr(128 * 77, 128), patternBytes(128));
}

TEST(MemStream, RemoveThrowsAwayContentsAndState) {
    KWMemStream stream;
    stream << "abc";
    stream.get();
    stream.setstate(std::ios_base::failbit);
    stream.remove();
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.length(), 0);
    EXPECT_EQ(stream.tellg(), 0);
    EXPECT_EQ(stream.tellp(), 0);
    stream << "xy";
    EXPECT_EQ(contents(stream), "xy");
}

TEST(MemStream, ASizeIsAWishAndSetsNothingAside) {
    KWMemStream stream(nullptr, std::numeric_limits<std::size_t>::max());
    stream << "a";
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.length(), 1);
}

TEST(MemStream, AWriteThatMemoryDoesNotSufficeForSetsBadbit) {
    KWMemStream stream;
    stream << "abc";
    const char byte = 0;
    EXPECT_EQ(stream.rdbuf()->sputn(&byte, 0), 0);
    stream.write(&byte, std::numeric_limits<std::streamsize>::max());
    EXPECT_TRUE(stream.bad());
    stream.clear();
    EXPECT_EQ(contents(stream), "abc");
    EXPECT_EQ(stream.tellp(), 3);
}

TEST(MemStream, DeletesItsSourceOnlyWhenItOwnsIt) {
    bool deleted = false;
    auto kept = std::make_unique<CountingStream>("abc");
    kept->deleted = &deleted;
    { KWMemStream stream(kept.get(), 16, true); }
    EXPECT_FALSE(deleted);
    { KWMemStream stream(kept.release(), 16, false); }
    EXPECT_TRUE(deleted);
}

TEST(MemStream, GivesBackTheLastCharacter) {
    KWMemStream stream;
    stream << "ab";
    EXPECT_EQ(stream.get(), 'a');
    stream.unget();
    EXPECT_EQ(stream.get(), 'a');
    stream.putback('a');
    EXPECT_EQ(stream.get(), 'a');
    stream.putback('x'); // another character
    EXPECT_TRUE(stream.bad());
    stream.clear();
    stream.seekg(0);
    stream.unget(); // nothing before the start
    EXPECT_TRUE(stream.bad());
}

template <typename T>
concept Appendable = requires(KWMemStream& stream, T value) {
    stream += value;
};

TEST(MemStream, AppendsCharactersAndNoNumbers) {
    static_assert(Appendable<char> && Appendable<const char*> && Appendable<std::string>);
    static_assert(!Appendable<int>);
}
