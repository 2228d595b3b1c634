#include "layout/TTI_ClassDef.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

std::unique_ptr<TTI_ClassDef> read(const Bytes& bytes) {
    return TTI_ClassDef::read(viewOf(bytes));
}

TEST(ClassDef, Format1IsStoredAndDeliberatelyMatchesNothing) {
    const auto table = read(classDefFormat1(10, {1, 2, 3}));
    const auto* stored = dynamic_cast<const TTI_ClassDefFormat1*>(table.get());
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->startGlyph(), 10);
    EXPECT_EQ(stored->classes(), (std::vector<std::uint16_t>{1, 2, 3}));
    for (const unsigned short gid :
         std::initializer_list<unsigned short>{0, 9, 10, 11, 12, 13, 0xFFFF})
        EXPECT_EQ(table->classOf(gid), -1);
}

TEST(ClassDef, Format2AnswersTheClassOfARange) {
    const auto table =
        read(classDefFormat2({{5, 5, 1}, {10, 20, 2}, {21, 30, 0}, {0xFFF0, 0xFFFF, 4}}));
    EXPECT_EQ(table->classOf(5), 1);
    EXPECT_EQ(table->classOf(10), 2);
    EXPECT_EQ(table->classOf(20), 2);
    EXPECT_EQ(table->classOf(21), 0);
    EXPECT_EQ(table->classOf(0xFFFF), 4);
}

TEST(ClassDef, AGlyphOutsideAllRangesHasMinusOneAndNotClassZero) {
    const auto table = read(classDefFormat2({{5, 5, 1}, {10, 20, 2}}));
    for (const unsigned short gid : std::initializer_list<unsigned short>{0, 4, 6, 9, 21, 0xFFFF})
        EXPECT_EQ(table->classOf(gid), -1) << gid;
}

TEST(ClassDef, OtherFormatsAndNoBytesAreNoTable) {
    EXPECT_EQ(read(Bytes().u16(0).u16(0).u16(0)), nullptr);
    EXPECT_EQ(read(Bytes().u16(3).u16(0).u16(0)), nullptr);
    EXPECT_EQ(read(Bytes{0}), nullptr);
    EXPECT_EQ(read(Bytes{}), nullptr);
}

TEST(ClassDef, OfATableThatIsCutOffTheWholeRangesCount) {
    Bytes bytes = classDefFormat2({{1, 1, 1}, {2, 2, 2}, {3, 3, 3}});
    bytes.truncate(bytes.size() - 1);
    const auto table = read(bytes);
    EXPECT_EQ(table->classOf(2), 2);
    EXPECT_EQ(table->classOf(3), -1);
    EXPECT_EQ(read(Bytes().u16(2))->classOf(0), -1);
    EXPECT_EQ(read(Bytes().u16(1))->classOf(0), -1);
}

TEST(ClassDef, ACountBeyondTheBytesTakesNoMemory) {
    const auto table = read(Bytes().u16(1).u16(0).u16(0xFFFF).u16(7));
    EXPECT_EQ(dynamic_cast<const TTI_ClassDefFormat1&>(*table).classes().size(), 1U);
}

TEST(ClassDef, UnsortedRangesAnswerOrMiss) {
    const auto table = read(classDefFormat2({{50, 60, 1}, {10, 20, 2}, {30, 5, 3}}));
    for (int gid = 0; gid < 100; ++gid) {
        const int found = table->classOf(static_cast<unsigned short>(gid));
        EXPECT_TRUE(found == -1 || (found == 1 && gid >= 50) || (found == 2 && gid <= 20)) << gid;
    }
}

} // namespace
} // namespace KWFontService_NS
