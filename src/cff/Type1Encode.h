#pragma once

#include "cff/CharString.h"

#include <KWCommon15/KWMemStream.h>

namespace KWFontService_NS {

/// Appends tokens as the bytes of a Type 1 charstring, not enciphered (Adobe Type 1 Font Format,
/// chapter 6). Tokens that the format has no bytes for are left out.
void encodeType1CharString(const CharStringTokens& tokens, KWCommonNS::KWMemStream& output);

} // namespace KWFontService_NS
