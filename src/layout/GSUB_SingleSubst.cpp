#include "layout/GSUB_SingleSubst.h"

#include "layout/LayoutArrays.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

namespace {

constexpr std::size_t kDeltaField = 4;
constexpr std::size_t kCountField = 4;
constexpr std::size_t kSubstitutes = 6;

} // namespace

bool GSUB_SingleSubstFormat1::read(LayoutBudget& budget) {
    return table().contains(kDeltaField, 2) && digestCoverage(budget);
}

unsigned short GSUB_SingleSubstFormat1::substituteSingle(unsigned short gid) const {
    if (coverageIndex(gid) < 0)
        return FS_NO_GLYPH;
    return static_cast<unsigned short>(gid + table().u16(kDeltaField).value_or(0));
}

bool GSUB_SingleSubstFormat2::read(LayoutBudget& budget) {
    return table().contains(kCountField, 2) && digestCoverage(budget);
}

unsigned short GSUB_SingleSubstFormat2::substituteSingle(unsigned short gid) const {
    const int index = coverageIndex(gid);
    if (index < 0 || index >= table().u16(kCountField).value_or(0))
        return FS_NO_GLYPH;
    return table().u16(kSubstitutes + 2 * static_cast<std::size_t>(index)).value_or(FS_NO_GLYPH);
}

} // namespace KWFontService_NS
