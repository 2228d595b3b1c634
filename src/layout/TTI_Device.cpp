#include "layout/TTI_Device.h"

#include "layout/LayoutArrays.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kDeltas = 6;
constexpr unsigned int kWordBits = 16;

/// The two's complement number in the lowest `bits` bits.
std::int8_t signedNumber(unsigned int value, unsigned int bits) {
    const unsigned int sign = 1U << (bits - 1);
    return static_cast<std::int8_t>(static_cast<int>((value & (2 * sign - 1)) ^ sign) -
                                    static_cast<int>(sign));
}

} // namespace

TTI_Device TTI_Device::read(ByteView table) {
    TTI_Device device;
    device.startSize = table.u16(0).value_or(0);
    device.endSize = table.u16(2).value_or(0);
    const unsigned int format = table.u16(4).value_or(0);
    if (format < 1 || format > 3 || device.endSize < device.startSize)
        return device;
    const unsigned int bits = 1U << format;
    const unsigned int perWord = kWordBits / bits;
    const std::size_t count = std::size_t{device.endSize} - device.startSize + 1;
    const U16List words(table, kDeltas, (count + perWord - 1) / perWord);
    device.deltas.reserve(std::min(count, words.size() * perWord));
    for (const std::uint16_t word : words) {
        for (unsigned int shift = kWordBits; shift != 0 && device.deltas.size() < count;) {
            shift -= bits;
            device.deltas.push_back(signedNumber(unsigned{word} >> shift, bits));
        }
    }
    return device;
}

} // namespace KWFontService_NS
