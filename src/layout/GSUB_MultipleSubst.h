#pragma once

#include "layout/LayoutArrays.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <optional>

namespace KWFontService_NS {

/// GSUB lookup type 2, format 1: a sequence of glyphs for each covered glyph.
class GSUB_MultipleSubstFormat1 final : public TTI_SubTable {
public:
    explicit GSUB_MultipleSubstFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    /// The glyphs that replace one glyph; they may be none at all. Nothing when the glyph is not
    /// covered, or its sequence does not lie in the table whole.
    std::optional<U16List> sequence(unsigned short gid, GlyphMemo* memo = nullptr) const;
    int lookupType() const override { return kGsubMultiple; }
};

} // namespace KWFontService_NS
