#include "layout/TTI_Context.h"

#include "layout/LayoutBudget.h"
#include "layout/RunWalk.h"
#include "layout/TTI_ClassDef.h"

#include <algorithm>
#include <utility>

namespace KWFontService_NS {

namespace {

constexpr std::size_t kRuleSetCountField = 4;  // format 1
constexpr std::size_t kClassDefField = 4;      // format 2
constexpr std::size_t kClassSetCountField = 6; // format 2
constexpr std::size_t kGlyphCountField = 2;    // format 3
constexpr std::size_t kFormat3Arrays = 6;      // format 3

/// What reading a rule for the index takes: its offset and its header.
constexpr std::size_t kRuleReadCost = 8;

} // namespace

bool TTI_ContextFormat1::read(LayoutBudget&) {
    // Without a digest no glyph is asked for: the format never matches.
    return table().contains(kRuleSetCountField, 2) && hasCoverage();
}

TTI_ContextRuleSets TTI_ContextFormat1::ruleSets() const {
    return {table(), kRuleSetCountField};
}

bool TTI_ContextFormat2::read(LayoutBudget& budget) {
    if (!table().contains(kClassSetCountField, 2) || !digestCoverage(budget))
        return false;
    const TTI_ContextRuleSets sets = ruleSets();
    for (std::size_t i = 0; i < sets.size(); ++i) {
        const TTI_ContextRuleSet set = sets[static_cast<int>(i)];
        if (!budget.spend(kRuleReadCost + kRuleReadCost * set.size()))
            return false;
        for (std::size_t k = 0; k < set.size(); ++k) {
            const auto rule = set[k];
            if (!rule || rule->input.empty())
                continue;
            if (!budget.spend(sizeof(IndexedRule)))
                return false;
            index_.push_back({.ruleSet = static_cast<std::uint16_t>(i),
                              .nextClass = rule->input[0],
                              .rule = static_cast<std::uint16_t>(k)});
        }
    }
    std::ranges::sort(index_);
    index_.shrink_to_fit();
    return true;
}

int TTI_ContextFormat2::classOf(unsigned short gid, GlyphMemo* memo) const {
    return classByDefinition(table(), kClassDefField, gid, memo);
}

TTI_ContextRuleSets TTI_ContextFormat2::ruleSets() const {
    return {table(), kClassSetCountField};
}

std::span<const TTI_ContextFormat2::IndexedRule> TTI_ContextFormat2::rulesFor(int firstClass,
                                                                              int nextClass) const {
    const auto ranksBefore = [](const IndexedRule& rule, const std::pair<int, int>& classes) {
        return std::pair<int, int>(rule.ruleSet, rule.nextClass) < classes;
    };
    const auto first = std::lower_bound(index_.begin(), index_.end(),
                                        std::pair(firstClass, nextClass), ranksBefore);
    const auto last =
        std::lower_bound(first, index_.end(), std::pair(firstClass, nextClass + 1), ranksBefore);
    return {first, last};
}

int TTI_ContextFormat2::matchContext(LayoutCall& call, TTI_LookupRecords& records,
                                     const GlyphIDArray& run, int position, unsigned int lookupFlag,
                                     std::vector<int>& skipped) const {
    const unsigned short gid = run[position].getGlyphID();
    GlyphMemo* const memo = &call.memo();
    if (position + 1 >= run.size() || coverageIndex(gid, memo) < 0)
        return 0;
    const int firstClass = classOf(gid, memo);
    skipped.clear();
    const PassedList passed(skipped, run);
    RunWalk second(call, run, lookupFlag, position, RunWalk::Direction::Forward);
    if (!second.next())
        return 0;
    const int nextClass = classOf(second.gid(), memo);
    if (firstClass == -1 || nextClass == -1)
        return 0;
    const TTI_ContextRuleSet rules = ruleSets()[firstClass];
    for (const IndexedRule& indexed : rulesFor(firstClass, nextClass)) {
        const auto rule = rules[indexed.rule];
        if (!call.spend(1))
            return 0;
        RunWalk walk(call, run, lookupFlag, position, RunWalk::Direction::Forward);
        // What a rule passed over deliberately stays listed when the rule does not match.
        if (!rule || !matches(
                         rule->input, walk,
                         [&](unsigned short next) { return classOf(next, memo); }, passed))
            continue;
        records = rule->records;
        return static_cast<int>(records.size());
    }
    return 0;
}

bool TTI_ContextFormat3::read(LayoutBudget&) {
    SequentialArrays arrays(table(), kGlyphCountField);
    const std::size_t glyphCount = arrays.count();
    const std::size_t recordCount = arrays.count();
    arrays.numbers(glyphCount);
    arrays.records(recordCount);
    return arrays.whole();
}

TTI_CoverageList TTI_ContextFormat3::input() const {
    return {table(), U16List(table(), kFormat3Arrays, table().u16(kGlyphCountField).value_or(0))};
}

TTI_LookupRecords TTI_ContextFormat3::records() const {
    SequentialArrays arrays(table(), kGlyphCountField);
    const std::size_t glyphCount = arrays.count();
    const std::size_t recordCount = arrays.count();
    arrays.numbers(glyphCount);
    return arrays.records(recordCount);
}

} // namespace KWFontService_NS
