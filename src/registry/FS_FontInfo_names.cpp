#include "registry/FS_FontPool.h"

#include <KWFontService17/FS_FontInfo.h>

namespace KWFontService_NS {

bool FS_FontInfo::isSameFontName(const UnicodeString& a, const UnicodeString& b) {
    return normaliseFontName(a) == normaliseFontName(b);
}

} // namespace KWFontService_NS
