#pragma once

#include <KWFontService17/KWFontService.h>

#include <string>
#include <vector>

namespace typeset {

/// A font that the document brings along, as an `@font-face` rule of CSS would.
struct FontFace {
    std::string family; // UTF-8
    int weight = 0;     // CSS; 0: the font's own
    int italic = -1;    // 1 italic, 0 upright, -1: the font's own
    std::string url;    // a path, or a URI
};

/// Reads "Family;weight;italic;URL"; weight and italic may be empty. Throws `Failure` (usage).
FontFace parseFontFace(const std::string& text);

/// Takes the fonts in, in their order. Throws `Failure` (font) with the reason for the first one
/// that cannot be had.
void addFontFaces(KWFontService_NS::FS_ExtraFontManager& fonts, const std::vector<FontFace>& faces);

} // namespace typeset
