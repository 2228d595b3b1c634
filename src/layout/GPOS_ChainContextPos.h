#pragma once

#include "layout/GposContext.h"
#include "layout/TTI_ChainContext.h"

namespace KWFontService_NS {

/// GPOS lookup type 8, format 1. It never matches.
class GPOS_ChainContextPosFormat1 final : public TTI_ChainContextFormat1 {
public:
    explicit GPOS_ChainContextPosFormat1(KWCommonNS::ByteView table)
        : TTI_ChainContextFormat1(table) {}
    int lookupType() const override { return kGposChainContext; }
};

/// GPOS lookup type 8, format 2.
class GPOS_ChainContextPosFormat2 final : public TTI_ChainContextFormat2 {
public:
    explicit GPOS_ChainContextPosFormat2(KWCommonNS::ByteView table)
        : TTI_ChainContextFormat2(table) {}
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override {
        return positionInContext(*this, call, lookups, lookup, positions, index, rtl);
    }
    int lookupType() const override { return kGposChainContext; }
};

/// GPOS lookup type 8, format 3.
class GPOS_ChainContextPosFormat3 final : public TTI_ChainContextFormat3 {
public:
    explicit GPOS_ChainContextPosFormat3(KWCommonNS::ByteView table)
        : TTI_ChainContextFormat3(table) {}
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override {
        return positionInContext(*this, call, lookups, lookup, positions, index, rtl);
    }
    int lookupType() const override { return kGposChainContext; }
};

} // namespace KWFontService_NS
