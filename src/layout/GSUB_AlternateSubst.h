#pragma once

#include "layout/LayoutArrays.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

namespace KWFontService_NS {

/// GSUB lookup type 3, format 1: a set of glyphs to choose from for each covered glyph.
class GSUB_AlternateSubstFormat1 final : public TTI_SubTable {
public:
    explicit GSUB_AlternateSubstFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    /// The glyphs that may replace a glyph, none when it is not covered.
    U16List alternates(unsigned short gid) const;
    unsigned short substituteAlternate(unsigned short gid, int alternate) const override;
    int lookupType() const override { return kGsubAlternate; }
};

} // namespace KWFontService_NS
