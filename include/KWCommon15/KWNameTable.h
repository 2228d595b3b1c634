#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWNameEnum.h"

namespace KWCommonNS {

/// The table behind `KWName`: the common names, fixed, and the texts interned at run time.
///
/// All operations may be called from any thread.
class KWCOMMON_API KWNameTable {
public:
    /// The text of a name.
    /// @return the shared text, alive to the end of the process; empty for `None` and for a number
    ///         that has no text
    static const UnicodeString& getSharedNameString(KWNameEnum name);

    /// The common name of a text, compared exactly. Nothing is interned.
    /// @return `None` when no common name has this text
    static KWNameEnum findCommonName(const UnicodeString& text);

    /// As `findCommonName`, with ASCII letters of either case taken as equal, as CSS keywords are.
    static KWNameEnum findKeyword(const UnicodeString& text);

    /// The name of a text: the common one, or the one interned for it, now or earlier.
    ///
    /// An interned text is kept to the end of the process. It is meant for a program's own words;
    /// text from outside goes through `findCommonName` or `findKeyword`, which add nothing.
    /// @return `None` for an empty text
    static KWNameEnum intern(const UnicodeString& text);
};

} // namespace KWCommonNS
