#pragma once

#include "layout/TTI_Context.h"

namespace KWFontService_NS {

/// GSUB lookup type 5, format 1. It never matches.
class GSUB_ContextSubstFormat1 final : public TTI_ContextFormat1 {
public:
    explicit GSUB_ContextSubstFormat1(KWCommonNS::ByteView table) : TTI_ContextFormat1(table) {}
    int lookupType() const override { return kGsubContext; }
};

/// GSUB lookup type 5, format 2.
class GSUB_ContextSubstFormat2 final : public TTI_ContextFormat2 {
public:
    explicit GSUB_ContextSubstFormat2(KWCommonNS::ByteView table) : TTI_ContextFormat2(table) {}
    int lookupType() const override { return kGsubContext; }
};

/// GSUB lookup type 5, format 3. It never matches.
class GSUB_ContextSubstFormat3 final : public TTI_ContextFormat3 {
public:
    explicit GSUB_ContextSubstFormat3(KWCommonNS::ByteView table) : TTI_ContextFormat3(table) {}
    int lookupType() const override { return kGsubContext; }
};

} // namespace KWFontService_NS
