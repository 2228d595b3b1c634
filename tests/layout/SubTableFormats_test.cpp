#include "layout/SubTableFormats.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

#include <span>
#include <utility>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const Bytes kSingle = SingleSubst{.pairs = {{3, 30}}}.build();

struct Gsub {
    std::uint16_t type;
    const SubTableFormat* format;

    Gsub(std::uint16_t typeInFile, const Bytes& bytes)
        : type(typeInFile), format(findGsubSubTable(viewOf(bytes), typeInFile, type).format) {}
};

const SubTableFormat* gpos(std::uint16_t type, const Bytes& bytes) {
    return findGposSubTable(viewOf(bytes), type).format;
}

TEST(SubTableFormats, UnknownTypesAreNoSubtable) {
    for (const std::uint16_t type : std::initializer_list<std::uint16_t>{0, 9, 0xFFFF}) {
        const Gsub gsub(type, kSingle);
        EXPECT_EQ(gsub.format, nullptr);
        EXPECT_EQ(gsub.type, type);
    }
    for (const std::uint16_t type : std::initializer_list<std::uint16_t>{0, 10, 0xFFFF})
        EXPECT_EQ(gpos(type, kSingle), nullptr);
}

TEST(SubTableFormats, AGsubExtensionIsTheSubtableItWraps) {
    const Gsub gsub(7, extension(1, kSingle));
    ASSERT_NE(gsub.format, nullptr);
    EXPECT_EQ(gsub.type, 1U);
    EXPECT_EQ(gsub.format->lookupType, 1);
    EXPECT_EQ(OneSubTable::gsub(7, extension(1, kSingle)).get()->substituteSingle(3), 30);
}

TEST(SubTableFormats, TheFormatOfAGsubExtensionDoesNotMatter) {
    EXPECT_NE(Gsub(7, extension(1, kSingle, 2)).format, nullptr);
}

TEST(SubTableFormats, ExtensionsInsideExtensionsUnwind) {
    const Gsub gsub(7, extension(7, extension(7, extension(1, kSingle))));
    ASSERT_NE(gsub.format, nullptr);
    EXPECT_EQ(gsub.type, 1U);
}

TEST(SubTableFormats, AnExtensionOfItselfEnds) {
    const Bytes loop = Bytes().u16(1).u16(7).u32(0);
    EXPECT_EQ(Gsub(7, loop).format, nullptr);
    EXPECT_EQ(gpos(9, Bytes().u16(1).u16(9).u32(0)), nullptr);
}

TEST(SubTableFormats, AnExtensionThatPointsOutsideIsNoSubtable) {
    for (const std::uint32_t offset : {1000U, 0x80000000U, 0xFFFFFFFFU}) {
        const Gsub gsub(7, Bytes().u16(1).u16(1).u32(offset).bytes(kSingle));
        EXPECT_EQ(gsub.format, nullptr);
        EXPECT_EQ(gsub.type, 1U) << "the wrapped type was read";
    }
}

TEST(SubTableFormats, AnExtensionCutOffIsNoSubtable) {
    const Bytes whole = extension(1, kSingle);
    for (std::size_t size = 0; size < 8; ++size)
        EXPECT_EQ(Gsub(7, whole.slice(0, size)).format, nullptr);
    EXPECT_EQ(Gsub(7, whole.slice(0, 3)).type, 7U);
}

/// The types and formats that have a class.
constexpr std::pair<int, int> kGsubKnown[] = {{1, 2}, {2, 1}, {3, 1}, {4, 1},
                                              {5, 3}, {6, 3}, {8, 1}};
constexpr std::pair<int, int> kGposKnown[] = {{1, 2}, {2, 2}, {3, 1}, {4, 1},
                                              {5, 1}, {6, 1}, {7, 3}, {8, 3}};

int formatsOf(std::span<const std::pair<int, int>> known, int type) {
    for (const auto& [knownType, formats] : known) {
        if (knownType == type)
            return formats;
    }
    return 0;
}

TEST(SubTableFormats, EveryTypeHasItsFormatsAndNoOthers) {
    for (int type = 0; type <= 12; ++type) {
        for (const int number : {0, 1, 2, 3, 4, 0xFFFF}) {
            const Bytes bytes = Bytes().u16(number).zero(20);
            const auto wanted = [&](std::span<const std::pair<int, int>> known) {
                return number >= 1 && number <= formatsOf(known, type);
            };
            if (type != kGsubExtension) {
                const Gsub found(static_cast<std::uint16_t>(type), bytes);
                ASSERT_EQ(found.format != nullptr, wanted(kGsubKnown)) << type << ' ' << number;
                if (found.format != nullptr) {
                    EXPECT_EQ(found.format->lookupType, type);
                    EXPECT_EQ(found.format->format, number);
                }
            }
            if (type != kGposExtension) {
                const SubTableFormat* found = gpos(static_cast<std::uint16_t>(type), bytes);
                ASSERT_EQ(found != nullptr, wanted(kGposKnown)) << type << ' ' << number;
                if (found != nullptr) {
                    EXPECT_EQ(found->lookupType, type);
                    EXPECT_EQ(found->format, number);
                }
            }
        }
    }
}

TEST(SubTableFormats, AGposExtensionIsTheSubtableItWraps) {
    const Bytes value = singlePosFormat1({3}, 4, {50});
    const SubTableFormat* found = gpos(9, extension(9, extension(1, value)));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->lookupType, 1);
    EXPECT_EQ(gpos(9, extension(1, value, 2)), nullptr) << "here the format matters";
}

TEST(SubTableFormats, SubtablesAreSmall) {
    // The file has about 80 bytes for each where they are many, as in fonts for Arabic.
    for (const auto& [type, formats] : kGsubKnown) {
        for (int number = 1; number <= formats; ++number)
            EXPECT_LE(Gsub(static_cast<std::uint16_t>(type), Bytes().u16(number)).format->size,
                      64U);
    }
    EXPECT_LE(Gsub(6, Bytes().u16(3)).format->size, 40U);
    EXPECT_LE(Gsub(1, Bytes().u16(1)).format->size, 40U);
}

} // namespace
} // namespace KWFontService_NS
