#include "layout/TTI_ClassDef.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A class definition with its bytes.
class Reading {
public:
    explicit Reading(const Bytes& bytes)
        : bytes_(bytes), table_(TTI_ClassDef::read(viewOf(bytes_))) {}
    const TTI_ClassDef* operator->() const { return &*table_; }
    explicit operator bool() const { return table_.has_value(); }

private:
    Bytes bytes_;
    std::optional<TTI_ClassDef> table_;
};

Reading read(const Bytes& bytes) {
    return Reading(bytes);
}

TEST(ClassDef, Format1IsStoredAndDeliberatelyMatchesNothing) {
    const auto table = read(classDefFormat1(10, {1, 2, 3}));
    ASSERT_TRUE(table);
    const TTI_ClassDefFormat1* stored = table->format1();
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->startGlyph(), 10);
    EXPECT_EQ(values(stored->classes()), (std::vector<std::uint16_t>{1, 2, 3}));
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
    EXPECT_FALSE(read(Bytes().u16(0).u16(0).u16(0)));
    EXPECT_FALSE(read(Bytes().u16(3).u16(0).u16(0)));
    EXPECT_FALSE(read(Bytes{0}));
    EXPECT_FALSE(read(Bytes{}));
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
    EXPECT_EQ(table->format1()->classes().size(), 1U);
}

TEST(ClassDef, UnsortedRangesAnswerOrMiss) {
    const auto table = read(classDefFormat2({{50, 60, 1}, {10, 20, 2}, {30, 5, 3}}));
    for (int gid = 0; gid < 100; ++gid) {
        const int found = table->classOf(static_cast<unsigned short>(gid));
        EXPECT_EQ(found, gid >= 10 && gid <= 20 ? 2 : -1) << gid;
    }
}

} // namespace
} // namespace KWFontService_NS
