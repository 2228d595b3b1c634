#pragma once

#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_Export.h>

namespace KWFontService_NS {

/// Why a file of a Type 1 font cannot be read.
struct Type1FileError {
    FS_ERROR code = FS_ERROR_NONE;
    UnicodeString detail;
};

} // namespace KWFontService_NS
