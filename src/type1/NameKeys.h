#pragma once

#include <KWFontService17/FS_Export.h>

namespace KWFontService_NS {

/// A font name as a key: without U+0020, U+002D and U+3000, in capitals. Case follows no language,
/// so that a Turkish process finds "ARIAL" as well.
UnicodeString normaliseFontName(const UnicodeString& name);

/// A file name or a path as a key: in lower case, whatever the language of the process.
UnicodeString lowerFileName(const UnicodeString& fileName);

} // namespace KWFontService_NS
