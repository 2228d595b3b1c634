#pragma once

#include "cff/CharStringWalk.h"

#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// From the operand of a call to the one that takes its place.
using SubrNumbers = SubrTable<int>;

/// Appends a charstring byte for byte, but for the operands of calls that the maps have. An operand
/// counts only right before its call.
/// @param walker  knows the subrs that the charstring calls; one without entries
/// @param counts  what the charstring starts with: nothing for a glyph, for a subr its entry
void copyCharString(KWCommonNS::KWMemStream& output, ByteView charString, SubrWalker& walker,
                    const SubrNumbers& globalNumbers, const SubrNumbers& localNumbers,
                    CharStringCounts counts);
void copyCharString(std::vector<std::uint8_t>& output, ByteView charString, SubrWalker& walker,
                    const SubrNumbers& globalNumbers, const SubrNumbers& localNumbers,
                    CharStringCounts counts);

} // namespace KWFontService_NS
