#include "layout/GSUB_SingleSubst.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

OneSubTable read(const Bytes& bytes) {
    return OneSubTable::gsub(1, bytes);
}

TEST(SingleSubst, Format1AddsOneDistanceModulo65536) {
    for (const int coverageFormat : {1, 2}) {
        const auto table = read(SingleSubst{.format = 1,
                                            .pairs = {{10, 5}, {11, 6}, {0xFFFF, 0xFFFA}},
                                            .coverageFormat = coverageFormat}
                                    .build());
        ASSERT_NE(table.get(), nullptr);
        EXPECT_EQ(table.get()->lookupType(), 1);
        EXPECT_EQ(table.get()->substituteSingle(10), 5);
        EXPECT_EQ(table.get()->substituteSingle(11), 6);
        EXPECT_EQ(table.get()->substituteSingle(12), kNoGlyph);
    }
    EXPECT_EQ(read(SingleSubst{.format = 1, .pairs = {{0xFFF0, 0x0010}}}.build())
                  .get()
                  ->substituteSingle(0xFFF0),
              0x0010);
}

TEST(SingleSubst, Format2AnswersTheSubstituteAtTheCoverageIndex) {
    for (const int coverageFormat : {1, 2}) {
        const auto table = read(SingleSubst{.format = 2,
                                            .pairs = {{10, 90}, {11, 5}, {20, 0}, {30, 0xFFFF}},
                                            .coverageFormat = coverageFormat}
                                    .build());
        ASSERT_NE(table.get(), nullptr);
        EXPECT_EQ(table.get()->lookupType(), 1);
        EXPECT_EQ(table.get()->substituteSingle(10), 90);
        EXPECT_EQ(table.get()->substituteSingle(11), 5);
        EXPECT_EQ(table.get()->substituteSingle(20), 0);
        EXPECT_EQ(table.get()->substituteSingle(30), kNoGlyph);
        EXPECT_EQ(table.get()->substituteSingle(12), kNoGlyph);
    }
}

TEST(SingleSubst, ACoverageIndexBeyondTheSubstitutesIsNoSubstitution) {
    Bytes bytes = Bytes().u16(2).u16(8).u16(1).u16(77).bytes(coverageTable({1, 2, 3}));
    const auto table = read(bytes);
    EXPECT_EQ(table.get()->substituteSingle(1), 77);
    EXPECT_EQ(table.get()->substituteSingle(3), kNoGlyph);
}

TEST(SingleSubst, OtherFormatsAreNoSubtable) {
    for (const int format : {0, 3, 0xFFFF})
        EXPECT_EQ(read(Bytes().u16(format).u16(6).u16(0).bytes(coverageTable({1}))).get(), nullptr);
}

TEST(SingleSubst, ABadCoverageIsNoSubtable) {
    for (const int format : {1, 2}) {
        EXPECT_EQ(read(Bytes().u16(format).u16(0xFFFF).u16(0)).get(), nullptr) << "outside";
        EXPECT_EQ(read(Bytes().u16(format).u16(6).u16(0).u16(3).u16(0)).get(), nullptr)
            << "its format";
    }
}

TEST(SingleSubst, EveryLengthCanBeRead) {
    for (const int format : {1, 2}) {
        const Bytes whole = SingleSubst{.format = format, .pairs = {{10, 15}, {11, 16}}}.build();
        for (std::size_t size = 0; size <= whole.size(); ++size) {
            const auto table = read(whole.slice(0, size));
            if (table.get() != nullptr)
                (void)table.get()->substituteSingle(11);
        }
    }
}

} // namespace
} // namespace KWFontService_NS
