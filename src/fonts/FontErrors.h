#pragma once

#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWError.h>
#include <KWCommon15/KWUri.h>

namespace KWFontService_NS {

/// The message of a font error, without its full stop; "FontService unknown error" for a code that
/// is none.
UnicodeString fontErrorMessage(FS_ERROR code);

/// The whole text of a font error: message, detail (or a full stop when it is empty), a line break
/// and the path.
UnicodeString fontErrorText(FS_ERROR code, const UnicodeString& detail,
                            const UnicodeString& localPath);

/// The error record with that text.
KWCommonNS::KWError makeFontError(FS_ERROR code, const UnicodeString& detail,
                                  const UnicodeString& localPath);

/// The error of a font file that does not open.
KWCommonNS::KWError cannotReadFontError(const KWCommonNS::KWUri& uri);

} // namespace KWFontService_NS
