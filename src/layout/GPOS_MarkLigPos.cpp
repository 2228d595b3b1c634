#include "layout/GPOS_MarkLigPos.h"

#include "layout/LayoutArrays.h"
#include "layout/TTI_Coverage.h"

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

std::optional<GPOS_Mark> GPOS_MarkLigPosFormat1::mark(unsigned short gid) const {
    const int index = coverageIndex(gid);
    if (index < 0)
        return std::nullopt;
    return readMark(offsetTo(table(), kMarkArrayField), static_cast<std::size_t>(index));
}

std::optional<GPOS_AnchorMatrix> GPOS_MarkLigPosFormat1::ligature(unsigned short gid) const {
    const auto coverage = TTI_Coverage::read(offsetTo(table(), kLigatureCoverageField));
    const int index = coverage ? coverage->coverageIndex(gid) : -1;
    const ByteView ligatures = offsetTo(table(), kLigatureArrayField);
    if (index < 0 || index >= ligatures.u16(0).value_or(0))
        return std::nullopt;
    return GPOS_AnchorMatrix(offsetTo(ligatures, 2 + 2 * static_cast<std::size_t>(index)),
                             table().u16(kClassCountField).value_or(0));
}

} // namespace KWFontService_NS
