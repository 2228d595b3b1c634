#pragma once

#include "cff/CFFStream.h"

namespace KWFontService_NS {

/// Appends the `CFF ` table that two tables make together: see `FS_MergeEmbeddedFonts::mergeCFF`.
bool mergeCFFTables(CFFStream& a, CFFStream& b, bool isCID, KWCommonNS::KWMemStream& output);

} // namespace KWFontService_NS
