#pragma once

#include "layout/GPOS_MarkAttachment.h"

#include "common/ByteView.h"

#include <optional>

namespace KWFontService_NS {

/// GPOS lookup type 6, format 1: marks on marks.
class GPOS_MarkMarkPosFormat1 final : public GPOS_MarkAttachment {
public:
    explicit GPOS_MarkMarkPosFormat1(KWCommonNS::ByteView table) : GPOS_MarkAttachment(table) {}

    /// Where marks of a class go on the mark that stays; nothing when it is not covered as one or
    /// has no anchor for them.
    std::optional<GPOS_Anchor> mark2(unsigned short gid, unsigned int markClass,
                                     GlyphMemo* memo = nullptr) const {
        return targetAnchor(gid, markClass, memo);
    }
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposMarkToMark; }
};

} // namespace KWFontService_NS
