#include "layout/GPOS_MarkMarkPos.h"

#include "layout/LayoutArrays.h"
#include "layout/TTI_Coverage.h"

namespace KWFontService_NS {

namespace {

constexpr std::size_t kMark2CoverageField = 4;
constexpr std::size_t kClassCountField = 6;
constexpr std::size_t kMarkArrayField = 8;
constexpr std::size_t kMark2ArrayField = 10;

} // namespace

bool GPOS_MarkMarkPosFormat1::read(LayoutBudget& budget) {
    return table().contains(kMark2ArrayField, 2) &&
           TTI_Coverage::read(offsetTo(table(), kMark2CoverageField)) && digestCoverage(budget);
}

std::optional<GPOS_Mark> GPOS_MarkMarkPosFormat1::mark(unsigned short gid) const {
    const int index = coverageIndex(gid);
    if (index < 0)
        return std::nullopt;
    return readMark(offsetTo(table(), kMarkArrayField), static_cast<std::size_t>(index));
}

std::optional<GPOS_Anchor> GPOS_MarkMarkPosFormat1::mark2(unsigned short gid,
                                                          unsigned int markClass) const {
    const auto coverage = TTI_Coverage::read(offsetTo(table(), kMark2CoverageField));
    const int index = coverage ? coverage->coverageIndex(gid) : -1;
    if (index < 0)
        return std::nullopt;
    return GPOS_AnchorMatrix(offsetTo(table(), kMark2ArrayField),
                             table().u16(kClassCountField).value_or(0))
        .anchor(static_cast<std::size_t>(index), markClass);
}

} // namespace KWFontService_NS
