#include "common/KWLimits.h"
#include "embed/EmbedSource.h"

#include "EmbedFixture.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::bytesOf;

TEST(EmbedSource, KnowsWhatTheFileHas) {
    std::istringstream stream("0123456789");
    const EmbedSource source(stream);
    EXPECT_TRUE(source.contains(0, 10));
    EXPECT_TRUE(source.contains(10, 0));
    EXPECT_FALSE(source.contains(0, 11));
    EXPECT_FALSE(source.contains(11, 0));
    EXPECT_FALSE(source.contains(5, 0xFFFFFFFFFFFFFFFF));
}

TEST(EmbedSource, CopiesFromAnyPlaceWhateverStateTheStreamIsIn) {
    std::istringstream stream("0123456789");
    stream.setstate(std::ios::failbit | std::ios::eofbit);
    EmbedSource source(stream);
    KWMemStream out;
    EXPECT_TRUE(source.copy(7, 3, out));
    EXPECT_TRUE(source.copy(0, 2, out));
    EXPECT_EQ(bytesOf(out), Bytes::ofText("78901"));
}

TEST(EmbedSource, CopiesNothingOfWhatLeavesTheFile) {
    std::istringstream stream("0123456789");
    EmbedSource source(stream);
    KWMemStream out;
    EXPECT_FALSE(source.copy(8, 3, out));
    EXPECT_FALSE(source.copy(0, 0xFFFFFFFF, out));
    EXPECT_FALSE(source.copy(0xFFFFFFFFFFFFFFFF, 1, out));
    EXPECT_EQ(out.length(), 0);
}

TEST(EmbedSource, NoBytesCanBeTakenFromAnywhere) {
    std::istringstream stream("0123456789");
    EmbedSource source(stream);
    KWMemStream out;
    EXPECT_TRUE(source.copy(0xFFFFFFFF, 0, out));
}

TEST(EmbedSource, ReadsTheFileSoManyTimesAndNoMore) {
    std::istringstream stream("0123456789");
    EmbedSource source(stream);
    KWMemStream out;
    for (std::uint64_t i = 0; i < KWCommonNS::kMaxEmbedReadFactor; ++i)
        EXPECT_TRUE(source.copy(0, 10, out));
    EXPECT_FALSE(source.copy(0, 1, out));
    EXPECT_FALSE(source.charge(1));
}

TEST(EmbedSource, AFileThatShrankGivesAMiss) {
    std::istringstream stream("0123456789");
    EmbedSource source(stream);
    stream.str("01234");
    KWMemStream out;
    EXPECT_FALSE(source.copy(0, 10, out));
    std::array<std::uint8_t, 10> bytes{};
    EXPECT_FALSE(source.read(0, bytes));
    EXPECT_TRUE(source.read(0, std::span(bytes).first(5)));
}

} // namespace
} // namespace KWFontService_NS
