#pragma once

#include <KWFontService17/FS_Export.h>

namespace KWFontService_NS {

/// The CSS weight that a weight word or a style text means, such as the `Weight` of an AFM file
/// (Adobe Technical Note 5004). Words count wherever they stand, in any case; 400 without one.
int weightFromText(const UnicodeString& text);

} // namespace KWFontService_NS
