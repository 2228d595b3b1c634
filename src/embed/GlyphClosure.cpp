#include "embed/GlyphClosure.h"

#include "common/KWLimits.h"

#include <KWFontService17/FS_Types.h>

#include <algorithm>
#include <array>
#include <bit>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

// Composite glyph flags (OpenType `glyf`).
constexpr unsigned kArgsAreWords = 0x0001;
constexpr unsigned kHaveScale = 0x0008;
constexpr unsigned kMoreComponents = 0x0020;
constexpr unsigned kHaveXAndYScale = 0x0040;
constexpr unsigned kHaveTwoByTwo = 0x0080;

constexpr std::size_t kGlyphHeaderSize = 10;
constexpr std::size_t kComponentHeadSize = 4;

std::size_t componentTailSize(unsigned flags) {
    const std::size_t arguments = (flags & kArgsAreWords) != 0 ? 4 : 2;
    if ((flags & kHaveScale) != 0)
        return arguments + 2;
    if ((flags & kHaveXAndYScale) != 0)
        return arguments + 4;
    if ((flags & kHaveTwoByTwo) != 0)
        return arguments + 8;
    return arguments;
}

/// Calls `note` with each component of a composite glyph.
template <class Note>
void forEachComponent(ByteView glyph, const Note& note) {
    if (glyph.size() <= kGlyphHeaderSize || *glyph.i16(0) >= 0)
        return;
    std::size_t at = kGlyphHeaderSize;
    while (glyph.contains(at, kComponentHeadSize)) {
        const unsigned flags = *glyph.u16(at);
        note(*glyph.u16(at + 2));
        if ((flags & kMoreComponents) == 0)
            return;
        at += kComponentHeadSize + componentTailSize(flags);
    }
}

/// A set of glyphs that hands out its newcomers in rounds.
class GlyphSet {
public:
    void add(std::uint16_t gid) {
        std::uint64_t& word = words_[gid / kWordBits];
        const std::uint64_t bit = std::uint64_t{1} << (gid % kWordBits);
        if (gid == FS_NO_GLYPH || (word & bit) != 0)
            return;
        word |= bit;
        ++count_;
        newcomers_.push_back(gid);
    }
    /// Those added since the last call, ascending.
    std::vector<std::uint16_t> takeNewcomers() {
        std::vector<std::uint16_t> taken;
        taken.swap(newcomers_);
        std::sort(taken.begin(), taken.end());
        return taken;
    }
    /// All of them, ascending.
    std::vector<std::uint16_t> all() const {
        std::vector<std::uint16_t> gids;
        gids.reserve(count_);
        for (std::size_t i = 0; i < words_.size(); ++i)
            for (std::uint64_t rest = words_[i]; rest != 0; rest &= rest - 1)
                gids.push_back(static_cast<std::uint16_t>(
                    i * kWordBits + static_cast<std::size_t>(std::countr_zero(rest))));
        return gids;
    }

private:
    static constexpr std::size_t kWordBits = 64;

    std::array<std::uint64_t, 0x10000 / kWordBits> words_{};
    std::size_t count_ = 0;
    std::vector<std::uint16_t> newcomers_;
};

} // namespace

std::optional<std::vector<std::uint16_t>>
collectGlyphClosure(GlyphReader& reader, const std::vector<unsigned short>& wanted) {
    GlyphSet set;
    set.add(0);
    for (const unsigned short gid : wanted)
        set.add(gid);

    int roundNumber = 0;
    for (auto round = set.takeNewcomers(); !round.empty(); round = set.takeNewcomers()) {
        const bool mayReadGaps = ++roundNumber <= KWCommonNS::kClosureRoundsWithGaps;
        const std::uint32_t maxGap = mayReadGaps ? GlyphReader::kWorthwhileGap : 0;
        const auto noteComponents = [&](const GlyphRun& run) {
            reader.split(run, [&](std::uint16_t, ByteView glyph) {
                forEachComponent(glyph, [&](std::uint16_t component) { set.add(component); });
            });
        };
        if (!reader.visit(round, maxGap, noteComponents))
            return std::nullopt;
    }
    return set.all();
}

} // namespace KWFontService_NS
