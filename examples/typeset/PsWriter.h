#pragma once

#include "Layout.h"
#include "PsFont.h"

#include <cstddef>
#include <string>

namespace typeset {

/// The page description of a page: strings of codes with the steps between their glyphs.
std::string psPageContent(const Page& page, const PsFonts& fonts, double pageHeight);

/// Writes the pages as PostScript, level 3, with the fonts in it. Throws `Failure` (output).
/// @return  the bytes written
std::size_t writePs(const std::string& path, const Layout& layout, const PsFonts& fonts,
                    const std::string& title);

} // namespace typeset
