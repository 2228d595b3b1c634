#include "fonts/TTI_Kern.h"

#include "fonts/TableFixture.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

struct Reading {
    explicit Reading(const Bytes& table) {
        TableInStream file("kern", table);
        SfntReader reader = file.reader();
        ok = kern.read(reader);
        complaint = file.complaint();
    }
    explicit Reading(const Kern& table) : Reading(table.build()) {}
    explicit Reading(KernSubtable subtable) : Reading(Kern{.subtables = {std::move(subtable)}}) {}

    TTI_Kern kern;
    bool ok = false;
    Complaint complaint;
};

const std::vector<KernPair> kPairs = {{2, 3, -50}, {2, 5, 20}, {4, 1, -32768}};

TEST(Kern, FindsEachPair) {
    const Reading read(KernSubtable{.pairs = kPairs});
    ASSERT_TRUE(read.ok) << read.complaint;
    EXPECT_EQ(read.kern.kernPairCount, 3);
    EXPECT_EQ(read.kern.kernPairs.size(), 18U);
    EXPECT_EQ(read.kern.find(2, 3), -50);
    EXPECT_EQ(read.kern.find(2, 5), 20);
    EXPECT_EQ(read.kern.find(4, 1), -32768);
    EXPECT_FALSE(read.kern.find(2, 4));
    EXPECT_FALSE(read.kern.find(3, 2));
    EXPECT_FALSE(read.kern.find(0, 0));
    EXPECT_FALSE(read.kern.find(0xFFFF, 0xFFFF));
}

TEST(Kern, BeforeReadingAndWithoutATableThereAreNoPairs) {
    TTI_Kern kern;
    EXPECT_EQ(kern.kernPairCount, -1);
    EXPECT_FALSE(kern.hasPairs(false));
    EXPECT_FALSE(kern.find(1, 2));

    TableInStream file("glyf", {});
    SfntReader reader = file.reader();
    EXPECT_TRUE(kern.read(reader));
    EXPECT_EQ(kern.kernPairCount, 0);
    EXPECT_EQ(file.complaint(), kNoComplaint);
}

TEST(Kern, IsReadOnce) {
    TableInStream file("kern", Kern{.subtables = {{.pairs = kPairs}}}.build());
    SfntReader reader = file.reader();
    TTI_Kern kern;
    EXPECT_TRUE(kern.read(reader));
    kern.kernPairCount = 1;
    EXPECT_TRUE(kern.read(reader));
    EXPECT_EQ(kern.kernPairCount, 1);
}

TEST(Kern, DirectionFollowsTheLowTwoCoverageBits) {
    struct Row {
        std::uint16_t coverage;
        bool horizontal;
        bool vertical;
    };
    // Minimum values (bit 1) are no kerning; cross-stream (2) and override (3) play no part.
    for (const Row& row : std::initializer_list<Row>{{0x0001, true, false},
                                                     {0x0000, false, true},
                                                     {0x0002, false, false},
                                                     {0x0003, false, false},
                                                     {0x000D, true, false},
                                                     {0x000C, false, true}}) {
        const Reading read(KernSubtable{.coverage = row.coverage, .pairs = kPairs});
        EXPECT_TRUE(read.ok);
        EXPECT_EQ(read.kern.kernCoverage, row.coverage);
        EXPECT_EQ(read.kern.hasPairs(false), row.horizontal) << row.coverage;
        EXPECT_EQ(read.kern.hasPairs(true), row.vertical) << row.coverage;
    }
}

TEST(Kern, TheHighestBitIsNoPartOfTheFormat) {
    const Reading read(
        Bytes().u16(0).u16(1).u16(0).u16(20).u16(0x8001).u16(1).zero(6).u16(2).u16(3).i16(-9));
    EXPECT_TRUE(read.ok) << read.complaint;
    EXPECT_EQ(read.kern.find(2, 3), -9);
}

