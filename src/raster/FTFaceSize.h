#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

namespace KWFontService_NS {

/// Sizes a face as `FT_Set_Char_Size(face, 0, height, 0, dpi)` does, unless the face has that size:
/// sizing anew makes FreeType run the font's `prep` program again, which takes longer than drawing
/// a glyph. Call with the glyph rendering lock held.
/// @return FreeType's error, 0 for none
FT_Error setFTFaceSize(FT_Face face, FT_F26Dot6 height, FT_UInt dpi);

} // namespace KWFontService_NS
