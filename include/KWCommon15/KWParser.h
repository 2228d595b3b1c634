#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWTokenizer.h"
#include "KWCommon15/KWValue.h"

namespace KWCommonNS {

/// Reads a whole text as one value. Any thread may call it.
class KWCOMMON_API KWParser {
public:
    /// One token gives the value that `KWTokenizer::nextTokenValueExp` has for it: "12" an integer,
    /// "12.5" a real, "12px" a real with a unit, "yes" a name. Several give one string of the unit
    /// `KWUnitType::List` that holds the text, trimmed of white space. A text of white space and
    /// comments gives null.
    static KWValue parse(const UnicodeString& text, TokenizerType type = TokenizerType::CSS);
};

} // namespace KWCommonNS
