#pragma once

#include "common/ByteView.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// How many of `count` records of `recordSize` bytes, from `offset` on, the view holds whole.
inline std::size_t heldRecords(KWCommonNS::ByteView view, std::size_t offset, std::size_t count,
                               std::size_t recordSize) {
    return std::min(count, view.from(offset).size() / recordSize);
}

/// The `count` numbers from `offset` on, or as many as the view holds.
inline std::vector<std::uint16_t> readU16s(KWCommonNS::ByteView view, std::size_t offset,
                                           std::size_t count) {
    std::vector<std::uint16_t> values(heldRecords(view, offset, count, 2));
    const std::uint8_t* p = view.from(offset).data();
    for (std::uint16_t& value : values) {
        value = KWCommonNS::ByteView::loadU16(p);
        p += 2;
    }
    return values;
}

/// The place of the range that a glyph is in, among ranges with `start` and `end` in ascending
/// order; null when there is none.
template <class Range>
const Range* findGlyphRange(const std::vector<Range>& ranges, unsigned short gid) {
    std::size_t low = 0;
    std::size_t high = ranges.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const Range& range = ranges[middle];
        if (gid < range.start)
            high = middle;
        else if (gid > range.end)
            low = middle + 1;
        else
            return &range;
    }
    return nullptr;
}

} // namespace KWFontService_NS
