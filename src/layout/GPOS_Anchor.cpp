#include "layout/GPOS_Anchor.h"

#include "layout/LayoutArrays.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kAnchorPointField = 6;
constexpr std::size_t kXDeviceField = 6;
constexpr std::size_t kYDeviceField = 8;
constexpr std::size_t kMarkRecordSize = 4; // a class and an offset

} // namespace

std::optional<GPOS_Anchor> GPOS_Anchor::read(ByteView table) {
    const unsigned int format = table.u16(0).value_or(0);
    if (format < 1 || format > 3 || !table.contains(2, 4))
        return std::nullopt;
    return GPOS_Anchor(ByteView::loadI16(table.data() + 2), ByteView::loadI16(table.data() + 4));
}

std::optional<GPOS_AnchorFormat2> GPOS_AnchorFormat2::read(ByteView table) {
    const auto anchor = GPOS_Anchor::read(table);
    if (!anchor || table.u16(0) != 2)
        return std::nullopt;
    return GPOS_AnchorFormat2(*anchor, table.u16(kAnchorPointField).value_or(0));
}

std::optional<GPOS_AnchorFormat3> GPOS_AnchorFormat3::read(ByteView table) {
    const auto anchor = GPOS_Anchor::read(table);
    if (!anchor || table.u16(0) != 3)
        return std::nullopt;
    return GPOS_AnchorFormat3(*anchor, table);
}

TTI_Device GPOS_AnchorFormat3::xDevice() const {
    return TTI_Device::read(offsetTo(table_, kXDeviceField));
}

TTI_Device GPOS_AnchorFormat3::yDevice() const {
    return TTI_Device::read(offsetTo(table_, kYDeviceField));
}

std::optional<GPOS_Anchor> GPOS_AnchorMatrix::anchor(std::size_t row, std::size_t markClass) const {
    if (row >= rows_ || markClass >= classCount_)
        return std::nullopt;
    return GPOS_Anchor::read(offsetTo(table_, 2 + 2 * (row * classCount_ + markClass)));
}

std::optional<GPOS_Mark> readMark(ByteView markArray, std::size_t index) {
    if (index >= markArray.u16(0).value_or(0))
        return std::nullopt;
    const std::size_t record = 2 + kMarkRecordSize * index;
    const auto markClass = markArray.u16(record);
    const auto anchor = GPOS_Anchor::read(offsetTo(markArray, record + 2));
    if (!markClass || !anchor)
        return std::nullopt;
    return GPOS_Mark{.markClass = *markClass, .anchor = *anchor};
}

} // namespace KWFontService_NS
