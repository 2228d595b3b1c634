#pragma once

#include "layout/LayoutArrays.h"
#include "layout/TTI_Coverage.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

namespace KWFontService_NS {

/// A substitute for each covered glyph in a context of coverages (OpenType, Reverse Chaining
/// Contextual Single Substitution, format 1).
class TTI_ReverseChainingContextSingleFormat1 : public TTI_SubTable {
public:
    struct Rule {
        /// From the glyph before the first one backwards, as in the file.
        TTI_CoverageList backtrack;
        TTI_CoverageList lookahead;
        /// By coverage index.
        U16List substitutes;
    };

    bool read(LayoutBudget& budget);

    Rule rule() const;
    /// The substitute of a glyph whatever is around it, 0xFFFF when there is none.
    unsigned short substituteOf(unsigned short gid) const;
    unsigned short substituteReverse(LayoutCall& call, const GlyphIDArray& run, int index,
                                     unsigned int lookupFlag) const override;

protected:
    using TTI_SubTable::TTI_SubTable;
};

} // namespace KWFontService_NS
