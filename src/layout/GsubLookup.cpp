#include "layout/GsubLookup.h"

#include "layout/GSUB_MultipleSubst.h"
#include "layout/LayoutCall.h"
#include "layout/TTI_LookupList.h"

namespace KWFontService_NS {

namespace {

/// The first answer of a subtable that is a glyph.
template <class Ask>
unsigned short firstGlyph(LayoutCall& call, const TTI_Lookup& lookup, unsigned short gid, Ask ask) {
    if (!lookup.mayApply(gid))
        return FS_NO_GLYPH;
    for (const TTI_SubTablePtr& subtable : lookup.subtables) {
        if (!call.spend(1))
            break;
        if (!subtable || !subtable->mayApply(gid))
            continue;
        const unsigned short found = ask(*subtable);
        if (found != FS_NO_GLYPH)
            return found;
    }
    return FS_NO_GLYPH;
}

} // namespace

unsigned short findSingle(LayoutCall& call, const TTI_Lookup& lookup, unsigned short gid) {
    return firstGlyph(call, lookup, gid, [gid](const TTI_SubTable& subtable) {
        return subtable.substituteSingle(gid);
    });
}

unsigned short findAlternate(LayoutCall& call, const TTI_Lookup& lookup, unsigned short gid,
                             int alternate) {
    return firstGlyph(call, lookup, gid, [gid, alternate](const TTI_SubTable& subtable) {
        return subtable.substituteAlternate(gid, alternate);
    });
}

std::optional<U16List> findSequence(LayoutCall& call, const TTI_Lookup& lookup,
                                    unsigned short gid) {
    if (!lookup.mayApply(gid))
        return std::nullopt;
    for (const TTI_SubTablePtr& subtable : lookup.subtables) {
        if (!call.spend(1))
            break;
        // Extensions may have brought subtables of other types into the lookup.
        if (!subtable || !subtable->mayApply(gid) || subtable->lookupType() != kGsubMultiple)
            continue;
        auto found =
            static_cast<const GSUB_MultipleSubstFormat1&>(*subtable).sequence(gid, &call.memo());
        if (found)
            return found;
    }
    return std::nullopt;
}

unsigned short findLigature(LayoutCall& call, const TTI_Lookup& lookup, const GlyphIDArray& run,
                            int& position, std::vector<int>& skipped) {
    return firstGlyph(call, lookup, run[position].getGlyphID(), [&](const TTI_SubTable& subtable) {
        return subtable.substituteLigature(call, run, position, lookup.flag, skipped);
    });
}

unsigned short findReverse(LayoutCall& call, const TTI_Lookup& lookup, const GlyphIDArray& run,
                           int index) {
    return firstGlyph(call, lookup, run[index].getGlyphID(), [&](const TTI_SubTable& subtable) {
        return subtable.substituteReverse(call, run, index, lookup.flag);
    });
}

} // namespace KWFontService_NS
