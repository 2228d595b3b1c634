#include "KWCommon15/KWUtil.h"

#include "KWCommon15/KWMemStream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

using namespace KWCommonNS;

namespace {

std::string deflated(const std::string& data) {
    std::ostringstream out;
    EXPECT_TRUE(KWUtil::deflate(out, data.data(), data.size()));
    return out.str();
}

std::string inflated(const std::string& data) {
    std::ostringstream out;
    EXPECT_TRUE(KWUtil::inflate(out, data.data(), data.size()));
    return out.str();
}

/// Bytes that do not compress well, the same in every run.
std::string noise(std::size_t size) {
    std::string out(size, '\0');
    std::uint32_t state = 1;
    for (char& byte : out) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return out;
}

TEST(KWUtilZlib, DeflatedDataComesBack) {
    for (const std::string& data :
         {std::string(), std::string("x"), std::string("hello hello hello"), noise(32768),
          noise(300001), std::string(1000000, 'a')})
        EXPECT_EQ(inflated(deflated(data)), data);
}

TEST(KWUtilZlib, DeflateWritesAZlibHeaderAndShrinks) {
    const std::string packed = deflated(std::string(100000, 'a'));
    EXPECT_EQ(packed.substr(0, 2), "\x78\x9C");
    EXPECT_LT(packed.size(), 200U);
}

TEST(KWUtilZlib, DeflateOfNothingIsAnEmptyStream) {
    std::ostringstream out;
    EXPECT_TRUE(KWUtil::deflate(out, nullptr, 0));
    EXPECT_EQ(out.str(), std::string("\x78\x9C\x03\x00\x00\x00\x00\x01", 8));
    EXPECT_EQ(inflated(out.str()), "");
}

TEST(KWUtilZlib, InflateReadsAKnownStream) {
    // RFC 1950 stream of one stored block "abc".
    const std::string data("\x78\x01\x01\x03\x00\xFC\xFF"
                           "abc\x02\x4D\x01\x27",
                           14);
    EXPECT_EQ(inflated(data), "abc");
}

TEST(KWUtilZlib, InflateIgnoresWhatFollowsTheStream) {
    EXPECT_EQ(inflated(deflated("abc") + "trailing"), "abc");
}

TEST(KWUtilZlib, InflateRefusesEveryTruncation) {
    const std::string packed = deflated(noise(2000));
    for (std::size_t size = 0; size < packed.size(); ++size) {
        std::ostringstream out;
        ASSERT_FALSE(KWUtil::inflate(out, packed.data(), size)) << size;
    }
    std::ostringstream out;
    EXPECT_FALSE(KWUtil::inflate(out, nullptr, 0));
}

TEST(KWUtilZlib, InflateRefusesDamage) {
    std::string checksum = deflated("some text");
    checksum.back() = static_cast<char>(checksum.back() ^ 1);
    std::string header = deflated("some text");
    header[0] = 0x79;
    for (const std::string& data : {checksum, header, std::string("not zlib data at all")}) {
        std::ostringstream out;
        EXPECT_FALSE(KWUtil::inflate(out, data.data(), data.size()));
    }
}

TEST(KWUtilZlib, InflateRefusesAPresetDictionary) {
    const std::string data("\x78\xBB\x00\x00\x00\x01\x03\x00\x00\x00\x00\x01", 12);
    std::ostringstream out;
    EXPECT_FALSE(KWUtil::inflate(out, data.data(), data.size()));
}

TEST(KWUtilZlib, InflateStopsAtTheMaximum) {
    const std::string bomb = deflated(std::string(10'000'000, '\0'));
    std::ostringstream out;
    EXPECT_FALSE(KWUtil::inflate(out, bomb.data(), bomb.size(), 100000));
    EXPECT_LE(out.str().size(), 100000U);
    std::ostringstream none;
    EXPECT_FALSE(KWUtil::inflate(none, bomb.data(), bomb.size(), 0));
    EXPECT_TRUE(none.str().empty());
}

TEST(KWUtilZlib, InflateAcceptsExactlyTheMaximum) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{32768},
                                   std::size_t{65536}, std::size_t{70000}}) {
        const std::string packed = deflated(std::string(size, 'x'));
        std::ostringstream out;
        EXPECT_TRUE(KWUtil::inflate(out, packed.data(), packed.size(), size)) << size;
        EXPECT_EQ(out.str().size(), size);
        if (size > 0) {
            std::ostringstream less;
            EXPECT_FALSE(KWUtil::inflate(less, packed.data(), packed.size(), size - 1)) << size;
        }
    }
}

TEST(KWUtilZlib, InflateIntoMemoryIsTheSame) {
    const std::string data = noise(300001);
    const std::string packed = deflated(data);
    KWMemStream out;
    out << "head";
    ASSERT_TRUE(KWUtil::inflate(out, packed.data(), packed.size(), data.size()));
    EXPECT_TRUE(out.good());
    EXPECT_EQ(out.tellp(), std::streampos(4 + 300001));
    ASSERT_TRUE(KWUtil::inflate(out, packed.data(), packed.size()));
    EXPECT_EQ(std::string(out.data(), out.size()), "head" + data + data);
}

TEST(KWUtilZlib, InflateIntoMemoryWritesOverWhatIsThere) {
    const std::string packed = deflated("abc");
    KWMemStream out;
    out << "0123456789";
    out.seekp(2);
    ASSERT_TRUE(KWUtil::inflate(out, packed.data(), packed.size()));
    EXPECT_EQ(std::string(out.data(), out.size()), "01abc56789");
}

TEST(KWUtilZlib, InflateIntoMemoryStopsAtTheMaximum) {
    const std::string bomb = deflated(std::string(10'000'000, '\0'));
    KWMemStream out;
    EXPECT_FALSE(KWUtil::inflate(out, bomb.data(), bomb.size(), 100000));
    EXPECT_LE(out.size(), 100000U);
    const std::string packed = deflated(std::string(70000, 'x'));
    for (const std::size_t maximum : {std::size_t{0}, std::size_t{69999}, std::size_t{70000}}) {
        KWMemStream some;
        EXPECT_EQ(KWUtil::inflate(some, packed.data(), packed.size(), maximum), maximum == 70000);
        EXPECT_EQ(some.size(), maximum);
    }
}

TEST(KWUtilZlib, InflateIntoMemoryRefusesEveryTruncation) {
    const std::string packed = deflated(noise(2000));
    for (std::size_t size = 0; size < packed.size(); ++size) {
        KWMemStream out;
        ASSERT_FALSE(KWUtil::inflate(out, packed.data(), size, 2000)) << size;
    }
}

TEST(KWUtilZlib, AStreamThatFailsIsReported) {
    const std::string packed = deflated("abc");
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_FALSE(KWUtil::inflate(out, packed.data(), packed.size()));
    EXPECT_FALSE(KWUtil::deflate(out, "abc", 3));
    KWMemStream memory;
    memory.setstate(std::ios::badbit);
    EXPECT_FALSE(KWUtil::inflate(memory, packed.data(), packed.size()));
    EXPECT_EQ(memory.size(), 0U);
}

} // namespace
