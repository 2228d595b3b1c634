#include <KWFontService17/FS_TTGlyphMap.h>

namespace KWFontService_NS {

FS_TTGlyphMap::~FS_TTGlyphMap() = default;

} // namespace KWFontService_NS