TEST(Kern, OnlyTheFirstSubtableOfFormat0IsKept) {
    const Reading read(Kern{.subtables = {{.coverage = 0x0000, .pairs = {{2, 3, -1}}},
                                          {.coverage = 0x0001, .pairs = kPairs}}});
    EXPECT_TRUE(read.ok);
    EXPECT_FALSE(read.kern.hasPairs(false));
    EXPECT_TRUE(read.kern.hasPairs(true));
    EXPECT_EQ(read.kern.find(2, 3), -1);
    EXPECT_FALSE(read.kern.find(4, 1));
}

TEST(Kern, TheBodyOfAnotherFormatIsReadAsTheNextHeader) {
    // The body of the format 2 subtable looks like a header of format 1, then its end like one of
    // format 0 with a pair; what stands where the subtable ends is never reached.
    const Bytes body = Bytes()
                           .u16(0)
                           .u16(0)
                           .u16(0x0101)
                           .u16(0)
                           .u16(20)
                           .u16(0x0001)
                           .u16(1)
                           .zero(6)
                           .u16(7)
                           .u16(8)
                           .i16(99);
    const Reading read(Kern{
        .subtables = {{.coverage = 0x0201, .body = body}, {.coverage = 0x0001, .pairs = kPairs}},
        .nTables = 3});
    EXPECT_TRUE(read.ok) << read.complaint;
    EXPECT_EQ(read.kern.find(7, 8), 99);
    EXPECT_FALSE(read.kern.find(2, 3));
}

TEST(Kern, WithOtherFormatsAloneThereAreNoPairs) {
    const Bytes body = Bytes().u16(0).u16(0).u16(0x0201);
    const Reading read(
        Kern{.subtables = {{.coverage = 0x0201, .body = body}, {.coverage = 0x0301}}});
    EXPECT_TRUE(read.ok) << read.complaint;
    EXPECT_EQ(read.kern.kernPairCount, 0);
    EXPECT_FALSE(read.kern.hasPairs(false));
}

TEST(Kern, NoTablesAndNoPairsAreNoError) {
    const Reading none(Kern{});
    EXPECT_TRUE(none.ok);
    EXPECT_EQ(none.kern.kernPairCount, 0);
    const Reading empty(KernSubtable{});
    EXPECT_TRUE(empty.ok);
    EXPECT_EQ(empty.kern.kernPairCount, 0);
    EXPECT_FALSE(empty.kern.hasPairs(false));
    // Apple's 32-bit version makes the 16-bit count of tables 0.
    const Reading apple(Bytes().u32(0x00010000).u32(1).u32(20).u16(0).u16(0));
    EXPECT_TRUE(apple.ok);
    EXPECT_EQ(apple.kern.kernPairCount, 0);
}

TEST(Kern, EachShortReadHasItsMessage) {
    const Bytes whole = Kern{.subtables = {{.pairs = kPairs}}}.build();
    const auto complaintAt = [&](std::size_t size) {
        const Reading read(Bytes(whole).truncate(size));
        EXPECT_FALSE(read.ok) << size;
        EXPECT_FALSE(read.kern.hasPairs(false)) << size;
        EXPECT_FALSE(read.kern.find(2, 3)) << size;
        return read.complaint;
    };
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const char* const expected = size < 4    ? "'kern' table read error"
                                     : size < 10 ? "'kern' subtable 0 read error"
                                     : size < 18 ? "'kern' subtable 0 format0 read error"
                                                 : "'kern' subtable 0 pairs read error";
        EXPECT_EQ(complaintAt(size), readError(expected)) << size;
    }
}

TEST(Kern, MessagesNameTheSubtable) {
    const Bytes two = Bytes().u16(0).u16(2).u16(0).u16(6).u16(0x0201);
    EXPECT_EQ(Reading(two).complaint, readError("'kern' subtable 1 read error"));
    const Bytes format0 = Bytes(two).u16(0).u16(14).u16(0x0001);
    EXPECT_EQ(Reading(format0).complaint, readError("'kern' subtable 1 format0 read error"));
}

