#include "layout/TTI_Coverage.h"

#include "layout/LayoutArrays.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

std::unique_ptr<TTI_Coverage> TTI_Coverage::read(ByteView table) {
    switch (table.u16(0).value_or(0)) {
    case 1:
        return std::make_unique<TTI_CoverageFormat1>(table);
    case 2:
        return std::make_unique<TTI_CoverageFormat2>(table);
    default:
        return nullptr;
    }
}

TTI_CoverageFormat1::TTI_CoverageFormat1(ByteView table)
    : glyphs_(readU16s(table, 4, table.u16(2).value_or(0))) {}

int TTI_CoverageFormat1::coverageIndex(unsigned short gid) const {
    std::size_t low = 0;
    std::size_t high = glyphs_.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (gid < glyphs_[middle])
            high = middle;
        else if (gid > glyphs_[middle])
            low = middle + 1;
        else
            return static_cast<int>(middle);
    }
    return -1;
}

TTI_CoverageFormat2::TTI_CoverageFormat2(ByteView table) {
    const std::size_t count = heldRecords(table, 4, table.u16(2).value_or(0), 6);
    ranges_.reserve(count);
    const std::uint8_t* p = table.from(4).data();
    for (std::size_t i = 0; i < count; ++i, p += 6)
        ranges_.push_back(
            {ByteView::loadU16(p), ByteView::loadU16(p + 2), ByteView::loadU16(p + 4)});
}

int TTI_CoverageFormat2::coverageIndex(unsigned short gid) const {
    const Range* range = findGlyphRange(ranges_, gid);
    return range ? range->startCoverageIndex + gid - range->start : -1;
}

} // namespace KWFontService_NS
