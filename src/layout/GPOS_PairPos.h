#pragma once

#include "layout/GPOS_ValueRecord.h"
#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstddef>
#include <optional>

namespace KWFontService_NS {

/// How both glyphs of a pair are moved.
struct GPOS_PairValue {
    GPOS_ValueRecord first;
    GPOS_ValueRecord second;
};

/// GPOS lookup type 2, format 1: pairs of glyphs, by the first glyph.
class GPOS_PairPosFormat1 final : public TTI_SubTable {
public:
    explicit GPOS_PairPosFormat1(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    bool covers(unsigned short gid, GlyphMemo* memo = nullptr) const {
        return coverageIndex(gid, memo) >= 0;
    }
    unsigned int valueFormat1() const;
    unsigned int valueFormat2() const;
    /// The first pair in the order of the file; nothing when there is none.
    std::optional<GPOS_PairValue> pair(unsigned short first, unsigned short second) const;
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposPair; }

private:
    /// The pairs of a first glyph, by its coverage index; an empty view when it has none.
    KWCommonNS::ByteView pairSet(int index) const;
    std::optional<GPOS_PairValue> pairIn(KWCommonNS::ByteView set, unsigned short second) const;
    std::size_t recordSize() const;

    /// In all sets the second glyphs ascend, so that a binary search comes to the first.
    bool sorted_ = true;
};

/// GPOS lookup type 2, format 2: pairs of classes.
class GPOS_PairPosFormat2 final : public TTI_SubTable {
public:
    explicit GPOS_PairPosFormat2(KWCommonNS::ByteView table) : TTI_SubTable(table) {}
    bool read(LayoutBudget& budget);

    bool covers(unsigned short gid, GlyphMemo* memo = nullptr) const {
        return coverageIndex(gid, memo) >= 0;
    }
    unsigned int valueFormat1() const;
    unsigned int valueFormat2() const;
    /// Class of a glyph as the first or the second of a pair, -1 when it has none.
    int class1Of(unsigned short gid, GlyphMemo* memo = nullptr) const;
    int class2Of(unsigned short gid, GlyphMemo* memo = nullptr) const;
    /// Nothing for a class that does not exist.
    std::optional<GPOS_PairValue> pair(int class1, int class2) const;
    bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                  std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const override;
    int lookupType() const override { return kGposPair; }
};

} // namespace KWFontService_NS
