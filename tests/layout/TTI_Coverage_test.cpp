#include "layout/TTI_Coverage.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

std::unique_ptr<TTI_Coverage> read(const Bytes& bytes) {
    return TTI_Coverage::read(viewOf(bytes));
}

TEST(Coverage, BothFormatsAnswerTheIndexOfAGlyph) {
    const std::vector<std::uint16_t> glyphs = {3, 4, 5, 90, 200, 201, 0xFFFF};
    for (const int format : {1, 2}) {
        const auto table = read(coverageTable(glyphs, format));
        ASSERT_NE(table, nullptr);
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
    EXPECT_EQ(read(Bytes().u16(0).u16(0)), nullptr);
    EXPECT_EQ(read(Bytes().u16(3).u16(0)), nullptr);
    EXPECT_EQ(read(Bytes{}), nullptr);
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

} // namespace
} // namespace KWFontService_NS
