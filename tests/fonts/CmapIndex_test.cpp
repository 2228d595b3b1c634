#include "fonts/cmap/CmapIndex.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace KWFontService_NS {
namespace {

void expectCandidatesAround(const std::vector<std::uint32_t>& lastCodes) {
    CmapIndex index;
    index.build(lastCodes.size(), [&](std::size_t i) { return lastCodes[i]; });
    ASSERT_FALSE(index.empty());
    for (std::uint32_t code = 0; code < 0x110010; ++code) {
        const auto first = std::lower_bound(lastCodes.begin(), lastCodes.end(), code);
        const auto place = static_cast<std::uint32_t>(first - lastCodes.begin());
        const CmapIndex::Candidates candidates = index.candidates(code);
        ASSERT_LE(candidates.low, place) << code;
        ASSERT_GE(candidates.high, place) << code;
        ASSERT_LE(candidates.high, lastCodes.size()) << code;
    }
}

TEST(CmapIndex, TheFirstRangeThatDoesNotEndBeforeACodeIsAmongItsCandidates) {
    expectCandidatesAround({0});
    expectCandidatesAround({0xFFFF});
    expectCandidatesAround({15, 16, 17, 31, 0x100, 0x100, 0xFFF0, 0xFFFF});
    expectCandidatesAround({0x40, 0xFFFF, 0x10000, 0x100FF, 0x10100, 0x1F600, 0x10FFFF});
    expectCandidatesAround({0x40, 0x7FFFFFFF});
}

TEST(CmapIndex, ARangeOverManyBlocksIsTheOnlyCandidateInside) {
    CmapIndex index;
    const std::vector<std::uint32_t> lastCodes = {0x20, 0x3000, 0xFFFF};
    index.build(lastCodes.size(), [&](std::size_t i) { return lastCodes[i]; });
    EXPECT_EQ(index.candidates(0x1234).low, 1U);
    EXPECT_EQ(index.candidates(0x1234).high, 1U);
}

TEST(CmapIndex, ThereIsNoneOfNothingNorOfMoreRangesThanItCanCount) {
    CmapIndex index;
    index.build(0, [](std::size_t) { return 0U; });
    EXPECT_TRUE(index.empty());
    index.build(0x10000, [](std::size_t i) { return static_cast<std::uint32_t>(i); });
    EXPECT_TRUE(index.empty());
    index.build(0xFFFF, [](std::size_t i) { return static_cast<std::uint32_t>(i); });
    EXPECT_FALSE(index.empty());
}

} // namespace
} // namespace KWFontService_NS