TEST(Kern, PairsThatTheLengthDoesNotHoldAreRefused) {
    const Reading tooShort(KernSubtable{.pairs = kPairs, .length = 14 + 17});
    EXPECT_FALSE(tooShort.ok);
    EXPECT_EQ(tooShort.complaint, fileError("'kern' subtable 0 invalid pairs size"));
    EXPECT_FALSE(tooShort.kern.hasPairs(false));
    EXPECT_FALSE(tooShort.kern.find(2, 3));
    EXPECT_TRUE(Reading(KernSubtable{.pairs = kPairs, .length = 14 + 18}).ok);
}

TEST(Kern, ALengthBelowTheHeadersWrapsAndIsAccepted) {
    // The difference is one of 16 bits, which shipped fonts with a length of 0 pass.
    EXPECT_TRUE(Reading(KernSubtable{.pairs = kPairs, .length = 13}).ok);
    EXPECT_TRUE(Reading(KernSubtable{.pairs = kPairs, .length = 0}).ok);
}

std::vector<KernPair> manyPairs(int count) {
    std::vector<KernPair> pairs;
    for (int i = 0; i < count; ++i)
        pairs.push_back({static_cast<std::uint16_t>(i), 1, static_cast<std::int16_t>(i)});
    return pairs;
}

TEST(Kern, FromTenThousandNineHundredTwentyThreePairsOnTheLengthIsNotTested) {
    const Reading most(KernSubtable{.pairs = manyPairs(10922), .length = 0x10});
    EXPECT_EQ(most.complaint, fileError("'kern' subtable 0 invalid pairs size"));
    const Reading more(KernSubtable{.pairs = manyPairs(10923), .length = 0x10});
    ASSERT_TRUE(more.ok) << more.complaint;
    EXPECT_EQ(more.kern.find(10922, 1), 10922);
    EXPECT_EQ(more.kern.find(0, 1), 0);
}

TEST(Kern, PairCountsThatLieNeedNoMemory) {
    const Reading read(KernSubtable{.pairs = kPairs, .nPairs = 65535});
    EXPECT_EQ(read.complaint, readError("'kern' subtable 0 pairs read error"));
    EXPECT_EQ(read.kern.kernPairs.capacity(), 0U);
}

TEST(Kern, UnsortedPairsAreSearchedWithoutHarm) {
    const Reading read(KernSubtable{.pairs = {{9, 9, 1}, {2, 2, 2}, {5, 5, 3}}});
    EXPECT_TRUE(read.ok);
    EXPECT_EQ(read.kern.find(2, 2), 2); // the middle, which is looked at first
    EXPECT_FALSE(read.kern.find(9, 9));
}

TEST(Kern, FindsPairsOfManyLeftGlyphsWithGapsBetweenThem) {
    std::vector<KernPair> pairs;
    for (int left = 40; left < 140; left += left % 3 == 0 ? 5 : 1)
        for (int right = left % 7; right < 20; right += 3)
            pairs.push_back({static_cast<std::uint16_t>(left), static_cast<std::uint16_t>(right),
                             static_cast<std::int16_t>(left * 100 + right)});
    const Reading read(KernSubtable{.pairs = pairs});
    ASSERT_TRUE(read.ok) << read.complaint;
    std::map<std::pair<int, int>, int> expected;
    for (const KernPair& pair : pairs)
        expected[{pair.left, pair.right}] = pair.value;
    for (unsigned short left = 0; left < 200; ++left)
        for (unsigned short right = 0; right < 25; ++right) {
            const auto found = expected.find({left, right});
            const std::optional<std::int16_t> value = read.kern.find(left, right);
            ASSERT_EQ(value.has_value(), found != expected.end()) << left << ' ' << right;
            if (value) {
                EXPECT_EQ(*value, found->second);
            }
        }
    EXPECT_FALSE(read.kern.find(0xFFFF, 3));
}

TEST(Kern, ManyUnsortedPairsAreSearchedWithoutHarm) {
    std::vector<KernPair> pairs = manyPairs(100);
    std::swap(pairs[10], pairs[80]);
    const Reading read(KernSubtable{.pairs = pairs});
    EXPECT_TRUE(read.ok);
    EXPECT_EQ(read.kern.find(49, 1), 49);
    EXPECT_EQ(read.kern.find(99, 1), 99);
}

} // namespace
} // namespace KWFontService_NS
