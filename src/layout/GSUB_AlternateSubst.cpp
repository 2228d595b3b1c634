#include "layout/GSUB_AlternateSubst.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kCountField = 4;
constexpr std::size_t kSetOffsets = 6;

} // namespace

bool GSUB_AlternateSubstFormat1::read(LayoutBudget& budget) {
    return table().contains(kCountField, 2) && digestCoverage(budget);
}

U16List GSUB_AlternateSubstFormat1::alternates(unsigned short gid) const {
    const int index = coverageIndex(gid);
    if (index < 0 || index >= table().u16(kCountField).value_or(0))
        return {};
    const ByteView set = offsetTo(table(), kSetOffsets + 2 * static_cast<std::size_t>(index));
    return U16List(set, 2, set.u16(0).value_or(0));
}

unsigned short GSUB_AlternateSubstFormat1::substituteAlternate(unsigned short gid,
                                                               int alternate) const {
    if (alternate < 1)
        return FS_NO_GLYPH;
    const U16List glyphs = alternates(gid);
    const auto place = static_cast<std::size_t>(alternate) - 1;
    return place < glyphs.size() ? glyphs[place] : FS_NO_GLYPH;
}

} // namespace KWFontService_NS
