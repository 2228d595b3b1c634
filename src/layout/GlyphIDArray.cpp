#include <KWFontService17/GlyphIDArray.h>
#include <KWFontService17/GlyphIDPosition.h>

namespace KWFontService_NS {

int GlyphIDArray::readGIDs(const std::vector<GlyphIDPosition>& positions, bool keepEmpty) {
    glyphs_.clear();
    glyphs_.reserve(positions.size());
    for (const GlyphIDPosition& position : positions) {
        const GlyphIDClassPair& glyph = position.getGlyphIDClassPair();
        const bool stays =
            keepEmpty ? glyph.getGlyphClassDef() != GlyphClassDef::Ignored : glyph.hasGlyph();
        if (stays)
            glyphs_.push_back(glyph);
    }
    return size();
}

} // namespace KWFontService_NS
