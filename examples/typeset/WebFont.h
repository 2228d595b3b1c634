#pragma once

#include "Layout.h"

#include <cstddef>
#include <string>

namespace typeset {

struct FontFile;

/// Writes the glyphs of a font that a layout uses as a web font (WOFF 1.0). Throws `Failure` (font)
/// when none are used, when the licence does not allow to cut the font, and when it cannot be
/// written as one.
/// @param index  of the font in the fonts of the document
/// @return       size of the file
std::size_t writeWebFont(const std::string& path, const Layout& layout, std::size_t index,
                         const FontFile& font);

} // namespace typeset
