#pragma once

#include <KWCommon15/KWLock.h>

namespace KWFontService_NS {

/// Held while a FreeType face is sized, loaded or drawn: faces are shared and not thread-safe.
/// Taken before the service's FreeType lock, never after it.
extern KWCommonNS::KWLock g_glyphRenderLock;

} // namespace KWFontService_NS
