#pragma once

#include "platform/Platform.h"

namespace KWPlatform {

/// The font files that fontconfig's system set names, each once, in its order. For the Type 1 list
/// the AFM, or else the PFM, that lies beside a printer font. Empty in a build without fontconfig.
///
/// A configuration of its own is loaded; the process's current one is neither used nor changed.
RegisteredFontFiles fontconfigFontFiles();

} // namespace KWPlatform
