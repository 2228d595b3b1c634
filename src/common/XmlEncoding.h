#pragma once

#include "common/Expat.h"

namespace KWCommonNS {

/// Tells expat about an encoding that it does not know itself, through ICU's converter of that
/// name. Single-byte encodings and those whose characters have a length told by their first byte
/// are possible (Shift_JIS, EUC-JP, Big5, GBK, ...).
/// @return false when there is none; `encoding` then holds nothing to be released
bool describeEncoding(const char* name, XML_Encoding& encoding);

} // namespace KWCommonNS
