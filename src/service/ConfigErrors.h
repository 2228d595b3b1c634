#pragma once

#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWError.h>

namespace KWFontService_NS {

/// The error of a configuration code: its template with the arguments filled in. A code without a
/// template becomes FS_ERROR_UNKNOWN_CODE with the number in its text.
KWCommonNS::KWError makeConfigError(FS_ERROR code, const UnicodeString& argument0 = {},
                                    const UnicodeString& argument1 = {},
                                    const UnicodeString& argument2 = {},
                                    const UnicodeString& argument3 = {});

/// Reports a problem of the configuration. An error of level 896 is recorded in the service, or
/// dropped where there is none, and this returns; any other one is thrown. Arguments stand in the
/// order of the placeholders; a file is given by its local path.
void configError(FS_ERROR code, const UnicodeString& argument0 = {},
                 const UnicodeString& argument1 = {}, const UnicodeString& argument2 = {},
                 const UnicodeString& argument3 = {});

} // namespace KWFontService_NS
