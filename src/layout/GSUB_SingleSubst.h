#pragma once

#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

namespace KWFontService_NS {

/// GSUB lookup type 1, format 1: one distance for all covered glyphs, modulo 65536.
class GSUB_SingleSubstFormat1 final : public TTI_SubTable {
public:
    explicit GSUB_SingleSubstFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    unsigned short substituteSingle(unsigned short gid) const override;
    int lookupType() const override { return kGsubSingle; }
};

/// GSUB lookup type 1, format 2: a substitute for each covered glyph.
class GSUB_SingleSubstFormat2 final : public TTI_SubTable {
public:
    explicit GSUB_SingleSubstFormat2(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    unsigned short substituteSingle(unsigned short gid) const override;
    int lookupType() const override { return kGsubSingle; }
};

} // namespace KWFontService_NS
