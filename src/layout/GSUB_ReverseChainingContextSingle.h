#pragma once

#include "layout/TTI_ReverseChainingContextSingle.h"

namespace KWFontService_NS {

/// GSUB lookup type 8, format 1.
class GSUB_ReverseChainingContextSingleFormat1 final
    : public TTI_ReverseChainingContextSingleFormat1 {
public:
    explicit GSUB_ReverseChainingContextSingleFormat1(KWCommonNS::ByteView table)
        : TTI_ReverseChainingContextSingleFormat1(table) {}
    int lookupType() const override { return kGsubReverseChaining; }
};

} // namespace KWFontService_NS
