#pragma once

#include <KWFontService17/KWFontService.h>

#include <vector>

namespace typeset {

/// Keeps glyphs and characters together over a substitution.
///
/// Of each position this uses the correspond length (UTF-16 units that the glyph stands for, in
/// the order of the text), the decomposition type (form of joined letters), the comp info (number
/// of components of a ligature, 0 for other glyphs) and the skip info (of a mark on a ligature: the
/// number of its component, from 1).
/// @param before  the run before the substitution
/// @param after   what the library made of its glyphs, with the words about their origins
/// @return        the glyphs of `after` without widths
std::vector<KWFontService_NS::GlyphIDPosition>
followSubstitution(const std::vector<KWFontService_NS::GlyphIDPosition>& before,
                   KWFontService_NS::GlyphIDArray2 after);

/// The glyphs of a run without its marks.
KWFontService_NS::GlyphIDArray2
withoutMarks(const std::vector<KWFontService_NS::GlyphIDPosition>& glyphs);

/// What a substitution that left out the marks would have made of the whole run, had it passed them
/// over.
/// @param before   the run before the substitution, with its marks
/// @param letters  what the library made of `withoutMarks(before)`
KWFontService_NS::GlyphIDArray2
withMarks(const std::vector<KWFontService_NS::GlyphIDPosition>& before,
          KWFontService_NS::GlyphIDArray2 letters);

/// Takes out what stands for no glyph, and gives its characters to the glyph before, or else the
/// one after.
void dropEmpty(std::vector<KWFontService_NS::GlyphIDPosition>& glyphs);

} // namespace typeset
