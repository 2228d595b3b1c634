#include "layout/GsubContext.h"

#include "layout/GsubLookup.h"
#include "layout/LayoutCall.h"
#include "layout/RunWalk.h"
#include "layout/SubTableFilter.h"
#include "layout/TTI_ContextRules.h"
#include "layout/TTI_LookupList.h"

#include <algorithm>
#include <utility>

namespace KWFontService_NS {

void ContextOutput::copy(const GlyphIDArray& run, int start) {
    run_ = &run;
    headStart_ = 0;
    headEnd_ = start;
    made_.clear();
    next_ = start;
}

const GlyphIDClassPair& ContextOutput::operator[](int index) const {
    if (index < head())
        return (*run_)[headStart_ + index];
    index -= head();
    return index < made() ? made_[static_cast<std::size_t>(index)]
                          : (*run_)[next_ + index - made()];
}

std::size_t ContextOutput::movesFor(int index) const {
    const int unmade = index < head() ? head() - index : index - head() + 1 - made();
    return static_cast<std::size_t>(made() + std::max(unmade, 0));
}

std::optional<std::size_t> ContextOutput::make(int index) {
    if (index < 0 || index >= size())
        return std::nullopt;
    if (index < head()) {
        made_.insert(made_.begin(), run_->begin() + headStart_ + index, run_->begin() + headEnd_);
        headEnd_ = headStart_ + index;
    }
    if (const int missing = index - head() + 1 - made(); missing > 0) {
        made_.insert(made_.end(), run_->begin() + next_, run_->begin() + next_ + missing);
        next_ += missing;
    }
    return static_cast<std::size_t>(index - head());
}

void ContextOutput::set(int index, const GlyphIDClassPair& glyph) {
    if (const auto place = make(index))
        made_[*place] = glyph;
}

void ContextOutput::insertAfter(int index, std::span<const GlyphIDClassPair> glyphs) {
    if (const auto place = make(index))
        made_.insert(made_.begin() + static_cast<std::ptrdiff_t>(*place) + 1, glyphs.begin(),
                     glyphs.end());
}

void ContextOutput::cut(int count) {
    const int fromHead = std::min(count, head());
    headStart_ += fromHead;
    const int fromMade = std::min(count - fromHead, made());
    made_.erase(made_.begin(), made_.begin() + fromMade);
    next_ += std::min(count - fromHead - fromMade, rest());
}

int GsubContext::apply(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position,
                       std::vector<int>& skipped) {
    const LayoutCall::Nesting nesting(call_);
    const unsigned short gid = run[position].getGlyphID();
    if (!nesting || !lookup.mayApply(gid))
        return 0;

    std::vector<int> passed = std::exchange(spare_, {});
    TTI_LookupRecords records;
    int matched = 0;
    SubTableFilter filter(lookup, call_);
    if (SubTableFilter::isWorthIt(lookup, call_.memo())) {
        filter.startAt(gid);
        RunWalk next(call_, run, lookup.flag, position, RunWalk::Direction::Forward);
        if (next.next())
            filter.followWith(next.gid());
    }
    const std::size_t size = lookup.subtables.size();
    for (std::size_t i = filter.next(); i < size && call_.spend(1); i = filter.next()) {
        const TTI_SubTablePtr& subtable = lookup.subtables[i];
        if (!subtable || !subtable->mayApply(gid))
            continue;
        passed.clear();
        matched = subtable->matchContext(call_, records, run, position, lookup.flag, passed);
        if (matched != 0)
            break;
    }
    int result = 0;
    if (matched != 0)
        output_.copy(run, position);
    if (matched > 0) {
        const int start = position;
        int furthest = start;
        for (std::size_t i = 0; i < records.size(); ++i) {
            const TTI_LookupRecord record = records[i];
            const int first = start + record.sequenceIndex;
            int at = first;
            for (const int index : passed) {
                if (index > at)
                    break;
                ++at;
            }
            if (!call_.spendReads(static_cast<std::size_t>(at - first)))
                break;
            const TTI_Lookup* nested = lookups_.find(record.lookupListIndex);
            if (nested == nullptr || at >= run.size())
                continue;
            int end = at;
            const int count = applyNested(*nested, run, end, skipped);
            if (count > 0) {
                result = std::max(result, count + at - start);
                furthest = std::max(furthest, end);
            }
        }
        // A context within this one has cut the output already; it is deliberately cut again, and
        // may come to hold less than what was counted.
        output_.cut(start);
        result = std::min(result, output_.size());
        position = result > 0 ? furthest : start;
    }
    spare_ = std::move(passed);
    return result;
}

int GsubContext::applyNested(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position,
                             std::vector<int>& skipped) {
    const unsigned short gid = run[position].getGlyphID();
    switch (lookup.type) {
    case kGsubSingle:
        return replace(findSingle(call_, lookup, gid), position);
    case kGsubMultiple:
        return replaceBySequence(lookup, run, position);
    case kGsubAlternate:
        return replace(findAlternate(call_, lookup, gid, 1), position);
    case kGsubLigature:
        return replaceByLigature(lookup, run, position, skipped);
    case kGsubContext:
    case kGsubChainContext:
        return apply(lookup, run, position, skipped) > 0 ? 1 : 0;
    default:
        return 0;
    }
}

int GsubContext::replace(unsigned short gid, int& position) {
    if (gid == FS_NO_GLYPH || !call_.spendMoves(output_.movesFor(position)))
        return 0;
    output_.set(position++, call_.glyph(gid));
    return 1;
}

int GsubContext::replaceBySequence(const TTI_Lookup& lookup, const GlyphIDArray& run,
                                   int& position) {
    const auto sequence = findSequence(call_, lookup, run[position].getGlyphID());
    // Of an empty sequence nothing could be counted, so that the glyph would stay in the run.
    if (!sequence || sequence->empty() ||
        !call_.mayGrowTo(static_cast<std::size_t>(output_.size()) + sequence->size()) ||
        !call_.spend(sequence->size()) || !call_.spendMoves(output_.movesFor(position)))
        return 0;
    sequence_.clear();
    for (const std::uint16_t gid : *sequence)
        sequence_.push_back(call_.glyph(gid));
    output_.set(position, sequence_.front());
    output_.insertAfter(position, std::span(sequence_).subspan(1));
    ++position;
    return static_cast<int>(sequence_.size());
}

int GsubContext::replaceByLigature(const TTI_Lookup& lookup, const GlyphIDArray& run, int& position,
                                   std::vector<int>& skipped) {
    const int first = position;
    const unsigned short ligature = findLigature(call_, lookup, run, position, skipped);
    // The way to the last component is paid for.
    if (ligature == FS_NO_GLYPH || !call_.spendMoves(output_.movesFor(first)))
        return 0;
    output_.set(first, call_.glyph(ligature));
    for (int i = first + 1; i < position; ++i)
        output_.set(i, {});
    return 1;
}

} // namespace KWFontService_NS
