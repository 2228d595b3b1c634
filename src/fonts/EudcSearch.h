#pragma once

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

/// The font that has an end-user-defined character: the one that a font is linked to, else the
/// service's; null when neither has it.
/// @param link      of the font in which the character is missing; may be null
/// @param vertical  asks the service's font for vertical text
/// @param gid       set to the glyph, 0xFFFF when there is none
FS_FontRef searchEudcFonts(const FS_FontRef& link, bool vertical, int ch, unsigned short& gid);

} // namespace KWFontService_NS
