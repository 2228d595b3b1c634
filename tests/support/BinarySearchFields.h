#pragma once

#include "Bytes.h"

#include <bit>
#include <cstddef>

namespace KWTest {

/// Writes searchRange, entrySelector and rangeShift of `count` units, as the sfnt header, `kern`
/// and others hold them; each keeps its low 16 bits.
inline void writeBinarySearchFields(Bytes& out, std::size_t count, std::size_t unitSize) {
    const std::size_t power = count == 0 ? 0 : std::bit_floor(count);
    const auto selector = power == 0 ? 0 : std::countr_zero(power);
    out.u16((power * unitSize) & 0xFFFF);
    out.u16(selector);
    out.u16(((count - power) * unitSize) & 0xFFFF);
}

} // namespace KWTest
