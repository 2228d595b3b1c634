#include "layout/GPOS_CursivePos.h"

#include "layout/GlyphPlacement.h"
#include "layout/LayoutArrays.h"
#include "layout/PositionWalk.h"
#include "layout/TTI_LookupList.h"

namespace KWFontService_NS {

namespace {

constexpr std::size_t kCountField = 4;
constexpr std::size_t kRecords = 6;
constexpr std::size_t kRecordSize = 4;
constexpr std::size_t kEntryInRecord = 0;
constexpr std::size_t kExitInRecord = 2;

/// True for the last letter of a joined group.
bool endsGroup(const GlyphIDPosition& glyph) {
    const UDecompositionType type = glyph.getDecompositionType();
    return glyph.getWidth() != 0 && (type == U_DT_FINAL || type == U_DT_ISOLATED);
}

} // namespace

bool GPOS_CursivePosFormat1::read(LayoutBudget& budget) {
    return table().contains(kCountField, 2) && digestCoverage(budget);
}

std::optional<GPOS_Anchor> GPOS_CursivePosFormat1::anchor(unsigned short gid,
                                                          std::size_t fieldInRecord,
                                                          GlyphMemo* memo) const {
    const int index = coverageIndex(gid, memo);
    if (index < 0 || index >= table().u16(kCountField).value_or(0))
        return std::nullopt;
    return GPOS_Anchor::read(offsetTo(
        table(), kRecords + kRecordSize * static_cast<std::size_t>(index) + fieldInRecord));
}

std::optional<GPOS_Anchor> GPOS_CursivePosFormat1::entry(unsigned short gid,
                                                         GlyphMemo* memo) const {
    return anchor(gid, kEntryInRecord, memo);
}

std::optional<GPOS_Anchor> GPOS_CursivePosFormat1::exit(unsigned short gid, GlyphMemo* memo) const {
    return anchor(gid, kExitInRecord, memo);
}

bool GPOS_CursivePosFormat1::position(LayoutCall& call, const TTI_LookupList&,
                                      const TTI_Lookup& lookup,
                                      std::vector<GlyphIDPosition>& positions, int& index,
                                      bool rtl) const {
    const auto place = static_cast<std::size_t>(index);
    GlyphIDPosition& glyph = positions[place];
    const auto leaves = exit(glyph.getGlyphID(), &call.memo());
    if (!leaves)
        return false;
    const bool strict = GlyphPlacement::isStrict(glyph);
    const int found =
        nearestPosition(call, positions, index + 1, 1, [&](const GlyphIDPosition& candidate) {
            return strict ? !call.passesOver(lookup.flag, candidate.getGlyphIDClassPair())
                          : candidate.getWidth() != 0;
        });
    if (found < 0)
        return false;
    const auto nextPlace = static_cast<std::size_t>(found);
    const GlyphIDPosition& next = positions[nextPlace];
    const auto enters = entry(next.getGlyphID(), &call.memo());
    if (!enters)
        return false;
    const int dx = enters->x() - next.getWidth() - leaves->x();
    const int dy = leaves->y() - enters->y();
    if (!rtl || !GlyphPlacement::isStrict(next)) {
        GlyphPlacement::attach(glyph, dx, dy);
        return true;
    }

    // What is joined to the glyph already goes up or down with it, and the marks between the two
    // go along. The way back is paid for before anything moves.
    std::size_t joined = place;
    while (joined > 0 && !endsGroup(positions[joined - 1])) {
        if (!call.spend(1))
            return false;
        --joined;
    }
    // Deliberately without taking back positions that were set from outside.
    glyph.setMoveX1(dx);
    glyph.setMoveY(next.getMoveY() + dy);
    for (std::size_t k = joined; k < place; ++k) {
        if (positions[k].getWidth() != 0)
            positions[k].setMoveY(positions[k].getMoveY() + dy);
    }
    for (std::size_t k = place + 1; k < nextPlace; ++k) {
        if (positions[k].getWidth() == 0) {
            positions[k].addMoveX1(dx);
            positions[k].addMoveX2(-dx);
        }
    }
    return true;
}

} // namespace KWFontService_NS
