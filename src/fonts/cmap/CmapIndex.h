#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// Where to look in a sorted list of code ranges: for each block of codes, the first range that
/// ends in the block or behind it. At most about 16 KiB; a face has one, of the subtable that
/// answers.
class CmapIndex {
public:
    /// The first range that may hold a code, and the last one, which may be behind the list.
    struct Candidates {
        std::uint32_t low;
        std::uint32_t high;
    };

    /// @param count   number of ranges; with more than 65535 of them there is no index
    /// @param lastOf  the last code of a range by its place, not decreasing and not negative
    template <class LastOf>
    void build(std::size_t count, LastOf lastOf) {
        if (count == 0 || count > kMaxRanges)
            return;
        count_ = static_cast<std::uint32_t>(count);
        std::size_t range = 0;
        const auto fill = [&](std::vector<std::uint16_t>& blocks, std::uint32_t start,
                              unsigned int shift) {
            blocks.resize(kBlocks + 1);
            for (std::uint32_t block = 0; block <= kBlocks; ++block) {
                const std::uint32_t first = start + (block << shift);
                while (range < count && lastOf(range) < first)
                    ++range;
                blocks[block] = static_cast<std::uint16_t>(range);
            }
        };
        fill(basic_, 0, kBasicShift);
        if (range < count)
            fill(supplementary_, kBasicEnd, kSupplementaryShift);
    }

    bool empty() const { return basic_.empty(); }

    Candidates candidates(std::uint32_t code) const {
        if (code < kBasicEnd) {
            const std::uint16_t* block = basic_.data() + (code >> kBasicShift);
            return {block[0], block[1]};
        }
        if (supplementary_.empty())
            return {count_, count_};
        if (code >= kCodeEnd)
            return {supplementary_.back(), count_};
        const std::uint16_t* block =
            supplementary_.data() + ((code - kBasicEnd) >> kSupplementaryShift);
        return {block[0], block[1]};
    }

private:
    static constexpr std::size_t kMaxRanges = 0xFFFF;
    static constexpr std::uint32_t kBasicEnd = 0x10000;
    static constexpr std::uint32_t kCodeEnd = 0x110000;
    static constexpr unsigned int kBasicShift = 4;
    static constexpr unsigned int kSupplementaryShift = 8;
    static constexpr std::uint32_t kBlocks = 4096; // of either size

    std::uint32_t count_ = 0;
    std::vector<std::uint16_t> basic_;
    std::vector<std::uint16_t> supplementary_;
};

} // namespace KWFontService_NS
