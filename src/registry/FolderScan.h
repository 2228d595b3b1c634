#pragma once

#include "registry/FS_FontService.h"

namespace KWFontService_NS {

/// Scans every folder of the service, in their order, and the folders below the recursive ones.
/// Subfolders come right behind their parent, so the walk goes depth first; entries come in the
/// order of the file system. Then the folder's aliases attach.
///
/// A directory that a recursive folder has led to is not entered again below another path, so links
/// may go in circles. `g_fontServiceLock` is held.
/// @throws KWError  what a reader throws outright, which ends the walk
void scanFolders(FS_FontService& service);

/// Adds a folder that is not scanned any deeper, and scans it.
/// @return  number of fonts added; 0 for a folder that was known
int addFontFolder(FS_FontService& service, const KWUri& folder);

} // namespace KWFontService_NS
