#include "layout/TTI_ChainContext.h"

#include "layout/LayoutBudget.h"
#include "layout/RunWalk.h"
#include "layout/TTI_ClassDef.h"

namespace KWFontService_NS {

namespace {

constexpr std::size_t kRuleSetCountField = 4;   // format 1
constexpr std::size_t kBacktrackClassField = 4; // format 2
constexpr std::size_t kInputClassField = 6;     // format 2
constexpr std::size_t kLookaheadClassField = 8; // format 2
constexpr std::size_t kClassSetCountField = 10; // format 2
constexpr std::size_t kFormat3Arrays = 2;       // format 3

/// Reads the rule of format 3. In one expression, since a rule that is emptied before it is filled
/// costs as much again, and fonts for Arabic read ten for a glyph.
TTI_ChainContextFormat3::Rule readRule(KWCommonNS::ByteView table, SequentialArrays& arrays) {
    return {.backtrack = {table, arrays.countedNumbers()},
            .input = {table, arrays.countedNumbers()},
            .lookahead = {table, arrays.countedNumbers()},
            .records = arrays.records(arrays.count())};
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

int TTI_ChainContextFormat2::backtrackClassOf(unsigned short gid, GlyphMemo* memo) const {
    return classByDefinition(table(), kBacktrackClassField, gid, memo);
}

int TTI_ChainContextFormat2::inputClassOf(unsigned short gid, GlyphMemo* memo) const {
    return classByDefinition(table(), kInputClassField, gid, memo);
}

int TTI_ChainContextFormat2::lookaheadClassOf(unsigned short gid, GlyphMemo* memo) const {
    return classByDefinition(table(), kLookaheadClassField, gid, memo);
}

TTI_ChainContextRuleSets TTI_ChainContextFormat2::ruleSets() const {
    return {table(), kClassSetCountField};
}

int TTI_ChainContextFormat2::matchContext(LayoutCall& call, TTI_LookupRecords& records,
                                          const GlyphIDArray& run, int position,
                                          unsigned int lookupFlag,
                                          std::vector<int>& skipped) const {
    const unsigned short gid = run[position].getGlyphID();
    GlyphMemo* const memo = &call.memo();
    if (coverageIndex(gid, memo) < 0)
        return 0;
    const auto nothing = [](int) {};
    const TTI_ChainContextRuleSet rules = ruleSets()[inputClassOf(gid, memo)];
    skipped.clear();
    const PassedList passed(skipped, run);
    for (std::size_t i = 0; i < rules.size() && call.spend(1); ++i) {
        const auto rule = rules[i];
        if (!rule)
            continue;
        RunWalk input(call, run, lookupFlag, position, RunWalk::Direction::Forward);
        RunWalk back(call, run, lookupFlag, position, RunWalk::Direction::Backward);
        // Deliberately from the first glyph on, also where the input has more.
        RunWalk ahead(call, run, lookupFlag, position, RunWalk::Direction::Forward);
        // What a rule passed over deliberately stays listed when the rule does not match.
        if (!matches(
                rule->input, input, [&](unsigned short next) { return inputClassOf(next, memo); },
                passed) ||
            !matches(
                rule->backtrack, back,
                [&](unsigned short next) { return backtrackClassOf(next, memo); }, nothing) ||
            !matches(
                rule->lookahead, ahead,
                [&](unsigned short next) { return lookaheadClassOf(next, memo); }, nothing))
            continue;
        records = rule->records;
        return static_cast<int>(records.size());
    }
    return 0;
}

bool TTI_ChainContextFormat3::read(LayoutBudget& budget) {
    SequentialArrays arrays(table(), kFormat3Arrays);
    const Rule rule = readRule(table(), arrays);
    if (!arrays.whole())
        return false;
    if (rule.input.size() != 0)
        return digestCoverage(budget, rule.input.table(0));
    applyEverywhere();
    return true;
}

int TTI_ChainContextFormat3::matchContext(LayoutCall& call, TTI_LookupRecords& records,
                                          const GlyphIDArray& run, int position,
                                          unsigned int lookupFlag, std::vector<int>&) const {
    // Most rules fail at their first or second glyph, and no more of them is read than it takes.
    SequentialArrays arrays(table(), kFormat3Arrays);
    const TTI_CoverageList backtrack(table(), arrays.countedNumbers());
    const TTI_CoverageList input(table(), arrays.countedNumbers());
    // The first glyph counts whatever the lookup flag says.
    if (input.size() != 0 && !input.covers(0, run[position].getGlyphID(), &call.memo()))
        return 0;
    const TTI_CoverageList lookahead(table(), arrays.countedNumbers());
    const auto place = static_cast<std::size_t>(position);
    if (backtrack.size() > place ||
        place + input.size() + lookahead.size() > static_cast<std::size_t>(run.size()))
        return 0;
    RunWalk ahead(call, run, lookupFlag, position, RunWalk::Direction::Forward);
    if (!covers(input, ahead, 1))
        return 0;
    // A rule without input looks ahead from its first glyph on.
    if (input.size() == 0)
        ahead = RunWalk(call, run, lookupFlag, position - 1, RunWalk::Direction::Forward);
    RunWalk back(call, run, lookupFlag, position, RunWalk::Direction::Backward);
    if (!covers(lookahead, ahead) || !covers(backtrack, back))
        return 0;
    records = arrays.records(arrays.count());
    return records.size() != 0 ? static_cast<int>(records.size()) : -1;
}

bool TTI_ChainContextFormat3::startsWith(unsigned short gid) const {
    const TTI_CoverageList input = rule().input;
    return input.size() == 0 || input.covers(0, gid);
}

bool TTI_ChainContextFormat3::mayGoOnWith(unsigned short gid) const {
    const Rule context = rule();
    if (context.input.size() > 1)
        return context.input.covers(1, gid);
    return context.input.size() == 0 || context.lookahead.size() == 0 ||
           context.lookahead.covers(0, gid);
}

TTI_ChainContextFormat3::Rule TTI_ChainContextFormat3::rule() const {
    SequentialArrays arrays(table(), kFormat3Arrays);
    return readRule(table(), arrays);
}

} // namespace KWFontService_NS
