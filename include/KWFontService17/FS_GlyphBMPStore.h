#pragma once

#include <KWFontService17/FS_GlyphBMP.h>

#include <map>
#include <memory>

namespace KWFontService_NS {

/// Drawn glyphs by glyph id, for one font, one size and one setting, which the caller keeps to.
///
/// Nothing is ever thrown out but by `insertGlyph` of the same glyph and by `clear`. Used by one
/// thread at a time.
class KWFONTSERVICE_API FS_GlyphBMPStore {
public:
    FS_GlyphBMPStore();
    ~FS_GlyphBMPStore();
    FS_GlyphBMPStore(const FS_GlyphBMPStore&) = delete;
    FS_GlyphBMPStore& operator=(const FS_GlyphBMPStore&) = delete;

    /// Draws a glyph and keeps it in the place of an earlier one. False with `getError` set when it
    /// cannot be drawn; the glyph is absent then, also when there was an earlier one. `font` is not
    /// null.
    bool insertGlyph(unsigned short gid, float pointSize, unsigned int dpi, FS_FontInfo* font,
                     const FS_GlyphBMPSetting& setting);
    /// Null when absent. Belongs to the store, until it is replaced or cleared.
    FS_GlyphBMP* getGlyph(unsigned short gid) const;
    bool hasGlyph(unsigned short gid) const { return getGlyph(gid) != nullptr; }
    bool empty() const { return glyphs.empty(); }
    /// Deletes every glyph.
    void clear();
    /// What the last `insertGlyph` met; no error after a success.
    KWCommonNS::KWError getError() const { return error; }

    /// False for characters that have nothing to draw: spaces, line and paragraph separators,
    /// control and format characters (Unicode general categories Z and Cc, Cf).
    static bool isValidCharacter(int ch);

private:
    bool issueError(const char* detail);

    std::map<unsigned short, std::unique_ptr<FS_GlyphBMP>> glyphs;
    KWCommonNS::KWError error;
};

} // namespace KWFontService_NS
