#pragma once

#include "layout/GPOS_MarkAttachment.h"

#include "common/ByteView.h"

#include <optional>

namespace KWFontService_NS {

/// GPOS lookup type 5, format 1: marks on the components of ligatures.
class GPOS_MarkLigPosFormat1 final : public GPOS_MarkAttachment {
public:
    explicit GPOS_MarkLigPosFormat1(KWCommonNS::ByteView table) : GPOS_MarkAttachment(table) {}

    /// Where marks go on a ligature: a row for each component. Nothing when the glyph is not
    /// covered as one.
    std::optional<GPOS_AnchorMatrix> ligature(unsigned short gid, GlyphMemo* memo = nullptr) const;
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposMarkToLigature; }
};

} // namespace KWFontService_NS
