#include "layout/GSUB_LigatureSubst.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kCountField = 4;
constexpr std::size_t kSetOffsets = 6;
constexpr std::size_t kLigatureHeaderSize = 4;

} // namespace

std::optional<GSUB_Ligature> GSUB_LigatureSet::operator[](std::size_t i) const {
    const std::uint16_t offset = offsets_[i];
    const ByteView ligature = offset != 0 ? table_.from(offset) : ByteView();
    const std::size_t count = ligature.u16(2).value_or(0);
    if (count == 0 || !ligature.contains(kLigatureHeaderSize, 2 * (count - 1)))
        return std::nullopt;
    return GSUB_Ligature{.glyph = ByteView::loadU16(ligature.data()),
                         .components = U16List(ligature, kLigatureHeaderSize, count - 1)};
}

bool GSUB_LigatureSubstFormat1::read(LayoutBudget& budget) {
    return table().contains(kCountField, 2) && digestCoverage(budget);
}

GSUB_LigatureSet GSUB_LigatureSubstFormat1::ligatures(unsigned short gid) const {
    const int index = coverageIndex(gid);
    if (index < 0 || index >= table().u16(kCountField).value_or(0))
        return {};
    return GSUB_LigatureSet(offsetTo(table(), kSetOffsets + 2 * static_cast<std::size_t>(index)));
}

} // namespace KWFontService_NS
