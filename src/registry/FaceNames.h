#pragma once

#include "fonts/TTI_Names.h"
#include "registry/FS_FontPool.h"

namespace KWFontService_NS {

/// Enters one sfnt face in `pool` under each of its names in each language, and under the family
/// names that were given to the font besides its own.
void registerFaceNames(FS_FontPool& pool, FS_BaseFont& font, int faceIndex, const TTI_Names& names);

} // namespace KWFontService_NS
