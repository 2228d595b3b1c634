#pragma once

#include "layout/LayoutArrays.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace KWFontService_NS {

/// A ligature and what it is made of, beside the glyph it starts with.
struct GSUB_Ligature {
    std::uint16_t glyph;
    /// The components after the first; a ligature of one component has none.
    U16List components;
};

/// The ligatures that start with one glyph, in the order they are tried.
class GSUB_LigatureSet {
public:
    GSUB_LigatureSet() = default;
    explicit GSUB_LigatureSet(KWCommonNS::ByteView table)
        : table_(table), offsets_(table, 2, table.u16(0).value_or(0)) {}

    std::size_t size() const { return offsets_.size(); }
    /// Nothing when it counts no component or does not lie in the table whole.
    /// @param i  below `size()`
    std::optional<GSUB_Ligature> operator[](std::size_t i) const;

private:
    KWCommonNS::ByteView table_;
    U16List offsets_;
};

/// GSUB lookup type 4, format 1: one glyph for several, by the first of them.
class GSUB_LigatureSubstFormat1 final : public TTI_SubTable {
public:
    explicit GSUB_LigatureSubstFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    /// The ligatures that start with a glyph, none when it is not covered.
    GSUB_LigatureSet ligatures(unsigned short gid, GlyphMemo* memo = nullptr) const;
    unsigned short substituteLigature(LayoutCall& call, const GlyphIDArray& run, int& position,
                                      unsigned int lookupFlag,
                                      std::vector<int>& skipped) const override;
    int lookupType() const override { return kGsubLigature; }
};

} // namespace KWFontService_NS
