#include "fonts/CodePoints.h"
#include "fonts/EudcSearch.h"
#include "fonts/FS_ServiceContext.h"
#include "fonts/FS_TrueTypeInfo.h"

namespace KWFontService_NS {

unsigned short FS_TrueTypeInfo::lookUpGlyph(const LoadedTables& present, int ch,
                                            bool vertical) const {
    const unsigned short gid = present.cmap.lookupGlyph(ch, allowGlyphZero);
    if (!vertical || gid == FS_NO_GLYPH)
        return gid;
    unsigned short form = present.gsub.substituteVertical(gid);
    if (form == FS_NO_GLYPH)
        form = present.mort.substitute(gid);
    return form == FS_NO_GLYPH ? gid : form;
}

unsigned short FS_TrueTypeInfo::getGlyphID(int ch, bool vertical) const {
    return lookUpGlyph(tables(), ch, vertical);
}

bool FS_TrueTypeInfo::getGlyphIDs(const UnicodeString& text, unsigned short* glyphs, int& count,
                                  bool vertical, int* firstMissing) const {
    count = 0;
    if (firstMissing != nullptr)
        *firstMissing = -1;
    const LoadedTables& present = tables();
    const char16_t* units = text.getBuffer();
    const std::int32_t length = text.length();
    // End-user-defined fonts are asked, and the place is told, for the first miss alone.
    bool noMissYet = true;
    for (std::int32_t next = 0; next < length;) {
        const std::int32_t index = next;
        const UChar32 ch = nextCodePoint(units, next, length);
        unsigned short& glyph = glyphs[count++];
        if (ch == 0xFFFF) {
            glyph = FS_NO_GLYPH;
            noMissYet = false;
            continue;
        }
        glyph = lookUpGlyph(present, ch, vertical);
        if (glyph != FS_NO_GLYPH || !noMissYet)
            continue;
        unsigned short eudcGlyph = FS_NO_GLYPH;
        if (ch < 0x10000 && FS_ServiceContext::isEudcCodePoint(ch) &&
            findEudcGlyph(ch, eudcGlyph)) {
            glyph = 0;
            continue;
        }
        noMissYet = false;
        if (firstMissing != nullptr)
            *firstMissing = index;
    }
    return true;
}

FS_FontRef FS_TrueTypeInfo::findEudcGlyph(int ch, unsigned short& gid) const {
    return searchEudcFonts(getEudcFont(), hasVerticalGlyph(), ch, gid);
}

unsigned short FS_TrueTypeInfo::getEudcGlyphID(int ch) const {
    const LoadedTables& loadedNow = tables();
    const unsigned short gid = loadedNow.cmap.lookupGlyph(ch, allowGlyphZero);
    // An empty cell of such a font is no character.
    return gid != FS_NO_GLYPH && loadedNow.metrics.advance(gid) == 0 ? FS_NO_GLYPH : gid;
}

bool FS_TrueTypeInfo::hasVerticalGlyph() const {
    return hasVertLookups() || !tables().mort.empty() || verticalGlyphsGiven_;
}

bool FS_TrueTypeInfo::hasVariationSelector() const {
    return tables().cmap.hasVariationSelector();
}

unsigned short FS_TrueTypeInfo::variationSequence(int ch, int selector) const {
    return tables().cmap.variationSequence(ch, selector, allowGlyphZero);
}

GlyphClassDef FS_TrueTypeInfo::getGlyphClassDef(unsigned short gid) const {
    return tables().gdef.classOf(gid);
}

unsigned int FS_TrueTypeInfo::getEmbedableCharCount() const {
    return tables().cmap.embedableCharCount();
}

} // namespace KWFontService_NS
