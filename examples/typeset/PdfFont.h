#pragma once

#include "FontProgram.h"
#include "UsedGlyphs.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace typeset {

struct FontFile;

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
    FontProgram program;
    bool subset = true;

    /// The glyphs by their codes in text.
    UsedGlyphs byCode() const;
    /// Those of one of the simple fonts, by their codes of one byte.
    UsedGlyphs byCode(unsigned char part) const;
};

/// By index in the fonts of the document.
using PdfFonts = std::map<std::size_t, PdfFont>;

/// Asks the library for all that, and for a subset with the glyphs unless the whole font is wanted
/// here or by its licence. Throws `Failure` (font) when the library cannot write it.
/// @param upright  columns are set in it
/// @param parts    as in `makeFontProgram`
PdfFont makePdfFont(const FontFile& font, const UsedGlyphs& glyphs, bool wholeFont, bool upright,
                    const std::vector<UsedGlyphs>& parts = {});

/// A CMap from codes to text (ISO 32000-1, 9.10.3).
/// @param glyphs       by their codes
/// @param bytesOfCode  1 or 2
std::string toUnicodeCMap(const UsedGlyphs& glyphs, int bytesOfCode = 2);

} // namespace typeset
