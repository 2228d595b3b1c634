#pragma once

#include "Layout.h"
#include "PdfFont.h"

#include <string>

namespace typeset {

/// What a page calls a font.
/// @param upright  the same font with the encoding for vertical writing
/// @param part     which of the simple fonts that it has gone into
std::string resourceName(std::size_t font, bool upright, unsigned part = 0);

/// The text operators of a page (ISO 32000-1, 9.4). Where the text that a reader puts together from
/// the glyphs would not be the text that was set, it stands beside them as ActualText (14.9.4).
std::string pageContent(const Page& page, const PdfFonts& fonts, double pageHeight);

} // namespace typeset
