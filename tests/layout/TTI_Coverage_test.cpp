#include "layout/TTI_Coverage.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A coverage with its bytes.
class Reading {
public:
    explicit Reading(const Bytes& bytes)
        : bytes_(bytes), table_(TTI_Coverage::read(viewOf(bytes_))) {}
    const TTI_Coverage* operator->() const { return &*table_; }
    explicit operator bool() const { return table_.has_value(); }

private:
    Bytes bytes_;
    std::optional<TTI_Coverage> table_;
};

Reading read(const Bytes& bytes) {
    return Reading(bytes);
}

TEST(Coverage, BothFormatsAnswerTheIndexOfAGlyph) {
    const std::vector<std::uint16_t> glyphs = {3, 4, 5, 90, 200, 201, 0xFFFF};
    for (const int format : {1, 2}) {
        const auto table = read(coverageTable(glyphs, format));
        ASSERT_TRUE(table);
        for (std::size_t i = 0; i < glyphs.size(); ++i)
            EXPECT_EQ(table->coverageIndex(glyphs[i]), static_cast<int>(i)) << format;
        for (const unsigned short gid :
             std::initializer_list<unsigned short>{0, 2, 6, 89, 91, 199, 202, 0xFFFE})
            EXPECT_EQ(table->coverageIndex(gid), -1) << format << ' ' << gid;
    }
}

TEST(Coverage, ARangeCountsFromItsOwnStartIndex) {
    const auto table = read(Bytes().u16(2).u16(1).u16(10).u16(12).u16(100));
    EXPECT_EQ(table->coverageIndex(12), 102);
}

TEST(Coverage, AnEmptyTableCoversNothing) {
    for (const int format : {1, 2})
        EXPECT_EQ(read(Bytes().u16(format).u16(0))->coverageIndex(0), -1);
}

TEST(Coverage, OtherFormatsAndNoBytesAreNoTable) {
    EXPECT_FALSE(read(Bytes().u16(0).u16(0)));
    EXPECT_FALSE(read(Bytes().u16(3).u16(0)));
    EXPECT_FALSE(read(Bytes{}));
}

TEST(Coverage, OfATableThatIsCutOffTheWholeRecordsCount) {
    for (const int format : {1, 2}) {
        Bytes bytes = coverageTable({10, 20, 30}, format);
        bytes.truncate(bytes.size() - 1);
        const auto table = read(bytes);
        EXPECT_EQ(table->coverageIndex(20), 1);
        EXPECT_EQ(table->coverageIndex(30), -1);
    }
    EXPECT_EQ(read(Bytes().u16(1).u16(0xFFFF).u16(8))->coverageIndex(8), 0);
}

TEST(Coverage, ItsDigestHoldsEveryGlyphThatASearchComesTo) {
    const Bytes tables[] = {coverageTable({3, 4, 5, 90, 200, 201, 0xFFFF}),
                            coverageTable({3, 4, 5, 90, 200, 201, 0xFFFF}, 2),
                            Bytes().u16(1).u16(5).u16s({50, 7, 7, 60000, 3}),
                            Bytes().u16(2).u16(3).u16s({100, 90, 0, 20, 30, 4, 5, 9, 1}),
                            Bytes().u16(2).u16(1).u16s({0, 0xFFFF, 0}),
                            Bytes().u16(2).u16(1).u16s({9, 3, 0}),
                            coverageTable({})};
    for (const Bytes& bytes : tables) {
        const auto table = read(bytes);
        const GlyphDigest digest = table->digest();
        for (int i = 0; i <= 0xFFFF; ++i) {
            const auto gid = static_cast<unsigned short>(i);
            if (table->coverageIndex(gid) >= 0) {
                ASSERT_TRUE(digest.mayHold(gid)) << bytes.hex() << ' ' << gid;
            }
        }
    }
}

// The middle is rounded down and the first hit counts; other searches would find other glyphs.
TEST(Coverage, ASearchOutOfOrderComesToStatedPlaces) {
    const auto list = read(Bytes().u16(1).u16(5).u16s({50, 7, 9, 9, 9}));
    EXPECT_EQ(list->coverageIndex(9), 2) << "the middle of five, though there are two more";
    EXPECT_EQ(list->coverageIndex(7), 1);
    EXPECT_EQ(list->coverageIndex(50), -1) << "in the half that is not looked at";
    const auto pair = read(Bytes().u16(1).u16(3).u16s({5, 3, 9}));
    EXPECT_EQ(pair->coverageIndex(5), -1);
    EXPECT_EQ(pair->coverageIndex(3), 1);
    const auto ranges = read(Bytes().u16(2).u16(3).u16s({1, 30, 0, 10, 20, 100, 15, 40, 200}));
    EXPECT_EQ(ranges->coverageIndex(15), 105) << "of three that hold it the middle one";
    EXPECT_EQ(ranges->coverageIndex(25), 210);
    EXPECT_EQ(ranges->coverageIndex(9), 8);
    EXPECT_EQ(read(Bytes().u16(2).u16(3).u16s({9, 9, 1, 30, 5, 0, 50, 60, 2}))->coverageIndex(9), 1)
        << "a range that ends before it starts lies behind what is below its start";
}

TEST(Coverage, AListAnswersForEachOfItsCoverages) {
    const Bytes bytes = OffsetTable()
                            .offsets({coverageTable({1, 2}), coverageTable({2}, 2), Bytes()})
                            .bytes(Bytes().u16(0xFFF0))
                            .build();
    const TTI_CoverageList list(viewOf(bytes), U16List(viewOf(bytes), 0, 4));
    ASSERT_EQ(list.size(), 4U);
    EXPECT_TRUE(list.covers(0, 1));
    EXPECT_FALSE(list.covers(1, 1));
    EXPECT_TRUE(list.covers(1, 2));
    EXPECT_FALSE(list.covers(2, 1)) << "no coverage";
    EXPECT_FALSE(list.covers(3, 1)) << "outside";
}

} // namespace
} // namespace KWFontService_NS
