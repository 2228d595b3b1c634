#pragma once

#include "layout/GlyphMemo.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace KWFontService_NS {

class LayoutCall;
struct TTI_Lookup;

/// Which subtables of a lookup are worth asking at a place. Fonts for Arabic have lookups of fifty
/// contexts that begin with the same few letters; what a letter and the one after it rule out is
/// remembered, so that one question stands for fifty.
///
/// It never rules out a subtable that applies, as long as the work that the call may do lasts.
class SubTableFilter {
public:
    /// False where asking each subtable is as quick.
    static bool isWorthIt(const TTI_Lookup& lookup, const GlyphMemo& memo);

    /// @param call  about the lookup's table. It pays a step for each subtable where the answer is
    ///              not remembered; when it cannot, all are ruled out
    SubTableFilter(const TTI_Lookup& lookup, LayoutCall& call);

    /// Rules out subtables that do not act on the glyph at the place.
    void startAt(unsigned short gid);
    /// Rules out subtables that want another glyph behind it than the next one that their lookup
    /// flag does not pass over.
    void followWith(unsigned short gid);

    /// Index of the next subtable that is not ruled out, in order; the number of subtables when
    /// there is none left.
    std::size_t next() {
        if (index_ < groupEnd_)
            return index_++;
        if (candidates_ == 0)
            return size_;
        const auto group = static_cast<std::size_t>(std::countr_zero(candidates_));
        index_ = std::min(group * groupSize_, size_);
        groupEnd_ = std::min(index_ + groupSize_, size_);
        candidates_ &= candidates_ - 1;
        return index_ == size_ ? size_ : index_++;
    }

private:
    /// Subtables share the bits of a remembered answer, neighbours first.
    static constexpr std::size_t kGroups = 32;

    /// Rules out the groups without a subtable of which `admits` is true.
    template <class Admits>
    void rule(GlyphMemo::Kind kind, unsigned short gid, Admits admits);

    const TTI_Lookup& lookup_;
    LayoutCall& call_;
    std::size_t size_;
    std::size_t groupSize_;
    /// The groups that are still to come, one bit each.
    std::uint32_t candidates_ = ~std::uint32_t{0};
    /// What is left of the group that `next` is in.
    std::size_t index_ = 0;
    std::size_t groupEnd_ = 0;
};

} // namespace KWFontService_NS
