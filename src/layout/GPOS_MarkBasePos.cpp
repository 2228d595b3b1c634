#include "layout/GPOS_MarkBasePos.h"

#include "layout/GlyphPlacement.h"
#include "layout/PositionWalk.h"

namespace KWFontService_NS {

namespace {

/// False for a glyph that is stepped over on the way from a mark to its base.
bool mayBeBase(const GlyphIDPosition& glyph, const GlyphIDPosition& mark, bool rtl) {
    const bool zeroWidthCounts = (rtl && GlyphPlacement::isStrict(mark)) ||
                                 (mark.getFlag() & GLYPH_FLAG_ZERO_WIDTH_BASE) != 0;
    if (glyph.getWidth() == 0 && !zeroWidthCounts)
        return false;
    switch (glyph.getGlyphClassDef()) {
    case GlyphClassDef::Mark:
        return false;
    case GlyphClassDef::Base:
    case GlyphClassDef::Ligature:
    case GlyphClassDef::Component:
        return (mark.getFlag() & GLYPH_FLAG_SKIP_COMPONENT_BASE) == 0 || glyph.getCompInfo() < 1;
    default:
        return true;
    }
}

} // namespace

bool GPOS_MarkBasePosFormat1::position(LayoutCall& call, const TTI_LookupList&, const TTI_Lookup&,
                                       std::vector<GlyphIDPosition>& positions, int& index,
                                       bool rtl) const {
    GlyphIDPosition& glyph = positions[static_cast<std::size_t>(index)];
    GlyphMemo* const memo = &call.memo();
    const auto attached = mark(glyph.getGlyphID(), memo);
    if (!attached)
        return false;
    unsigned int advance = 0; // from the base on; only its low 16 bits come to count
    const int found =
        nearestPosition(call, positions, index - 1, -1, [&](const GlyphIDPosition& candidate) {
            advance += static_cast<unsigned int>(candidate.getMoveX());
            return mayBeBase(candidate, glyph, rtl);
        });
    if (found < 0)
        return false;
    const GlyphIDPosition& under = positions[static_cast<std::size_t>(found)];
    const auto anchor = base(under.getGlyphID(), attached->markClass, memo);
    if (!anchor)
        return false;
    int x = anchor->x() - attached->anchor.x();
    int y = attached->anchor.y() - anchor->y();
    if (GlyphPlacement::isStrict(under)) {
        const auto way = static_cast<std::int16_t>(static_cast<std::uint16_t>(advance));
        x += rtl ? way - under.getMoveX2() : under.getMoveX1() - way;
        y += rtl ? under.getMoveY() : 0;
    } else if (!rtl) {
        x -= under.getWidth();
    }
    GlyphPlacement::attach(glyph, x, y);
    return true;
}

} // namespace KWFontService_NS
