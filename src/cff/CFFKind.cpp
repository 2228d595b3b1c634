#include "cff/CFFKind.h"

#include <cstdint>
#include <optional>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

/// The unsigned number of `size` bytes at `offset`.
std::optional<std::uint32_t> readOffset(ByteView bytes, std::size_t offset, std::uint8_t size) {
    switch (size) {
    case 1:
        return bytes.u8(offset);
    case 2:
        return bytes.u16(offset);
    case 3:
        return bytes.u24(offset);
    case 4:
        return bytes.u32(offset);
    default:
        return std::nullopt;
    }
}

/// One INDEX: its first object and where the next structure starts.
struct Index {
    ByteView first;
    std::size_t end = 0;
};

std::optional<Index> readIndex(ByteView bytes, std::size_t at) {
    const auto count = bytes.u16(at);
    if (!count)
        return std::nullopt;
    if (*count == 0)
        return Index{{}, at + 2};
    const auto offSize = bytes.u8(at + 2);
    if (!offSize)
        return std::nullopt;
    const std::size_t offsets = at + 3;
    // Offsets count from the byte before the data.
    const std::size_t base = offsets + (std::size_t{*count} + 1) * *offSize - 1;
    const auto begin = readOffset(bytes, offsets, *offSize);
    const auto next = readOffset(bytes, offsets + *offSize, *offSize);
    const auto last = readOffset(bytes, offsets + std::size_t{*count} * *offSize, *offSize);
    if (!begin || !next || !last || *begin < 1 || *next < *begin)
        return std::nullopt;
    if (!bytes.contains(base + *begin, *next - *begin))
        return std::nullopt;
    return Index{bytes.sub(base + *begin, *next - *begin), base + *last};
}

/// True when the DICT has the two-byte operator 12 `second`.
bool hasEscapedOperator(ByteView dict, std::uint8_t second) {
    constexpr std::uint8_t kEscape = 12;
    constexpr std::uint8_t kRealNumber = 30;
    for (std::size_t i = 0; i < dict.size(); ++i) {
        const std::uint8_t b = dict.data()[i];
        if (b == kEscape) {
            if (++i < dict.size() && dict.data()[i] == second)
                return true;
        } else if (b == 28) {
            i += 2;
        } else if (b == 29) {
            i += 4;
        } else if (b == kRealNumber) {
            do
                ++i;
            while (i < dict.size() && (dict.data()[i] & 0x0F) != 0x0F &&
                   (dict.data()[i] & 0xF0) != 0xF0);
        } else if (b >= 247 && b <= 254) {
            ++i;
        }
    }
    return false;
}

} // namespace

CFFKind readCFFKind(ByteView start) {
    constexpr std::uint8_t kROS = 30;
    const auto headerSize = start.u8(2);
    if (!headerSize)
        return CFFKind::Unreadable;
    const auto names = readIndex(start, *headerSize);
    if (!names)
        return CFFKind::Unreadable;
    const auto topDicts = readIndex(start, names->end);
    if (!topDicts || topDicts->first.empty())
        return CFFKind::Unreadable;
    return hasEscapedOperator(topDicts->first, kROS) ? CFFKind::CIDKeyed : CFFKind::NameKeyed;
}

} // namespace KWFontService_NS
