#pragma once

#include "layout/GPOS_Anchor.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <optional>

namespace KWFontService_NS {

/// GPOS lookup type 6, format 1: marks on marks.
class GPOS_MarkMarkPosFormat1 final : public TTI_SubTable {
public:
    explicit GPOS_MarkMarkPosFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    /// Nothing when the glyph is not covered as the mark that is moved or has no anchor.
    std::optional<GPOS_Mark> mark(unsigned short gid, GlyphMemo* memo = nullptr) const;
    /// Where marks of a class go on the mark that stays; nothing when it is not covered as one or
    /// has no anchor for them.
    std::optional<GPOS_Anchor> mark2(unsigned short gid, unsigned int markClass,
                                     GlyphMemo* memo = nullptr) const;
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposMarkToMark; }
};

} // namespace KWFontService_NS
