#pragma once

#include <KWFontService17/FS_Export.h>

namespace KWCommonNS {
class KWMemStream;
}

namespace KWFontService_NS {

/// Where `FS_FontInfo::getPSEmbedFont` puts the glyphs of a font, one stream a glyph.
///
/// The caller derives from it, makes the streams and owns them; the library only appends. A
/// PostScript writer keeps each stream as an entry of a Type 42 `GlyphDirectory` (Adobe Technical
/// Note 5012).
class KWFONTSERVICE_API FS_TTGlyphMap {
public:
    /// The stream for the `glyf` bytes of a glyph; null drops that glyph.
    /// @param gid  glyph id of the source font
    virtual KWCommonNS::KWMemStream* getGlyphStream(unsigned short gid) = 0;

    virtual ~FS_TTGlyphMap();

protected:
    FS_TTGlyphMap() = default;
    FS_TTGlyphMap(const FS_TTGlyphMap&) = default;
    FS_TTGlyphMap& operator=(const FS_TTGlyphMap&) = default;
};

} // namespace KWFontService_NS
