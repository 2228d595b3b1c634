#pragma once

#include "service/ConfigElement.h"

namespace KWFontService_NS {

/// Reads `font-folder` and what stands in it.
ConfigResult readFontFolder(const ConfigSource& source);

} // namespace KWFontService_NS
