#pragma once

#include "registry/FS_FontPool.h"

namespace KWFontService_NS {

/// The face of a family that a style means.
///
/// A style that the family does not have is filled in the CSS manner (CSS Fonts, font matching),
/// and the fills stay in `family`: later requests find them like faces of its own. Who calls this
/// holds `g_fontServiceLock`.
/// @return  null only for a family without faces
FS_FontRef selectFont(FS_FontFamilyMap& family, const FS_FontKey& key);

} // namespace KWFontService_NS
