#pragma once

#include "Layout.h"

#include <array>
#include <map>
#include <string>

namespace typeset {

struct FontFile;

struct UsedGlyph {
    std::u16string text; // that it stands for; empty for one that never stands for any alone
    float advance = 0;   // thousandths of an em
};
/// By glyph id, in order. Glyph 0, which every font program has, is among them.
using UsedGlyphs = std::map<unsigned short, UsedGlyph>;

/// @param font  index of the font in the fonts of the document
/// @return      empty when no line is set in it
UsedGlyphs usedGlyphs(const Layout& layout, std::size_t font);

/// The text of a placed glyph as one reads it back: a no-break space is a space there.
std::u16string plainText(const PlacedGlyph& glyph);

/// What a PDF wants to know of a font (ISO 32000-1, 9.8). Lengths are thousandths of an em.
struct PdfFont {
    std::string name; // with the subset tag
    int flags = 0;
    std::array<double, 4> box{}; // left, bottom, right, top
    double italicAngle = 0;
    double ascent = 0;
    double descent = 0;
    double capHeight = 0;
    double stemV = 0;
    UsedGlyphs glyphs;
    std::string program; // an sfnt, for FontFile2
    bool subset = true;
};

/// By index in the fonts of the document.
using PdfFonts = std::map<std::size_t, PdfFont>;

/// Asks the library for all that, and for a subset with the glyphs unless the whole font is wanted
/// here or by its licence. Throws `Failure` (font) when the library cannot write it.
PdfFont makePdfFont(const FontFile& font, const UsedGlyphs& glyphs, bool wholeFont);

/// Six capitals that stand for a set of glyphs (ISO 32000-1, 9.6.4).
std::string subsetTag(const UsedGlyphs& glyphs);

/// A CMap from glyph ids to text (ISO 32000-1, 9.10.3).
std::string toUnicodeCMap(const UsedGlyphs& glyphs);

} // namespace typeset
