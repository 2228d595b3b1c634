#pragma once

#include "layout/GPOS_ChainContextPos.h"
#include "layout/GPOS_ContextPos.h"
#include "layout/GPOS_CursivePos.h"
#include "layout/GPOS_MarkBasePos.h"
#include "layout/GPOS_MarkLigPos.h"
#include "layout/GPOS_MarkMarkPos.h"
#include "layout/GPOS_PairPos.h"
#include "layout/GPOS_SinglePos.h"
#include "layout/GSUB_AlternateSubst.h"
#include "layout/GSUB_ChainContextSubst.h"
#include "layout/GSUB_ContextSubst.h"
#include "layout/GSUB_LigatureSubst.h"
#include "layout/GSUB_MultipleSubst.h"
#include "layout/GSUB_ReverseChainingContextSingle.h"
#include "layout/GSUB_SingleSubst.h"
#include "layout/TTI_LookupList.h"

#include <cstddef>
#include <span>

namespace KWTest {

/// Asks a subtable everything that it answers for a glyph, and reads what it answers. A test that
/// runs under a checker learns so that no answer reaches outside the table.
class SubTableQueries {
public:
    explicit SubTableQueries(unsigned short gid) : gid_(gid) {}

    void ask(const KWFontService_NS::TTI_SubTable& subtable);
    /// How much was read, so that the reading is not for nothing.
    std::size_t sum() const { return sum_; }

private:
    void take(const KWFontService_NS::U16List& list) {
        for (const std::uint16_t value : list)
            sum_ += value;
    }
    void take(const KWFontService_NS::TTI_LookupRecords& records) {
        for (std::size_t i = 0; i < records.size(); ++i)
            sum_ += std::size_t{records[i].sequenceIndex} + records[i].lookupListIndex;
    }
    void take(const KWFontService_NS::TTI_CoverageList& list) {
        for (std::size_t i = 0; i < list.size() && i < kMost; ++i)
            sum_ += list.covers(i, gid_) ? 1U : 0U;
    }
    void take(const KWFontService_NS::TTI_ContextRule& rule) {
        take(rule.input);
        take(rule.records);
    }
    void take(const KWFontService_NS::TTI_ChainContextRule& rule) {
        take(rule.backtrack);
        take(rule.input);
        take(rule.lookahead);
        take(rule.records);
    }
    void take(const KWFontService_NS::TTI_Device& device) { sum_ += device.deltas.size(); }
    void take(const KWFontService_NS::GPOS_Anchor& anchor) {
        sum_ += static_cast<std::size_t>(anchor.x()) + static_cast<std::size_t>(anchor.y());
    }
    void take(const KWFontService_NS::GPOS_Mark& mark) {
        sum_ += mark.markClass;
        take(mark.anchor);
    }
    void take(const KWFontService_NS::GPOS_ValueRecord& value) {
        sum_ += static_cast<std::size_t>(value.xPlacement() + value.yPlacement() +
                                         value.xAdvance() + value.yAdvance());
        for (unsigned int bit = 0x10; bit <= 0x80; bit <<= 1)
            take(value.device(bit));
    }
    void take(const KWFontService_NS::GPOS_PairValue& pair) {
        take(pair.first);
        take(pair.second);
    }
    void take(const KWFontService_NS::GPOS_AnchorMatrix& matrix) {
        for (std::size_t row = 0; row < matrix.rows() && row < kMost; ++row) {
            for (std::size_t markClass = 0; markClass < 3; ++markClass)
                take(matrix.anchor(row, markClass));
        }
    }
    template <class Value>
    void take(const std::optional<Value>& value) {
        if (value)
            take(*value);
    }
    template <class RuleSets>
    void takeRules(const RuleSets& sets) {
        for (std::size_t i = 0; i < sets.size() && i < kMost; ++i) {
            const auto set = sets[static_cast<int>(i)];
            for (std::size_t k = 0; k < set.size() && k < kMost; ++k)
                take(set[k]);
        }
    }
    template <class SubTable>
    static const SubTable* as(const KWFontService_NS::TTI_SubTable& s) {
        return dynamic_cast<const SubTable*>(&s);
    }

