#include "layout/SubTableFormats.h"

#include "layout/GPOS_ChainContextPos.h"
#include "layout/GPOS_ContextPos.h"
#include "layout/GPOS_CursivePos.h"
#include "layout/GPOS_MarkBasePos.h"
#include "layout/GPOS_MarkLigPos.h"
#include "layout/GPOS_MarkMarkPos.h"
#include "layout/GPOS_PairPos.h"
#include "layout/GPOS_SinglePos.h"
#include "layout/GSUB_AlternateSubst.h"
#include "layout/GSUB_ChainContextSubst.h"
#include "layout/GSUB_ContextSubst.h"
#include "layout/GSUB_LigatureSubst.h"
#include "layout/GSUB_MultipleSubst.h"
#include "layout/GSUB_ReverseChainingContextSingle.h"
#include "layout/GSUB_SingleSubst.h"

#include "common/KWLimits.h"

#include <array>
#include <new>
#include <span>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::kMaxExtensionDepth;

namespace {

template <class SubTable>
TTI_SubTablePtr makeSubTable(void* place, ByteView table, LayoutBudget& budget) {
    auto* made = new (place) SubTable(table);
    TTI_SubTablePtr subtable(made);
    if (!made->read(budget))
        subtable.reset();
    return subtable;
}

template <class SubTable>
constexpr SubTableFormat row(int lookupType, int format) {
    static_assert(alignof(SubTable) <= alignof(void*));
    return {static_cast<std::uint16_t>(lookupType), static_cast<std::uint16_t>(format),
            sizeof(SubTable), makeSubTable<SubTable>};
}

constexpr auto kGsubFormats = std::to_array<SubTableFormat>({
    row<GSUB_SingleSubstFormat1>(kGsubSingle, 1),
    row<GSUB_SingleSubstFormat2>(kGsubSingle, 2),
    row<GSUB_MultipleSubstFormat1>(kGsubMultiple, 1),
    row<GSUB_AlternateSubstFormat1>(kGsubAlternate, 1),
    row<GSUB_LigatureSubstFormat1>(kGsubLigature, 1),
    row<GSUB_ContextSubstFormat1>(kGsubContext, 1),
    row<GSUB_ContextSubstFormat2>(kGsubContext, 2),
    row<GSUB_ContextSubstFormat3>(kGsubContext, 3),
    row<GSUB_ChainContextSubstFormat1>(kGsubChainContext, 1),
    row<GSUB_ChainContextSubstFormat2>(kGsubChainContext, 2),
    row<GSUB_ChainContextSubstFormat3>(kGsubChainContext, 3),
    row<GSUB_ReverseChainingContextSingleFormat1>(kGsubReverseChaining, 1),
});

constexpr auto kGposFormats = std::to_array<SubTableFormat>({
    row<GPOS_SinglePosFormat1>(kGposSingle, 1),
    row<GPOS_SinglePosFormat2>(kGposSingle, 2),
    row<GPOS_PairPosFormat1>(kGposPair, 1),
    row<GPOS_PairPosFormat2>(kGposPair, 2),
    row<GPOS_CursivePosFormat1>(kGposCursive, 1),
    row<GPOS_MarkBasePosFormat1>(kGposMarkToBase, 1),
    row<GPOS_MarkLigPosFormat1>(kGposMarkToLigature, 1),
    row<GPOS_MarkMarkPosFormat1>(kGposMarkToMark, 1),
    row<GPOS_ContextPosFormat1>(kGposContext, 1),
    row<GPOS_ContextPosFormat2>(kGposContext, 2),
    row<GPOS_ContextPosFormat3>(kGposContext, 3),
    row<GPOS_ChainContextPosFormat1>(kGposChainContext, 1),
    row<GPOS_ChainContextPosFormat2>(kGposChainContext, 2),
    row<GPOS_ChainContextPosFormat3>(kGposChainContext, 3),
});

SubTableSource findFormat(std::span<const SubTableFormat> formats, ByteView table,
                          std::uint16_t type) {
    const auto format = table.u16(0);
    for (const SubTableFormat& row : formats) {
        if (row.lookupType == type && row.format == format)
            return {.format = &row, .table = table};
    }
    return {};
}

/// Moves from an extension subtable to the one inside; false when it does not say where that is.
bool enterExtension(ByteView& table) {
    const auto offset = table.u32(4);
    if (!offset)
        return false;
    table = table.from(*offset);
    return true;
}

} // namespace

SubTableSource findGsubSubTable(ByteView table, std::uint16_t type, std::uint16_t& lookupType) {
    for (int depth = 0; type == kGsubExtension; ++depth) {
        const auto wrapped = table.u16(2);
        if (depth == kMaxExtensionDepth || !wrapped)
            return {};
        type = lookupType = *wrapped;
        if (!enterExtension(table))
            return {};
    }
    return findFormat(kGsubFormats, table, type);
}

SubTableSource findGposSubTable(ByteView table, std::uint16_t type) {
    for (int depth = 0; type == kGposExtension; ++depth) {
        const auto wrapped = table.u16(2);
        if (depth == kMaxExtensionDepth || table.u16(0) != 1 || !enterExtension(table))
            return {};
        type = *wrapped;
    }
    return findFormat(kGposFormats, table, type);
}

} // namespace KWFontService_NS
