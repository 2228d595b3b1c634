#pragma once

#include "Layout.h"
#include "PdfFont.h"

#include <cstddef>
#include <string>

namespace typeset {

/// Writes the pages, with the font embedded. The same input gives the same bytes. Throws `Failure`.
/// @param title  document title in UTF-8, empty for none
/// @return       size of the PDF in bytes
std::size_t writePdf(const std::string& path, const Layout& layout, const PdfFont& font,
                     const std::string& title);

} // namespace typeset
