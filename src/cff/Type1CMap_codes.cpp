// What a name-keyed CFF font gives Type 1 codes to.

#include "cff/Type1CMap.h"
#include "type1/GlyphNames.h"

namespace KWFontService_NS {

using KWCommonNS::KWMutex;

/// Empty for a glyph that has none.
std::string_view Type1CMap::nameOfGlyph(unsigned short gid) const {
    if (isCID)
        return {};
    const unsigned short sid = getSIDOfGlyph(gid);
    return sid != 0 || gid == 0 ? getStringOfSID(sid) : std::string_view();
}

unsigned short Type1CMap::giveGlyphCode(unsigned short gid) {
    KWMutex mutex(codeLock());
    mutex.lock();
    if (const unsigned short known = glyphCode(gid))
        return known;
    const std::string_view name = nameOfGlyph(gid);
    if (name.empty())
        return 0;
    if (gid > 0 && gid <= encodingCodes.size()) {
        const std::uint8_t code = encodingCodes[gid - std::size_t{1}];
        if (code != 0 && assignGlyphCode(gid, code)) {
            addCMapEntry(0, code, name);
            return code;
        }
    }
    do {
        raiseNextCode();
    } while (nextCode < kCodesOfAFont &&
             !standardName(static_cast<std::uint8_t>(nextCode)).empty());
    return allocateGlyphCode(gid, name);
}

unsigned short Type1CMap::giveCharCode(int ch, unsigned short gid) {
    KWMutex mutex(codeLock());
    mutex.lock();
    if (const unsigned short known = unicodeCode(ch))
        return known;
    constexpr int kLastByte = 0xFF;
    const bool isOwnCode = ch > 0 && ch <= kLastByte && glyphCode(gid) == 0 &&
                           !nameOfGlyph(gid).empty() &&
                           nameOfGlyph(gid) == standardName(static_cast<std::uint8_t>(ch));
    if (isOwnCode && assignGlyphCode(gid, static_cast<unsigned short>(ch)))
        return assignCode(ch, static_cast<unsigned short>(ch));
    const unsigned short code = giveGlyphCode(gid);
    return code != 0 ? assignCode(ch, code) : code;
}

} // namespace KWFontService_NS
