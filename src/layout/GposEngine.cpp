#include "layout/GposEngine.h"

#include "layout/LayoutCall.h"
#include "layout/TTI_LookupList.h"

#include <KWFontService17/GlyphIDPosition.h>

namespace KWFontService_NS {

bool positionAt(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                std::vector<GlyphIDPosition>& positions, int& index, bool rtl) {
    const auto place = static_cast<std::size_t>(index);
    if (index < 0 || place >= positions.size())
        return false;
    const unsigned short gid = positions[place].getGlyphID();
    if (!lookup.mayApply(gid))
        return false;
    for (const TTI_SubTablePtr& subtable : lookup.subtables) {
        if (!call.spend(1))
            return false;
        if (subtable && subtable->mayApply(gid) &&
            subtable->position(call, lookups, lookup, positions, index, rtl))
            return true;
    }
    return false;
}

} // namespace KWFontService_NS
