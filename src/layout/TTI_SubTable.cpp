#include "layout/TTI_SubTable.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

TTI_SubTable::~TTI_SubTable() = default;

unsigned short TTI_SubTable::substituteSingle(unsigned short) const {
    return FS_NO_GLYPH;
}

unsigned short TTI_SubTable::substituteAlternate(unsigned short, int) const {
    return FS_NO_GLYPH;
}

unsigned short TTI_SubTable::substituteLigature(const FS_GSUBGPOSInfo&, const GlyphIDArray&, int&,
                                                unsigned int, std::vector<int>&) const {
    return FS_NO_GLYPH;
}

int TTI_SubTable::matchContext(const FS_GSUBGPOSInfo&, const TTI_LookupRecord*&,
                               const GlyphIDArray&, int&, unsigned int, std::vector<int>&) const {
    return 0;
}

unsigned short TTI_SubTable::substituteReverse(const FS_GSUBGPOSInfo&, const GlyphIDArray&, int,
                                               unsigned int) const {
    return FS_NO_GLYPH;
}

bool TTI_SubTable::position(const FS_GSUBGPOSInfo&, const TTI_LayoutTable&, const TTI_Lookup&,
                            std::vector<GlyphIDPosition>&, int&, bool) const {
    return false;
}

} // namespace KWFontService_NS
