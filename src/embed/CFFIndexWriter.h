#pragma once

#include "cff/CFFStream.h"
#include "common/ByteView.h"

#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <span>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWMemStream;

/// Appends a number of two bytes.
void appendU16(KWMemStream& output, std::size_t value);

/// Bytes of an INDEX before its data (Adobe Technical Note 5176, section 5).
constexpr std::size_t indexHeadSize(std::size_t count, std::size_t offSize) {
    return count == 0 ? 2 : 3 + (count + 1) * offSize;
}
/// The width of offsets that reach to the end of the data.
constexpr std::uint8_t indexOffSize(std::uint32_t dataSize) {
    return dataSize < 0xFF ? 1 : dataSize < 0xFFFF ? 2 : dataSize < 0xFFFFFF ? 3 : 4;
}

/// Appends count, offSize and offsets of an INDEX.
/// @param offsets  where items begin in the data, from 0 on, and where the data ends
/// @return         false for an INDEX without items, which is no more than its count
bool writeIndexHead(KWMemStream& output, std::span<const std::uint32_t> offsets);
/// The same with a width of the caller's.
bool writeIndexHead(KWMemStream& output, std::span<const std::uint32_t> offsets,
                    std::uint8_t offSize);
/// Appends an INDEX.
void writeIndex(KWMemStream& output, ByteView data, std::span<const std::uint32_t> offsets);
void writeIndex(KWMemStream& output, KWMemStream& data, std::span<const std::uint32_t> offsets);
/// Appends an INDEX of one item.
void writeSingleIndex(KWMemStream& output, ByteView item);

// These move `at` behind the INDEX that stands there; one without items ends behind its count.
// False on a short read and for offsets that lie.

bool copyIndex(CFFStream& table, std::uint64_t& at, KWMemStream& output);
bool skipIndex(CFFStream& table, std::uint64_t& at);

} // namespace KWFontService_NS
