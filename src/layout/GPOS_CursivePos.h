#pragma once

#include "layout/GPOS_Anchor.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstddef>
#include <optional>

namespace KWFontService_NS {

/// GPOS lookup type 3, format 1: glyphs that join where one leaves off and the next begins.
class GPOS_CursivePosFormat1 final : public TTI_SubTable {
public:
    explicit GPOS_CursivePosFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    /// Where a glyph begins; nothing when it is not covered or has no such anchor.
    std::optional<GPOS_Anchor> entry(unsigned short gid, GlyphMemo* memo = nullptr) const;
    /// Where a glyph leaves off; nothing when it is not covered or has no such anchor.
    std::optional<GPOS_Anchor> exit(unsigned short gid, GlyphMemo* memo = nullptr) const;
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposCursive; }

private:
    std::optional<GPOS_Anchor> anchor(unsigned short gid, std::size_t fieldInRecord,
                                      GlyphMemo* memo) const;
};

} // namespace KWFontService_NS
