#include "layout/GposContext.h"

#include "layout/GlyphPlacement.h"
#include "layout/GposEngine.h"
#include "layout/LayoutCall.h"
#include "layout/TTI_ContextRules.h"
#include "layout/TTI_LookupList.h"

namespace KWFontService_NS {

unsigned int contextFlag(const TTI_Lookup& lookup, const std::vector<GlyphIDPosition>& positions,
                         bool rtl) {
    return rtl && GlyphPlacement::isStrict(positions.front()) ? lookup.flag : 0;
}

bool positionInContext(const TTI_SubTable& context, LayoutCall& call, const TTI_LookupList& lookups,
                       const TTI_Lookup& lookup, std::vector<GlyphIDPosition>& positions,
                       int& index, bool rtl) {
    const LayoutCall::Nesting nesting(call);
    if (!nesting)
        return false;
    TTI_LookupRecords records;
    const int count = context.matchContext(call, records, call.runOf(positions), index,
                                           contextFlag(lookup, positions, rtl), call.passedOver());
    bool applied = false;
    for (int i = 0; i < count && call.spend(1); ++i) {
        const TTI_Lookup* nested =
            lookups.find(records[static_cast<std::size_t>(i)].lookupListIndex);
        if (nested != nullptr && positionAt(call, lookups, *nested, positions, index, rtl))
            applied = true;
    }
    return applied;
}

} // namespace KWFontService_NS
