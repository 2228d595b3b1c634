#pragma once

#include "layout/TTI_ChainContext.h"

namespace KWFontService_NS {

/// GSUB lookup type 6, format 1. It never matches.
class GSUB_ChainContextSubstFormat1 final : public TTI_ChainContextFormat1 {
public:
    explicit GSUB_ChainContextSubstFormat1(KWCommonNS::ByteView table)
        : TTI_ChainContextFormat1(table) {}
    int lookupType() const override { return kGsubChainContext; }
};

/// GSUB lookup type 6, format 2.
class GSUB_ChainContextSubstFormat2 final : public TTI_ChainContextFormat2 {
public:
    explicit GSUB_ChainContextSubstFormat2(KWCommonNS::ByteView table)
        : TTI_ChainContextFormat2(table) {}
    int lookupType() const override { return kGsubChainContext; }
};

/// GSUB lookup type 6, format 3.
class GSUB_ChainContextSubstFormat3 final : public TTI_ChainContextFormat3 {
public:
    explicit GSUB_ChainContextSubstFormat3(KWCommonNS::ByteView table)
        : TTI_ChainContextFormat3(table) {}
    int lookupType() const override { return kGsubChainContext; }
};

} // namespace KWFontService_NS
