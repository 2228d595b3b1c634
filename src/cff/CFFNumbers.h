#pragma once

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWValue.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace KWFontService_NS {

/// Puts an integer into `out` as charstrings have it, in the shortest form; one that needs more
/// than 16 bits in the five-byte form of charstrings, which a DICT does not have. Answers its size.
std::size_t encodeCFFInteger(int value, std::span<std::uint8_t, 5> out);

/// The same as a DICT has it: one of more than 16 bits as 29 and four bytes.
std::size_t encodeDictInteger(int value, std::span<std::uint8_t, 5> out);

/// Appends an integer as charstrings have it.
void writeCFFInteger(KWCommonNS::KWMemStream& output, int value);

/// Appends a DICT operand: a number, or a word as 1 for true and 0 for any other.
void writeDictValue(KWCommonNS::KWMemStream& output, const KWCommonNS::KWValue& value);

} // namespace KWFontService_NS
