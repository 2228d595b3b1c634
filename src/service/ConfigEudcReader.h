#pragma once

#include "service/ConfigElement.h"

namespace KWFontService_NS {

/// Reads `eudc-processing` and what stands in it.
ConfigResult readEudcProcessing(const ConfigSource& source);

} // namespace KWFontService_NS
