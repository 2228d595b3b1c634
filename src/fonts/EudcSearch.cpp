#include "fonts/EudcSearch.h"

#include "fonts/FS_ServiceContext.h"

#include <KWFontService17/FS_BaseFont.h>

namespace KWFontService_NS {

FS_FontRef searchEudcFonts(const FS_FontRef& link, bool vertical, int ch, unsigned short& gid) {
    const auto hasGlyph = [&](const FS_FontRef& candidate) {
        gid = candidate ? candidate.font->getEudcGlyphID(ch, candidate.face) : FS_NO_GLYPH;
        return gid != FS_NO_GLYPH;
    };
    if (hasGlyph(link))
        return link;
    const FS_FontRef shared = FS_ServiceContext::defaultEudcFont(vertical);
    return hasGlyph(shared) ? shared : FS_FontRef();
}

} // namespace KWFontService_NS
