#pragma once

#include "layout/TTI_Coverage.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace KWFontService_NS {

class SubTableReader;

/// GSUB lookup type 1, format 1: one distance for all covered glyphs, modulo 65536.
class GSUB_SingleSubstFormat1 final : public TTI_SubTable {
public:
    /// Null without a usable coverage.
    static std::unique_ptr<TTI_SubTable> read(SubTableReader& reader, KWCommonNS::ByteView table);

    unsigned short substituteSingle(unsigned short gid) const override;
    int lookupType() const override { return kGsubSingle; }

private:
    std::shared_ptr<const TTI_Coverage> coverage_;
    std::uint16_t deltaGlyphID_ = 0;
};

/// GSUB lookup type 1, format 2: a substitute for each covered glyph.
class GSUB_SingleSubstFormat2 final : public TTI_SubTable {
public:
    /// Null without a usable coverage.
    static std::unique_ptr<TTI_SubTable> read(SubTableReader& reader, KWCommonNS::ByteView table);

    unsigned short substituteSingle(unsigned short gid) const override;
    int lookupType() const override { return kGsubSingle; }

private:
    std::shared_ptr<const TTI_Coverage> coverage_;
    std::vector<std::uint16_t> substitutes_;
};

} // namespace KWFontService_NS
