#pragma once

#include "layout/GposContext.h"
#include "layout/TTI_Context.h"

namespace KWFontService_NS {

/// GPOS lookup type 7, format 1. It never matches.
class GPOS_ContextPosFormat1 final : public TTI_ContextFormat1 {
public:
    explicit GPOS_ContextPosFormat1(KWCommonNS::ByteView table) : TTI_ContextFormat1(table) {}
    int lookupType() const override { return kGposContext; }
};

/// GPOS lookup type 7, format 2.
class GPOS_ContextPosFormat2 final : public TTI_ContextFormat2 {
public:
    explicit GPOS_ContextPosFormat2(KWCommonNS::ByteView table) : TTI_ContextFormat2(table) {}
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override {
        return positionInContext(*this, call, lookups, lookup, positions, index, rtl);
    }
    int lookupType() const override { return kGposContext; }
};

/// GPOS lookup type 7, format 3. It never matches.
class GPOS_ContextPosFormat3 final : public TTI_ContextFormat3 {
public:
    explicit GPOS_ContextPosFormat3(KWCommonNS::ByteView table) : TTI_ContextFormat3(table) {}
    int lookupType() const override { return kGposContext; }
};

} // namespace KWFontService_NS
