#pragma once

#include "Layout.h"
#include "PdfFont.h"

#include <cstddef>
#include <string>

namespace typeset {

/// Writes the pages, with the fonts embedded. The same input gives the same bytes. Throws
/// `Failure`.
/// @param fonts  those that lines are set in, by their index in the fonts of the document
/// @param title  document title in UTF-8, empty for none
/// @return       size of the PDF in bytes
std::size_t writePdf(const std::string& path, const Layout& layout, const PdfFonts& fonts,
                     const std::string& title);

} // namespace typeset
