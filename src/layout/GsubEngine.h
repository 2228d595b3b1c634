#pragma once

#include "layout/GsubContext.h"

#include <KWFontService17/GlyphIDArray.h>

#include <vector>

namespace KWFontService_NS {

class LayoutCall;
class TTI_LookupList;
struct TTI_Lookup;

/// A run with what goes along with its glyphs. All three are of one length.
struct SubstitutedRun {
    GlyphIDArray& glyphs;
    /// What each glyph stands for; see `GlyphIDArray2`.
    std::vector<int>& words;
    /// No lookup starts at a glyph whose entry is other than 0.
    std::vector<int>& mask;
};

/// Applies GSUB lookups for one call.
class GsubEngine {
public:
    GsubEngine(LayoutCall& call, const TTI_LookupList& lookups)
        : call_(call), context_(call, lookups) {}

    /// Applies a lookup wherever it applies; true when a glyph was substituted.
    /// @param alternate  which alternate to take, counted from 1
    bool substituteRun(const TTI_Lookup& lookup, SubstitutedRun run, int alternate);

    /// What a lookup does at one glyph of a run that stays as it is.
    struct Hit {
        /// False when the lookup does not apply.
        bool applies = false;
        /// How many glyphs come instead.
        int count = 0;
    };
    /// @param position  below the length of the run; set behind the glyphs that are taken
    /// @param out       set where the lookup applies
    /// @param skipped   set where a ligature applies, alone or in a context
    Hit substituteAt(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position,
                     GlyphIDArray& out, GlyphIDArray& skipped, int alternate);

private:
    template <class Substitute>
    bool replaceGlyphs(const TTI_Lookup& lookup, SubstitutedRun run, Substitute substitute);
    bool replaceBackwards(const TTI_Lookup& lookup, SubstitutedRun run);
    bool replaceBySequences(const TTI_Lookup& lookup, SubstitutedRun run);
    bool replaceByLigatures(const TTI_Lookup& lookup, SubstitutedRun run);
    bool replaceInContext(const TTI_Lookup& lookup, SubstitutedRun run);
    /// Puts the first `count` glyphs of a context's output in the place of those from `at` to below
    /// `end`. Answers the place, counted from 1, of the last among them that is the glyph that was
    /// at `at`; 0 when none is.
    int replaceMatch(SubstitutedRun run, int at, int end, int count);
    /// The same where a ligature passed over glyphs, which stay; always 0.
    int replaceAroundSkipped(SubstitutedRun run, int at, int end, int count);
    void writeOutput(GlyphIDArray& glyphs, int at, int end, int count);

    LayoutCall& call_;
    GsubContext context_;
    /// The glyphs that the last ligature passed over.
    std::vector<int> skipped_;
    std::vector<GlyphIDClassPair> output_;
};

} // namespace KWFontService_NS
