#include "KWCommon15/KWUUID.h"

#include <cstddef>
#include <random>

namespace KWCommonNS {

KWUUID::KWUUID() {
    std::random_device source;
    for (std::size_t i = 0; i < bytes_.size(); i += 4) {
        const std::uint32_t word = source();
        for (std::size_t k = 0; k < 4; ++k)
            bytes_[i + k] = static_cast<std::uint8_t>(word >> (8 * k));
    }
    bytes_[6] = static_cast<std::uint8_t>((bytes_[6] & 0x0F) | 0x40); // version 4
    bytes_[8] = static_cast<std::uint8_t>((bytes_[8] & 0x3F) | 0x80); // RFC 9562 variant
}

UnicodeString KWUUID::toString() const {
    constexpr char16_t kDigits[] = u"0123456789abcdef";
    UnicodeString text;
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text.append(u'-');
        text.append(kDigits[bytes_[i] >> 4]).append(kDigits[bytes_[i] & 0x0F]);
    }
    return text;
}

} // namespace KWCommonNS
