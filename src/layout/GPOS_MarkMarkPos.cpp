#include "layout/GPOS_MarkMarkPos.h"

#include "layout/GlyphPlacement.h"
#include "layout/PositionWalk.h"
#include "layout/TTI_LookupList.h"

namespace KWFontService_NS {

namespace {

/// True when two marks belong to different components of one ligature.
bool componentsDiffer(const GlyphIDPosition& mark, const GlyphIDPosition& mark2) {
    constexpr int kKnown = GLYPH_FLAG_COMPONENT_INFO | GLYPH_FLAG_LOOKUP_SKIP;
    return (mark2.getFlag() & kKnown) == kKnown && mark.getSkipInfo() != mark2.getSkipInfo();
}

} // namespace

bool GPOS_MarkMarkPosFormat1::position(LayoutCall& call, const TTI_LookupList&,
                                       const TTI_Lookup& lookup,
                                       std::vector<GlyphIDPosition>& positions, int& index,
                                       bool rtl) const {
    GlyphIDPosition& glyph = positions[static_cast<std::size_t>(index)];
    GlyphMemo* const memo = &call.memo();
    const auto attached = mark(glyph.getGlyphID(), memo);
    if (!attached)
        return false;
    const auto passesOver = [&](const GlyphIDPosition& candidate) {
        return call.passesOver(lookup.flag, candidate.getGlyphIDClassPair());
    };
    const int found =
        nearestPosition(call, positions, index - 1, -1, [&](const GlyphIDPosition& candidate) {
            return !passesOver(candidate) || candidate.getGlyphClassDef() == GlyphClassDef::Base;
        });
    if (found < 0)
        return false;
    const GlyphIDPosition& under = positions[static_cast<std::size_t>(found)];
    if (passesOver(under) || (rtl && componentsDiffer(glyph, under)))
        return false;
    const auto anchor = mark2(under.getGlyphID(), attached->markClass, memo);
    if (!anchor)
        return false;
    int x = attached->anchor.x() - anchor->x();
    int y = attached->anchor.y() - anchor->y();
    if (GlyphPlacement::isStrict(under)) {
        x = -x - under.getMoveX2(); // deliberately the other way round than without strict mode
        y += under.getMoveY();
    }
    GlyphPlacement::attach(glyph, x, y);
    return true;
}

} // namespace KWFontService_NS
