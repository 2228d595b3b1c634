#include "layout/SubTableReader.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const Bytes kSingle = SingleSubst{.pairs = {{3, 30}}}.build();

struct Gsub {
    std::uint32_t type;
    std::unique_ptr<TTI_SubTable> table;

    Gsub(std::uint32_t typeInFile, const Bytes& bytes) : type(typeInFile) {
        LayoutBudget budget(bytes.size());
        table = SubTableReader(budget).readGsub(viewOf(bytes), typeInFile, type);
    }
};

std::unique_ptr<TTI_SubTable> readGpos(std::uint32_t type, const Bytes& bytes) {
    LayoutBudget budget(bytes.size());
    return SubTableReader(budget).readGpos(viewOf(bytes), type);
}

TEST(SubTableReader, UnknownTypesAreNoSubtable) {
    for (const std::uint32_t type : {0U, 9U, 0xFFFFU}) {
        const Gsub gsub(type, kSingle);
        EXPECT_EQ(gsub.table, nullptr);
        EXPECT_EQ(gsub.type, type);
    }
    for (const std::uint32_t type : {0U, 10U, 0xFFFFU})
        EXPECT_EQ(readGpos(type, kSingle), nullptr);
}

TEST(SubTableReader, AGsubExtensionIsTheSubtableItWraps) {
    const Gsub gsub(7, extension(1, kSingle));
    ASSERT_NE(gsub.table, nullptr);
    EXPECT_EQ(gsub.type, 1U);
    EXPECT_EQ(gsub.table->lookupType(), 1);
    EXPECT_EQ(gsub.table->substituteSingle(3), 30);
}

TEST(SubTableReader, TheFormatOfAGsubExtensionDoesNotMatter) {
    EXPECT_NE(Gsub(7, extension(1, kSingle, 2)).table, nullptr);
}

TEST(SubTableReader, ExtensionsInsideExtensionsUnwind) {
    const Gsub gsub(7, extension(7, extension(7, extension(1, kSingle))));
    ASSERT_NE(gsub.table, nullptr);
    EXPECT_EQ(gsub.type, 1U);
}

TEST(SubTableReader, AnExtensionOfItselfEnds) {
    const Bytes loop = Bytes().u16(1).u16(7).u32(0);
    EXPECT_EQ(Gsub(7, loop).table, nullptr);
    EXPECT_EQ(readGpos(9, Bytes().u16(1).u16(9).u32(0)), nullptr);
}

TEST(SubTableReader, AnExtensionThatPointsOutsideIsNoSubtable) {
    for (const std::uint32_t offset : {1000U, 0x80000000U, 0xFFFFFFFFU}) {
        const Gsub gsub(7, Bytes().u16(1).u16(1).u32(offset).bytes(kSingle));
        EXPECT_EQ(gsub.table, nullptr);
        EXPECT_EQ(gsub.type, 1U) << "the wrapped type was read";
    }
}

TEST(SubTableReader, AnExtensionCutOffIsNoSubtable) {
    const Bytes whole = extension(1, kSingle);
    for (std::size_t size = 0; size < 8; ++size)
        EXPECT_EQ(Gsub(7, whole.slice(0, size)).table, nullptr);
    EXPECT_EQ(Gsub(7, whole.slice(0, 3)).type, 7U);
}

TEST(SubTableReader, ACoverageIsHeldOnceHoweverOftenItIsNamed) {
    const Bytes bytes = Bytes().u16(4).u16(4).bytes(coverageTable({1, 2}));
    LayoutBudget budget(bytes.size());
    SubTableReader reader(budget);
    const auto first = reader.coverage(viewOf(bytes), 0);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(reader.coverage(viewOf(bytes), 2), first);
    EXPECT_EQ(reader.coverage(viewOf(bytes).from(2), 2), nullptr) << "another place";
}

TEST(SubTableReader, ACoverageBeyondTheBudgetIsNone) {
    const Bytes bytes = Bytes().u16(2).bytes(coverageTable({1, 2}));
    LayoutBudget budget(0);
    ASSERT_TRUE(budget.spend(KWCommonNS::kLayoutFreeBytes - (KWCommonNS::kLayoutObjectCost + 7)));
    SubTableReader reader(budget);
    EXPECT_EQ(reader.coverage(viewOf(bytes), 0), nullptr) << "it has 8 bytes beside the object";
    EXPECT_FALSE(reader.spend(0));
}

} // namespace
} // namespace KWFontService_NS
