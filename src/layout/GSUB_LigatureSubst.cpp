#include "layout/GSUB_LigatureSubst.h"

#include "layout/RunWalk.h"

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

GSUB_LigatureSet GSUB_LigatureSubstFormat1::ligatures(unsigned short gid, GlyphMemo* memo) const {
    const int index = coverageIndex(gid, memo);
    if (index < 0 || index >= table().u16(kCountField).value_or(0))
        return {};
    return GSUB_LigatureSet(offsetTo(table(), kSetOffsets + 2 * static_cast<std::size_t>(index)));
}

unsigned short GSUB_LigatureSubstFormat1::substituteLigature(LayoutCall& call,
                                                             const GlyphIDArray& run, int& position,
                                                             unsigned int lookupFlag,
                                                             std::vector<int>& skipped) const {
    const GSUB_LigatureSet set = ligatures(run[position].getGlyphID(), &call.memo());
    const auto left = static_cast<std::size_t>(run.size() - position);
    for (std::size_t i = 0; i < set.size() && call.spend(1); ++i) {
        const auto ligature = set[i];
        if (!ligature || ligature->components.size() >= left)
            continue;
        skipped.clear();
        RunWalk walk(call, run, lookupFlag, position, RunWalk::Direction::Forward);
        if (matches(
                ligature->components, walk, [](unsigned short gid) { return gid; },
                [&](int index) { skipped.push_back(index); })) {
            // 0xFFFF is no ligature, and the subtables that are asked next start at the same glyph.
            if (ligature->glyph != FS_NO_GLYPH)
                position = walk.index() + 1;
            return ligature->glyph;
        }
    }
    return FS_NO_GLYPH;
}

} // namespace KWFontService_NS