    static constexpr std::size_t kMost = 20;

    unsigned short gid_;
    std::size_t sum_ = 0;
};

inline void SubTableQueries::ask(const KWFontService_NS::TTI_SubTable& subtable) {
    using namespace KWFontService_NS;
    sum_ += subtable.mayApply(gid_) ? 1U : 0U;
    sum_ += subtable.substituteSingle(gid_);
    sum_ += subtable.substituteAlternate(gid_, 2);
    sum_ += static_cast<std::size_t>(subtable.lookupType());
    if (const auto* multiple = as<GSUB_MultipleSubstFormat1>(subtable))
        take(multiple->sequence(gid_));
    if (const auto* alternate = as<GSUB_AlternateSubstFormat1>(subtable))
        take(alternate->alternates(gid_));
    if (const auto* ligature = as<GSUB_LigatureSubstFormat1>(subtable)) {
        const GSUB_LigatureSet set = ligature->ligatures(gid_);
        for (std::size_t i = 0; i < set.size() && i < kMost; ++i) {
            if (const auto found = set[i]) {
                sum_ += found->glyph;
                take(found->components);
            }
        }
    }
    if (const auto* context = as<TTI_ContextFormat1>(subtable))
        takeRules(context->ruleSets());
    if (const auto* context = as<TTI_ContextFormat2>(subtable)) {
        takeRules(context->ruleSets());
        const int first = context->classOf(gid_);
        for (int next = -1; next < 4; ++next)
            sum_ += context->rulesFor(first, next).size();
    }
    if (const auto* context = as<TTI_ContextFormat3>(subtable)) {
        take(context->input());
        take(context->records());
    }
    if (const auto* chain = as<TTI_ChainContextFormat1>(subtable))
        takeRules(chain->ruleSets());
    if (const auto* chain = as<TTI_ChainContextFormat2>(subtable)) {
        takeRules(chain->ruleSets());
        sum_ += static_cast<std::size_t>(chain->backtrackClassOf(gid_) + chain->inputClassOf(gid_) +
                                         chain->lookaheadClassOf(gid_));
    }
    if (const auto* chain = as<TTI_ChainContextFormat3>(subtable)) {
        const auto rule = chain->rule();
        take(rule.backtrack);
        take(rule.input);
        take(rule.lookahead);
        take(rule.records);
    }
    if (const auto* reverse = as<TTI_ReverseChainingContextSingleFormat1>(subtable)) {
        const auto rule = reverse->rule();
        take(rule.backtrack);
        take(rule.lookahead);
        sum_ += reverse->substituteOf(gid_);
    }
    if (const auto* single = as<GPOS_SinglePosFormat1>(subtable))
        take(single->value(gid_));
    if (const auto* single = as<GPOS_SinglePosFormat2>(subtable))
        take(single->value(gid_));
    if (const auto* pair = as<GPOS_PairPosFormat1>(subtable))
        take(pair->pair(gid_, gid_));
    if (const auto* pair = as<GPOS_PairPosFormat2>(subtable)) {
        const int first = pair->class1Of(gid_);
        for (const int second : {pair->class2Of(gid_), -1, 0, 0xFFFF})
            take(pair->pair(first, second));
    }
    if (const auto* cursive = as<GPOS_CursivePosFormat1>(subtable)) {
        take(cursive->entry(gid_));
        take(cursive->exit(gid_));
    }
    if (const auto* mark = as<GPOS_MarkBasePosFormat1>(subtable)) {
        take(mark->mark(gid_));
        take(mark->base(gid_, 1));
    }
    if (const auto* mark = as<GPOS_MarkLigPosFormat1>(subtable)) {
        take(mark->mark(gid_));
        take(mark->ligature(gid_));
    }
    if (const auto* mark = as<GPOS_MarkMarkPosFormat1>(subtable)) {
        take(mark->mark(gid_));
        take(mark->mark2(gid_, 1));
    }
}

} // namespace KWTest
