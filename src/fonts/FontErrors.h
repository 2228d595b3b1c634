#pragma once

#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_Export.h>

namespace KWFontService_NS {

/// The message of a font error, without its full stop; "FontService unknown error" for a code that
/// is none.
UnicodeString fontErrorMessage(FS_ERROR code);

/// The whole text of a font error: message, detail (or a full stop when it is empty), a line break
/// and the path.
UnicodeString fontErrorText(FS_ERROR code, const UnicodeString& detail,
                            const UnicodeString& localPath);

} // namespace KWFontService_NS
