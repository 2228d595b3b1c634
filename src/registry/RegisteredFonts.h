#pragma once

#include "registry/FS_FontService.h"

#include <string>
#include <vector>

namespace KWFontService_NS {

/// Loads fonts that the operating system lists, without a look at what the folders brought: a file
/// that is found both ways is loaded twice. Their folders join those of the service.
/// @param paths  values that are no full path of a file that is there are passed over
void readRegistryFonts(FS_FontService& service, const std::vector<std::u16string>& paths);

} // namespace KWFontService_NS
