#include "layout/GPOS_CursivePos.h"

#include "layout/LayoutArrays.h"

namespace KWFontService_NS {

namespace {

constexpr std::size_t kCountField = 4;
constexpr std::size_t kRecords = 6;
constexpr std::size_t kRecordSize = 4;
constexpr std::size_t kEntryInRecord = 0;
constexpr std::size_t kExitInRecord = 2;

} // namespace

bool GPOS_CursivePosFormat1::read(LayoutBudget& budget) {
    return table().contains(kCountField, 2) && digestCoverage(budget);
}

std::optional<GPOS_Anchor> GPOS_CursivePosFormat1::anchor(unsigned short gid,
                                                          std::size_t fieldInRecord) const {
    const int index = coverageIndex(gid);
    if (index < 0 || index >= table().u16(kCountField).value_or(0))
        return std::nullopt;
    return GPOS_Anchor::read(offsetTo(
        table(), kRecords + kRecordSize * static_cast<std::size_t>(index) + fieldInRecord));
}

std::optional<GPOS_Anchor> GPOS_CursivePosFormat1::entry(unsigned short gid) const {
    return anchor(gid, kEntryInRecord);
}

std::optional<GPOS_Anchor> GPOS_CursivePosFormat1::exit(unsigned short gid) const {
    return anchor(gid, kExitInRecord);
}

} // namespace KWFontService_NS
