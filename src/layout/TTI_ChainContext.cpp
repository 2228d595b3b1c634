#include "layout/TTI_ChainContext.h"

#include "layout/LayoutBudget.h"
#include "layout/TTI_ClassDef.h"

namespace KWFontService_NS {

namespace {

constexpr std::size_t kRuleSetCountField = 4;   // format 1
constexpr std::size_t kBacktrackClassField = 4; // format 2
constexpr std::size_t kInputClassField = 6;     // format 2
constexpr std::size_t kLookaheadClassField = 8; // format 2
constexpr std::size_t kClassSetCountField = 10; // format 2
constexpr std::size_t kFormat3Arrays = 2;       // format 3

/// Reads the rule of format 3; false when the table does not hold it whole.
bool readRule(KWCommonNS::ByteView table, TTI_ChainContextFormat3::Rule& rule) {
    SequentialArrays arrays(table, kFormat3Arrays);
    rule.backtrack = {table, arrays.countedNumbers()};
    rule.input = {table, arrays.countedNumbers()};
    rule.lookahead = {table, arrays.countedNumbers()};
    rule.records = arrays.records(arrays.count());
    return arrays.whole();
}

} // namespace

bool TTI_ChainContextFormat1::read(LayoutBudget&) {
    // Without a digest no glyph is asked for: the format never matches.
    return table().contains(kRuleSetCountField, 2) && hasCoverage();
}

TTI_ChainContextRuleSets TTI_ChainContextFormat1::ruleSets() const {
    return {table(), kRuleSetCountField};
}

bool TTI_ChainContextFormat2::read(LayoutBudget& budget) {
    return table().contains(kClassSetCountField, 2) && digestCoverage(budget);
}

int TTI_ChainContextFormat2::backtrackClassOf(unsigned short gid) const {
    return classByDefinition(table(), kBacktrackClassField, gid);
}

int TTI_ChainContextFormat2::inputClassOf(unsigned short gid) const {
    return classByDefinition(table(), kInputClassField, gid);
}

int TTI_ChainContextFormat2::lookaheadClassOf(unsigned short gid) const {
    return classByDefinition(table(), kLookaheadClassField, gid);
}

TTI_ChainContextRuleSets TTI_ChainContextFormat2::ruleSets() const {
    return {table(), kClassSetCountField};
}

bool TTI_ChainContextFormat3::read(LayoutBudget& budget) {
    Rule rule;
    if (!readRule(table(), rule))
        return false;
    if (rule.input.size() != 0)
        return digestCoverage(budget, rule.input.table(0));
    applyEverywhere();
    return true;
}

TTI_ChainContextFormat3::Rule TTI_ChainContextFormat3::rule() const {
    Rule rule;
    readRule(table(), rule);
    return rule;
}

} // namespace KWFontService_NS
