#pragma once

#include "FontFile.h"
#include "TextLayout.h"

#include <qpdf/JSON.hh> // before QPDF.hh, which has a vector of it
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <map>
#include <string>

namespace typeset {

struct UsedGlyph {
    char32_t character = 0; // that it stands for in the text
    float advance = 0;      // thousandths of an em
};
/// By glyph id, in order. Glyph 0, which every font program has, is always among them.
using UsedGlyphs = std::map<unsigned short, UsedGlyph>;

UsedGlyphs usedGlyphs(const Layout& layout);

/// What goes into the PDF as FontFile2.
struct FontProgram {
    std::string bytes;
    bool subset = true;
};

/// Throws `Failure` (font) when the library cannot write it.
FontProgram makeFontProgram(const FontFile& font, const UsedGlyphs& glyphs, bool wholeFont);

/// Makes a Type 0 font whose character codes are the glyph ids (ISO 32000-1, 9.7).
QPDFObjectHandle makePdfFont(QPDF& pdf, const FontFile& font, const UsedGlyphs& glyphs,
                             const FontProgram& program);

/// Six capitals that stand for a set of glyphs (ISO 32000-1, 9.6.4).
std::string subsetTag(const UsedGlyphs& glyphs);

/// A CMap from glyph ids to text (ISO 32000-1, 9.10.3).
std::string toUnicodeCMap(const UsedGlyphs& glyphs);

} // namespace typeset
