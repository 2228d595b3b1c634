#include "layout/GSUB_MultipleSubst.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kCountField = 4;
constexpr std::size_t kSequenceOffsets = 6;

} // namespace

bool GSUB_MultipleSubstFormat1::read(LayoutBudget& budget) {
    return table().contains(kCountField, 2) && digestCoverage(budget);
}

std::optional<U16List> GSUB_MultipleSubstFormat1::sequence(unsigned short gid,
                                                           GlyphMemo* memo) const {
    const int index = coverageIndex(gid, memo);
    if (index < 0 || index >= table().u16(kCountField).value_or(0))
        return std::nullopt;
    const ByteView found =
        offsetTo(table(), kSequenceOffsets + 2 * static_cast<std::size_t>(index));
    const auto count = found.u16(0);
    if (!count || !found.contains(2, std::size_t{2} * *count))
        return std::nullopt;
    return U16List(found, 2, *count);
}

} // namespace KWFontService_NS
