#pragma once

#include "KWCommon15/KWExport.h"

namespace KWCommonNS {

/// Home of the shared empty text.
class KWCOMMON_API KWEmptyString {
public:
    /// The one empty text of the process, for functions that answer a reference. Never changes;
    /// may be read from any thread, also while statics are being built or torn down.
    static const UnicodeString& getEmptyString();
};

/// Shorthand for KWEmptyString::getEmptyString().
KWCOMMON_API const UnicodeString& getEmptyString();

} // namespace KWCommonNS
