#include "layout/GPOS_SinglePos.h"

namespace KWFontService_NS {

namespace {

constexpr std::size_t kValueFormatField = 4;
constexpr std::size_t kValueCountField = 6; // format 2
constexpr std::size_t kFormat1Value = 6;
constexpr std::size_t kFormat2Values = 8;

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

} // namespace KWFontService_NS
