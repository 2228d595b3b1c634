#include "layout/SubTableReader.h"

#include "layout/GSUB_SingleSubst.h"
#include "layout/LayoutArrays.h"

#include "common/KWLimits.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::kMaxExtensionDepth;

namespace {

/// Moves from an extension subtable to the one inside; false when it does not say where that is.
bool enterExtension(ByteView& table) {
    const auto offset = table.u32(4);
    if (!offset)
        return false;
    table = table.from(*offset);
    return true;
}

} // namespace

std::unique_ptr<TTI_SubTable> SubTableReader::readGsub(ByteView table, std::uint32_t type,
                                                       std::uint32_t& lookupType) {
    for (int depth = 0; type == kGsubExtension; ++depth) {
        const auto wrapped = table.u16(2);
        if (depth == kMaxExtensionDepth || !wrapped)
            return nullptr;
        type = lookupType = *wrapped;
        if (!enterExtension(table))
            return nullptr;
    }
    const auto format = table.u16(0);
    if (!format)
        return nullptr;
    if (type == kGsubSingle && *format == 1)
        return GSUB_SingleSubstFormat1::read(*this, table);
    if (type == kGsubSingle && *format == 2)
        return GSUB_SingleSubstFormat2::read(*this, table);
    return nullptr;
}

std::unique_ptr<TTI_SubTable> SubTableReader::readGpos(ByteView table, std::uint32_t type) {
    for (int depth = 0; type == kGposExtension; ++depth) {
        const auto wrapped = table.u16(2);
        if (depth == kMaxExtensionDepth || table.u16(0) != 1 || !enterExtension(table))
            return nullptr;
        type = *wrapped;
    }
    return nullptr;
}

std::shared_ptr<const TTI_Coverage> SubTableReader::coverage(ByteView table, std::size_t field) {
    const auto offset = table.u16(field);
    const ByteView view = offset ? table.from(*offset) : ByteView();
    if (view.empty())
        return nullptr;
    const auto known = coverages_.find(view.data());
    if (known != coverages_.end())
        return known->second;
    const std::size_t recordSize = view.u16(0) == 2 ? 6 : 2;
    const std::size_t held = heldRecords(view, 4, view.u16(2).value_or(0), recordSize);
    if (!budget_.spendObject(4 + recordSize * held))
        return nullptr;
    return coverages_[view.data()] = TTI_Coverage::read(view);
}

} // namespace KWFontService_NS
