#pragma once

#include "layout/GlyphMemo.h"

#include <cstddef>
#include <cstdint>

namespace KWFontService_NS {

struct TTI_Lookup;

/// Which subtables of a lookup are worth asking at a place. Fonts for Arabic have lookups of fifty
/// contexts that begin with the same few letters; what a letter and the one after it rule out is
/// remembered, so that one question stands for fifty.
///
/// It never rules out a subtable that applies.
class SubTableFilter {
public:
    /// False where asking each subtable is as quick.
    static bool isWorthIt(const TTI_Lookup& lookup, const GlyphMemo& memo);

    /// @param memo  of the lookup's table
    SubTableFilter(const TTI_Lookup& lookup, GlyphMemo& memo);

    /// Rules out subtables that do not act on the glyph at the place.
    void startAt(unsigned short gid);
    /// Rules out subtables that want another glyph behind it than the next one that their lookup
    /// flag does not pass over.
    void followWith(unsigned short gid);

    /// True when the subtable of an index is not ruled out.
    bool admits(std::size_t index) const { return (candidates_ >> groupOf(index) & 1U) != 0; }

private:
    /// Subtables share the bits of a remembered answer, neighbours first.
    static constexpr std::size_t kGroups = 32;

    std::size_t groupOf(std::size_t index) const { return index * groups_ / size_; }
    /// Rules out the groups without a subtable of which `admits` is true.
    template <class Admits>
    void rule(GlyphMemo::Kind kind, unsigned short gid, Admits admits);

    const TTI_Lookup& lookup_;
    GlyphMemo& memo_;
    std::size_t size_;
    std::size_t groups_;
    std::uint32_t candidates_ = ~std::uint32_t{0};
};

} // namespace KWFontService_NS
