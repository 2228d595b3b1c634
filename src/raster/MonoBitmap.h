#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>

namespace KWFontService_NS {

/// Expands a bitmap of one bit a pixel, the high bit first, to one byte a pixel, 0xFF or 0.
/// @param pixels  room for `rows` * `width` bytes; the top row comes first, whichever way the
///                bitmap's rows run
void expandMonoBitmap(const FT_Bitmap& bitmap, std::uint8_t* pixels);

} // namespace KWFontService_NS
