#pragma once

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWValue.h>

namespace KWFontService_NS {

/// Appends an integer as charstrings have it, in the shortest form; one that needs more than 16
/// bits in the five-byte form of charstrings, which a DICT does not have.
void writeCFFInteger(KWCommonNS::KWMemStream& output, int value);

/// Appends a DICT operand: a number, or a word as 1 for true and 0 for any other.
void writeDictValue(KWCommonNS::KWMemStream& output, const KWCommonNS::KWValue& value);

} // namespace KWFontService_NS
