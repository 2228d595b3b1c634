#include "layout/GPOS_MarkAttachment.h"

#include "layout/LayoutArrays.h"
#include "layout/TTI_Coverage.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kTargetCoverageField = 4;
constexpr std::size_t kClassCountField = 6;
constexpr std::size_t kMarkArrayField = 8;
constexpr std::size_t kTargetArrayField = 10;

} // namespace

bool GPOS_MarkAttachment::read(LayoutBudget& budget) {
    return table().contains(kTargetArrayField, 2) &&
           TTI_Coverage::read(offsetTo(table(), kTargetCoverageField)) && digestCoverage(budget);
}

std::optional<GPOS_Mark> GPOS_MarkAttachment::mark(unsigned short gid, GlyphMemo* memo) const {
    const int index = coverageIndex(gid, memo);
    if (index < 0)
        return std::nullopt;
    return readMark(offsetTo(table(), kMarkArrayField), static_cast<std::size_t>(index));
}

int GPOS_MarkAttachment::targetIndex(unsigned short gid, GlyphMemo* memo) const {
    return coverageIndexIn(offsetTo(table(), kTargetCoverageField), gid, memo);
}

ByteView GPOS_MarkAttachment::targets() const {
    return offsetTo(table(), kTargetArrayField);
}

GPOS_AnchorMatrix GPOS_MarkAttachment::anchors(ByteView matrix) const {
    return GPOS_AnchorMatrix(matrix, table().u16(kClassCountField).value_or(0));
}

std::optional<GPOS_Anchor> GPOS_MarkAttachment::targetAnchor(unsigned short gid,
                                                             unsigned int markClass,
                                                             GlyphMemo* memo) const {
    const int index = targetIndex(gid, memo);
    if (index < 0)
        return std::nullopt;
    return anchors(targets()).anchor(static_cast<std::size_t>(index), markClass);
}

} // namespace KWFontService_NS
