#include "layout/GposEngine.h"

#include "layout/GposContext.h"
#include "layout/LayoutCall.h"
#include "layout/RunWalk.h"
#include "layout/SubTableFilter.h"
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
    SubTableFilter filter(lookup, call);
    if (SubTableFilter::isWorthIt(lookup, call.memo())) {
        filter.startAt(gid);
        RunWalk next(call, call.runOf(positions), contextFlag(lookup, positions, rtl), index,
                     RunWalk::Direction::Forward);
        if (next.next())
            filter.followWith(next.gid());
    }
    const std::size_t size = lookup.subtables.size();
    for (std::size_t i = filter.next(); i < size && call.spend(1); i = filter.next()) {
        const TTI_SubTablePtr& subtable = lookup.subtables[i];
        if (subtable && subtable->mayApply(gid) &&
            subtable->position(call, lookups, lookup, positions, index, rtl))
            return true;
    }
    return false;
}

} // namespace KWFontService_NS
