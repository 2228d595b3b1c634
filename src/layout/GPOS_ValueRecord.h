#pragma once

#include "layout/TTI_Device.h"

#include "common/ByteView.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace KWFontService_NS {

class GlyphIDPosition;

/// How a glyph is moved (OpenType, Value Record), in font units with y upwards, read in place. A
/// field that the value format does not call for is 0.
class GPOS_ValueRecord {
public:
    // The bits of a value format.
    static constexpr unsigned int kXPlacement = 0x01;
    static constexpr unsigned int kYPlacement = 0x02;
    static constexpr unsigned int kXAdvance = 0x04;
    static constexpr unsigned int kYAdvance = 0x08;
    static constexpr unsigned int kXPlacementDevice = 0x10;
    static constexpr unsigned int kYPlacementDevice = 0x20;
    static constexpr unsigned int kXAdvanceDevice = 0x40;
    static constexpr unsigned int kYAdvanceDevice = 0x80;
    static constexpr unsigned int kAllFields = 0xFF;
    /// The fields that positioning applies.
    static constexpr unsigned int kAppliedFields = 0x0F;

    /// Bytes that a record of this format takes.
    static std::size_t size(unsigned int valueFormat) {
        return 2 * static_cast<std::size_t>(std::popcount(valueFormat & kAllFields));
    }

    GPOS_ValueRecord() = default;
    /// @param base    the table that offsets of device tables count from
    /// @param offset  where the record starts in it
    GPOS_ValueRecord(KWCommonNS::ByteView base, std::size_t offset, unsigned int valueFormat)
        : base_(base), offset_(offset), valueFormat_(valueFormat) {}

    bool has(unsigned int bit) const { return (valueFormat_ & bit) != 0; }
    /// False when only device tables, or nothing, would be applied.
    bool applies() const { return has(kAppliedFields); }
    /// Moves a glyph; false, and nothing happens, when there is nothing to apply.
    bool applyTo(GlyphIDPosition& glyph) const;
    std::int16_t xPlacement() const { return number(kXPlacement); }
    std::int16_t yPlacement() const { return number(kYPlacement); }
    std::int16_t xAdvance() const { return number(kXAdvance); }
    std::int16_t yAdvance() const { return number(kYAdvance); }
    /// The device table of one of the four device bits, empty when there is none.
    TTI_Device device(unsigned int bit) const;

private:
    /// Where the field of a bit stands: behind those of all lower bits.
    std::size_t field(unsigned int bit) const { return offset_ + size(valueFormat_ & (bit - 1)); }
    std::int16_t number(unsigned int bit) const {
        return has(bit) ? base_.i16(field(bit)).value_or(0) : std::int16_t{0};
    }

    KWCommonNS::ByteView base_;
    std::size_t offset_ = 0;
    unsigned int valueFormat_ = 0;
};

} // namespace KWFontService_NS
