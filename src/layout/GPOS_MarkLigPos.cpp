#include "layout/GPOS_MarkLigPos.h"

#include "layout/GlyphPlacement.h"
#include "layout/LayoutArrays.h"
#include "layout/PositionWalk.h"
#include "layout/TTI_LookupList.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

std::optional<GPOS_AnchorMatrix> GPOS_MarkLigPosFormat1::ligature(unsigned short gid,
                                                                  GlyphMemo* memo) const {
    const int index = targetIndex(gid, memo);
    const ByteView ligatures = targets();
    if (index < 0 || index >= ligatures.u16(0).value_or(0))
        return std::nullopt;
    return anchors(offsetTo(ligatures, 2 + 2 * static_cast<std::size_t>(index)));
}

bool GPOS_MarkLigPosFormat1::position(LayoutCall& call, const TTI_LookupList&,
                                      const TTI_Lookup& lookup,
                                      std::vector<GlyphIDPosition>& positions, int& index,
                                      bool rtl) const {
    GlyphIDPosition& glyph = positions[static_cast<std::size_t>(index)];
    GlyphMemo* const memo = &call.memo();
    const auto attached = mark(glyph.getGlyphID(), memo);
    if (index == 0 || !attached)
        return false;
    const bool hasComponent =
        (positions[static_cast<std::size_t>(index) - 1].getFlag() & GLYPH_FLAG_COMPONENT_INFO) != 0;
    const int found =
        nearestPosition(call, positions, index - 1, -1, [&](const GlyphIDPosition& candidate) {
            return hasComponent ? candidate.getGlyphClassDef() != GlyphClassDef::Mark
                                : !call.passesOver(lookup.flag, candidate.getGlyphIDClassPair());
        });
    if (found < 0)
        return false;
    const GlyphIDPosition& under = positions[static_cast<std::size_t>(found)];
    const auto components = ligature(under.getGlyphID(), memo);
    if (!components || components->rows() == 0)
        return false;
    std::size_t row = 0;
    if (hasComponent) {
        const int number = glyph.getSkipInfo();
        const int last = static_cast<int>(components->rows());
        row = static_cast<std::size_t>(number < 1 || number > last ? last : number) - 1;
    }
    const auto anchor = components->anchor(row, attached->markClass);
    if (!anchor)
        return false;
    int x = anchor->x() - attached->anchor.x();
    int y = attached->anchor.y() - anchor->y();
    if (!rtl) {
        x -= under.getMoveX2();
        y = -y; // deliberately the reverse of mark to base
    } else if (hasComponent) {
        x += under.getMoveX1();
    }
    GlyphPlacement::attach(glyph, x, y);
    return true;
}

} // namespace KWFontService_NS
