#include "layout/GPOS_SinglePos.h"

#include <KWFontService17/GlyphIDPosition.h>

namespace KWFontService_NS {

namespace {

constexpr std::size_t kValueFormatField = 4;
constexpr std::size_t kValueCountField = 6; // format 2
constexpr std::size_t kFormat1Value = 6;
constexpr std::size_t kFormat2Values = 8;

template <class SinglePos>
bool positionSingle(const SinglePos& subtable, GlyphIDPosition& glyph) {
    const auto value = subtable.value(glyph.getGlyphID());
    return value && value->applyTo(glyph);
}

} // namespace

bool GPOS_SinglePosFormat1::read(LayoutBudget& budget) {
    const auto format = table().u16(kValueFormatField);
    return format && table().contains(kFormat1Value, GPOS_ValueRecord::size(*format)) &&
           digestCoverage(budget);
}

std::optional<GPOS_ValueRecord> GPOS_SinglePosFormat1::value(unsigned short gid) const {
    if (coverageIndex(gid) < 0)
        return std::nullopt;
    return GPOS_ValueRecord(table(), kFormat1Value, table().u16(kValueFormatField).value_or(0));
}

bool GPOS_SinglePosFormat1::position(LayoutCall&, const TTI_LookupList&, const TTI_Lookup&,
                                     std::vector<GlyphIDPosition>& positions, int& index,
                                     bool) const {
    return positionSingle(*this, positions[static_cast<std::size_t>(index)]);
}

bool GPOS_SinglePosFormat2::read(LayoutBudget& budget) {
    return table().contains(kValueCountField, 2) && digestCoverage(budget);
}

std::optional<GPOS_ValueRecord> GPOS_SinglePosFormat2::value(unsigned short gid) const {
    const int index = coverageIndex(gid);
    if (index < 0 || index >= table().u16(kValueCountField).value_or(0))
        return std::nullopt;
    const unsigned int format = table().u16(kValueFormatField).value_or(0);
    const std::size_t size = GPOS_ValueRecord::size(format);
    const std::size_t offset = kFormat2Values + size * static_cast<std::size_t>(index);
    if (!table().contains(offset, size))
        return std::nullopt;
    return GPOS_ValueRecord(table(), offset, format);
}

bool GPOS_SinglePosFormat2::position(LayoutCall&, const TTI_LookupList&, const TTI_Lookup&,
                                     std::vector<GlyphIDPosition>& positions, int& index,
                                     bool) const {
    return positionSingle(*this, positions[static_cast<std::size_t>(index)]);
}

} // namespace KWFontService_NS
