#pragma once

#include "registry/FS_FontService.h"

namespace KWFontService_NS {

/// Reads the font configuration into the members of `service`; without a file it takes the folders
/// of the operating system.
///
/// Complaints go to `configError`, and so those of level 896 into the errors of the running
/// service, whatever object is being read.
/// @param configPath  null or empty for "font-config.xml"
/// @param homePath    what "@@HOME@@" stands for; may be null
/// @throws KWError    the first complaint of another level, and XML that does not parse
void readFontConfig(FS_FontService& service, const char* configPath, const char* homePath);

} // namespace KWFontService_NS
