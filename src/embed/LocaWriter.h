#pragma once

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace KWFontService_NS {

/// Fills `loca` entry by entry (OpenType `loca`).
class LocaWriter {
public:
    /// The furthest that entries reach.
    static constexpr std::uint32_t kMostShort = 0x1FFFE;
    static constexpr std::uint32_t kMostLong = 0xFFFFFFFF;

    LocaWriter(std::span<std::uint8_t> loca, bool isLong) : loca_(loca), isLong_(isLong) {}

    /// Stores `offset` in every entry from the next one up to but not including `end`.
    void fillTo(std::size_t end, std::uint32_t offset) {
        if (isLong_) {
            for (; entry_ < end; ++entry_)
                KWCommonNS::ByteView::storeU32(&loca_[entry_ * 4], offset);
        } else {
            const auto half = static_cast<std::uint16_t>(offset / 2);
            for (; entry_ < end; ++entry_)
                KWCommonNS::ByteView::storeU16(&loca_[entry_ * 2], half);
        }
    }

private:
    std::span<std::uint8_t> loca_;
    bool isLong_;
    std::size_t entry_ = 0;
};

} // namespace KWFontService_NS
