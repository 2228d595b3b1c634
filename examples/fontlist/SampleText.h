#pragma once

#include "FaceList.h"

#include <vector>

namespace fontlist {

/// True when the font has a glyph for every character.
bool covers(const KWFontService_NS::FS_FontInfo& font, const icu::UnicodeString& text);

/// Words in the scripts that a face declares and has the glyphs for; in those that it has the
/// glyphs for when it declares none of them; empty when there are none either. Scripts whose
/// letters join or change places are left out, since nothing is shaped here.
icu::UnicodeString sampleText(const KWFontService_NS::FS_FontInfo& font,
                              const KWFontService_NS::FS_NewTextMetricEx& metric);

/// The first glyphs of a font that can be drawn, for one without words.
std::vector<unsigned short> firstGlyphs(const KWFontService_NS::FS_FontInfo& font);

} // namespace fontlist
