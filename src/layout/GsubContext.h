#pragma once

#include <KWFontService17/GlyphIDArray.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace KWFontService_NS {

class LayoutCall;
class TTI_LookupList;
struct TTI_Lookup;

/// A run that the lookups of a context write to while they read the run it was taken from. It
/// begins as a copy of that run, of which only the part that is written is really made.
class ContextOutput {
public:
    /// Makes it a copy of `run`, which stays as it is until the next call.
    /// @param start  where writing is likely to begin
    void copy(const GlyphIDArray& run, int start);

    int size() const { return head() + made() + rest(); }
    /// @param index  from 0 to below `size()`
    const GlyphIDClassPair& operator[](int index) const;
    /// How many glyphs writing at `index`, or inserting behind it, makes and moves at most.
    std::size_t movesFor(int index) const;
    /// Does nothing for an index past the end.
    void set(int index, const GlyphIDClassPair& glyph);
    /// Inserts behind the glyph at `index`; does nothing for an index past the end.
    void insertAfter(int index, std::span<const GlyphIDClassPair> glyphs);
    /// Removes the first `count` glyphs, or all when there are fewer.
    void cut(int count);

private:
    int head() const { return headEnd_ - headStart_; }
    int made() const { return static_cast<int>(made_.size()); }
    int rest() const { return run_ == nullptr ? 0 : run_->size() - next_; }
    /// Has the glyph at `index` made, and answers its place among those; nothing past the end.
    std::optional<std::size_t> make(int index);

    const GlyphIDArray* run_ = nullptr;
    // First come glyphs of the run as they are, then those that were made, then the run from
    // `next_` on.
    int headStart_ = 0;
    int headEnd_ = 0;
    std::vector<GlyphIDClassPair> made_;
    int next_ = 0;
};

/// Applies the context lookups of GSUB at one glyph.
///
/// The lookups that a rule names all read the run as it was before, and write one output side by
/// side with it.
class GsubContext {
public:
    GsubContext(LayoutCall& call, const TTI_LookupList& lookups) : call_(call), lookups_(lookups) {}

    /// How many glyphs of `output()` come instead; 0 when nothing applied.
    /// @param position  below the length of the run; set behind the last glyph that a lookup took
    /// @param skipped   set by the ligatures among the lookups, the last one's standing
    int apply(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position,
              std::vector<int>& skipped);

    /// After `apply`: the run from the position on, with the substitutions made.
    const ContextOutput& output() const { return output_; }

private:
    int applyNested(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position,
                    std::vector<int>& skipped);
    int replace(unsigned short gid, int& position);
    int replaceBySequence(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position);
    int replaceByLigature(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position,
                          std::vector<int>& skipped);

    LayoutCall& call_;
    const TTI_LookupList& lookups_;
    ContextOutput output_;
    std::vector<GlyphIDClassPair> sequence_;
    /// Memory for the next context to take.
    std::vector<int> spare_;
};

} // namespace KWFontService_NS
