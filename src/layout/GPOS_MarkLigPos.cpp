#include "layout/GPOS_MarkLigPos.h"

#include "layout/GlyphPlacement.h"
#include "layout/LayoutArrays.h"
#include "layout/PositionWalk.h"
#include "layout/TTI_Coverage.h"
#include "layout/TTI_LookupList.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kLigatureCoverageField = 4;
constexpr std::size_t kClassCountField = 6;
constexpr std::size_t kMarkArrayField = 8;
constexpr std::size_t kLigatureArrayField = 10;

} // namespace

bool GPOS_MarkLigPosFormat1::read(LayoutBudget& budget) {
    return table().contains(kLigatureArrayField, 2) &&
           TTI_Coverage::read(offsetTo(table(), kLigatureCoverageField)) && digestCoverage(budget);
}

std::optional<GPOS_Mark> GPOS_MarkLigPosFormat1::mark(unsigned short gid, GlyphMemo* memo) const {
    const int index = coverageIndex(gid, memo);
    if (index < 0)
        return std::nullopt;
    return readMark(offsetTo(table(), kMarkArrayField), static_cast<std::size_t>(index));
}

std::optional<GPOS_AnchorMatrix> GPOS_MarkLigPosFormat1::ligature(unsigned short gid,
                                                                  GlyphMemo* memo) const {
    const int index = coverageIndexIn(offsetTo(table(), kLigatureCoverageField), gid, memo);
    const ByteView ligatures = offsetTo(table(), kLigatureArrayField);
    if (index < 0 || index >= ligatures.u16(0).value_or(0))
        return std::nullopt;
    return GPOS_AnchorMatrix(offsetTo(ligatures, 2 + 2 * static_cast<std::size_t>(index)),
                             table().u16(kClassCountField).value_or(0));
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
