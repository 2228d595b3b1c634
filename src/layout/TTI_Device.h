#pragma once

#include "common/ByteView.h"

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// Corrections for single sizes in pixels (OpenType, Device Table). Value records and anchors name
/// them, and positioning deliberately never reads them.
struct TTI_Device {
    std::uint16_t startSize = 0;
    std::uint16_t endSize = 0;
    /// One for each size from the first to the last; none when the delta format is unknown.
    std::vector<std::int8_t> deltas;

    /// Expands the packed deltas, as many as the table holds. All zero and empty without a table.
    static TTI_Device read(KWCommonNS::ByteView table);
};

} // namespace KWFontService_NS
