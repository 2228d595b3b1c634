#pragma once

#include "KWCommon15/KWUtil.h"

namespace KWCommonNS {

// Serialisation after CSSOM, "Serializing": text that a CSS tokenizer reads back as the same token.

UnicodeString toCssString(const UnicodeString& text, KWUtil::QuoteMode mode);
UnicodeString toCssIdentifier(const UnicodeString& text);
/// As an identifier, which may also begin with a digit: what follows "#".
UnicodeString toCssName(const UnicodeString& text);
/// An unquoted url( ).
UnicodeString toCssUrl(const UnicodeString& text);

} // namespace KWCommonNS
