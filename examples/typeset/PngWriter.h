#pragma once

#include "FontSet.h"
#include "Layout.h"

#include <string>

namespace typeset {

/// Draws the first page, or the lines of its upper half, glyph by glyph where the PDF has them, as
/// a greyscale PNG. Throws `Failure`.
void writePng(const std::string& path, const Layout& layout, FontSet& fonts, unsigned dpi,
              bool wholePage);

} // namespace typeset
