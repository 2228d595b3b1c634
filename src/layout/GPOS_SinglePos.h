#pragma once

#include "layout/GPOS_ValueRecord.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <optional>

namespace KWFontService_NS {

/// GPOS lookup type 1, format 1: one value for all covered glyphs.
class GPOS_SinglePosFormat1 final : public TTI_SubTable {
public:
    explicit GPOS_SinglePosFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    /// Nothing when the glyph is not covered.
    std::optional<GPOS_ValueRecord> value(unsigned short gid) const;
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposSingle; }
};

/// GPOS lookup type 1, format 2: a value for each covered glyph.
class GPOS_SinglePosFormat2 final : public TTI_SubTable {
public:
    explicit GPOS_SinglePosFormat2(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    /// Nothing when the glyph is not covered or the table does not hold its value.
    std::optional<GPOS_ValueRecord> value(unsigned short gid) const;
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposSingle; }
};

} // namespace KWFontService_NS
