#pragma once

#include "layout/GlyphMemo.h"

#include <KWFontService17/GlyphIDArray.h>

#include <cstddef>
#include <vector>

namespace KWFontService_NS {

class GlyphIDPosition;
struct TTI_Gdef;

// The bits of a lookup flag (OpenType, LookupFlag).
inline constexpr unsigned int kRightToLeft = 0x0001;
inline constexpr unsigned int kIgnoreBaseGlyphs = 0x0002;
inline constexpr unsigned int kIgnoreLigatures = 0x0004;
inline constexpr unsigned int kIgnoreMarks = 0x0008;
inline constexpr unsigned int kMarkAttachmentTypeMask = 0xFF00;
inline constexpr unsigned int kMarkAttachmentTypeShift = 8;

/// One call that processes a run: the glyph classes of its font, and the work that the call may
/// still do. It lives as long as the call and belongs to its thread.
class LayoutCall {
public:
    /// @param gdef    kept
    /// @param glyphs  length of the run that the call is given
    /// @param memo    of the layout table that the call is about
    LayoutCall(const TTI_Gdef& gdef, std::size_t glyphs, const GlyphMemo& memo = {});

    // --- glyph classes --------------------------------------------------------------------------

    /// A glyph with its class by GDEF, -1 when that has none.
    GlyphIDClassPair glyph(unsigned short gid) const;
    /// True when a lookup with this flag takes no notice of the glyph.
    bool passesOver(unsigned int lookupFlag, const GlyphIDClassPair& glyph) const {
        return (lookupFlag & kPassingBits) != 0 && passesOverByClass(lookupFlag, glyph);
    }

    /// What has been searched for in the font's tables.
    GlyphMemo& memo() { return memo_; }

    // --- what bounds the work -------------------------------------------------------------------

    /// Pays for steps, each about the price of a search in a coverage. False when the rest does not
    /// cover them; from then on nothing is covered, and every lookup misses.
    bool spend(std::size_t steps) {
        if (steps > left_) {
            left_ = 0;
            exhausted_ = true;
        } else {
            left_ -= steps;
        }
        return !exhausted_;
    }
    /// Pays for glyphs that are moved in memory.
    bool spendMoves(std::size_t glyphs) { return spend(glyphs / kMovesOfAStep + 1); }
    /// Pays for records that are read one after the other in search of one.
    bool spendReads(std::size_t records) { return spend(records / kReadsOfAStep + 1); }
    bool exhausted() const { return exhausted_; }
    /// False when a run must not grow to this length; then the lookup misses.
    bool mayGrowTo(std::size_t glyphs) const { return glyphs <= maxGlyphs_; }

    /// A lookup that a context calls. Where it tests false the nesting is too deep.
    class Nesting {
    public:
        explicit Nesting(LayoutCall& call) : call_(call) { ++call_.depth_; }
        ~Nesting() { --call_.depth_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;
        explicit operator bool() const { return call_.depth_ <= kMaxNesting; }

    private:
        LayoutCall& call_;
    };

    // --- positions as a run ---------------------------------------------------------------------

    /// The glyphs of all positions, which positioning does not change. Made at the first call and
    /// kept: a call has to do with one vector of positions.
    const GlyphIDArray& runOf(const std::vector<GlyphIDPosition>& positions);
    /// Where a matcher may list what it passes over, when nobody reads it.
    std::vector<int>& passedOver() { return passedOver_; }

private:
    static constexpr unsigned int kPassingBits =
        kIgnoreBaseGlyphs | kIgnoreLigatures | kIgnoreMarks | kMarkAttachmentTypeMask;
    static constexpr std::size_t kMovesOfAStep = 64;
    static constexpr std::size_t kReadsOfAStep = 16;
    static const int kMaxNesting;

    bool passesOverByClass(unsigned int lookupFlag, const GlyphIDClassPair& glyph) const;

    const TTI_Gdef& gdef_;
    std::size_t left_;
    std::size_t maxGlyphs_;
    bool exhausted_ = false;
    int depth_ = 0;
    GlyphMemo memo_;
    GlyphIDArray run_;
    std::vector<int> passedOver_;
};

} // namespace KWFontService_NS
