#pragma once

#include "UsedGlyphs.h"

#include <map>
#include <string>

namespace typeset {

struct FontFile;

/// A font as a PostScript document defines and names it.
struct PsFont {
    std::string definition;
    /// What pages call it, by the upper byte of codes; a composite font has one name for all.
    std::map<unsigned char, std::string> names;
    bool isComposite = false;
    std::map<unsigned short, unsigned short> codes; // by glyph id

    /// Glyph 0 is code 0.
    unsigned short codeOf(unsigned short gid) const;
    const std::string& nameFor(unsigned short code) const;
};

/// By index in the fonts of the document.
using PsFonts = std::map<std::size_t, PsFont>;

/// Asks the library for a CIDFont with the glyphs, or for a Type 1 font for every 253 of them.
/// Throws `Failure` (font) for a font with TrueType outlines.
/// @param name  a name of its own in the document
PsFont makePsFont(const FontFile& font, const UsedGlyphs& glyphs, const std::string& name);

} // namespace typeset
