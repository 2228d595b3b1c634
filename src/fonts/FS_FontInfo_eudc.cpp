#include "fonts/EudcSearch.h"
#include "fonts/FS_ServiceContext.h"

#include <KWFontService17/FS_FontInfo.h>

namespace KWFontService_NS {

bool FS_FontInfo::isEUDC(int code) {
    return code >= 0 && code < 0x10000 && FS_ServiceContext::isEudcCodePoint(code);
}

FS_FontRef FS_FontInfo::findEudcFont(int code, unsigned short& gid) const {
    gid = FS_NO_GLYPH;
    if (font == nullptr || !isEUDC(code))
        return {};
    return searchEudcFonts(font->getEudcFont(faceIndex), font->hasVerticalGlyph(faceIndex), code,
                           gid);
}

bool FS_FontInfo::getEudcFontName(int code, UnicodeString& name, int& weight, bool& italic) const {
    unsigned short gid = FS_NO_GLYPH;
    const FS_FontRef found = findEudcFont(code, gid);
    if (!found)
        return false;
    name = found.font->getPostScriptName(0, found.face);
    weight = found.font->getWeight(found.face);
    italic = found.font->isItalic(found.face);
    return true;
}

unsigned short FS_FontInfo::getEudcGlyphID(int code) const {
    unsigned short gid = FS_NO_GLYPH;
    findEudcFont(code, gid);
    return gid;
}

} // namespace KWFontService_NS
