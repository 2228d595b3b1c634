#pragma once

#include "Layout.h"

#include <map>
#include <string>
#include <vector>

namespace typeset {

struct UsedGlyph {
    std::u16string text; // that it stands for; empty for one that never stands for any alone
    float advance = 0;   // thousandths of an em
};
/// By glyph id, in order. Glyph 0, which every font program has, is among them.
using UsedGlyphs = std::map<unsigned short, UsedGlyph>;

/// @param font  index of the font in the fonts of the document
/// @return      empty when no line is set in it
UsedGlyphs usedGlyphs(const Layout& layout, std::size_t font);

/// The same of each half of the lines, as if the document were made in two parts.
std::vector<UsedGlyphs> usedGlyphsOfHalves(const Layout& layout, std::size_t font);

std::vector<unsigned short> idsOf(const UsedGlyphs& glyphs);

/// True when glyphs of the font stand upright in a column.
bool hasUpright(const Layout& layout, std::size_t font);

/// The text of a placed glyph as one reads it back: a no-break space is a space there.
std::u16string plainText(const PlacedGlyph& glyph);

/// Six capitals that stand for a set of glyphs (ISO 32000-1, 9.6.4).
std::string subsetTag(const UsedGlyphs& glyphs);

} // namespace typeset
