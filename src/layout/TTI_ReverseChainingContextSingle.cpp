#include "layout/TTI_ReverseChainingContextSingle.h"

#include "layout/RunWalk.h"
#include "layout/TTI_ContextRules.h"

#include <KWFontService17/FS_Types.h>

namespace KWFontService_NS {

namespace {

constexpr std::size_t kArrays = 4;

/// False when the table does not hold it whole.
bool readRule(KWCommonNS::ByteView table, TTI_ReverseChainingContextSingleFormat1::Rule& rule) {
    SequentialArrays arrays(table, kArrays);
    rule.backtrack = {table, arrays.countedNumbers()};
    rule.lookahead = {table, arrays.countedNumbers()};
    rule.substitutes = arrays.countedNumbers();
    return arrays.whole();
}

} // namespace

bool TTI_ReverseChainingContextSingleFormat1::read(LayoutBudget& budget) {
    Rule rule;
    return readRule(table(), rule) && digestCoverage(budget);
}

TTI_ReverseChainingContextSingleFormat1::Rule
TTI_ReverseChainingContextSingleFormat1::rule() const {
    Rule rule;
    readRule(table(), rule);
    return rule;
}

unsigned short TTI_ReverseChainingContextSingleFormat1::substituteOf(unsigned short gid) const {
    const int index = coverageIndex(gid);
    if (index < 0)
        return FS_NO_GLYPH;
    const U16List substitutes = rule().substitutes;
    const auto place = static_cast<std::size_t>(index);
    return place < substitutes.size() ? substitutes[place] : FS_NO_GLYPH;
}

unsigned short TTI_ReverseChainingContextSingleFormat1::substituteReverse(
    LayoutCall& call, const GlyphIDArray& run, int index, unsigned int lookupFlag) const {
    const unsigned short substitute = substituteOf(run[index].getGlyphID());
    if (substitute == FS_NO_GLYPH)
        return FS_NO_GLYPH;
    const Rule context = rule();
    const auto place = static_cast<std::size_t>(index);
    if (context.backtrack.size() > place ||
        place + context.lookahead.size() >= static_cast<std::size_t>(run.size()))
        return FS_NO_GLYPH;
    RunWalk back(call, run, lookupFlag, index, RunWalk::Direction::Backward);
    RunWalk ahead(call, run, lookupFlag, index, RunWalk::Direction::Forward);
    return covers(context.backtrack, back) && covers(context.lookahead, ahead) ? substitute
                                                                               : FS_NO_GLYPH;
}

} // namespace KWFontService_NS
