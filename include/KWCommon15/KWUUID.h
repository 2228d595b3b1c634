#pragma once

#include "KWCommon15/KWExport.h"

#include <array>
#include <compare>
#include <cstdint>

namespace KWCommonNS {

/// A unique id: a random UUID (RFC 9562, version 4).
class KWCOMMON_API KWUUID {
public:
    /// A new id, drawn from the system's random source; without one it is made from the time
    /// and a counter. Thread-safe.
    KWUUID();

    /// The 16 bytes, most significant first.
    const std::array<std::uint8_t, 16>& getBytes() const { return bytes_; }
    /// 36 characters in lower case: "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx".
    UnicodeString toString() const;

    auto operator<=>(const KWUUID&) const = default;

private:
    std::array<std::uint8_t, 16> bytes_;
};

} // namespace KWCommonNS
