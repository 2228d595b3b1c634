#pragma once

#include "layout/LayoutArrays.h"
#include "layout/LayoutCall.h"
#include "layout/TTI_Coverage.h"

#include <KWFontService17/GlyphIDArray.h>

#include <cstddef>
#include <vector>

namespace KWFontService_NS {

/// Goes along a run from one glyph, past those that a lookup flag passes over, and pays for each.
class RunWalk {
public:
    enum class Direction { Backward = -1, Forward = 1 };

    /// @param from  the walk begins beside it
    RunWalk(LayoutCall& call, const GlyphIDArray& run, unsigned int lookupFlag, int from,
            Direction direction)
        : call_(&call), run_(&run), lookupFlag_(lookupFlag), index_(from),
          step_(static_cast<int>(direction)) {}

    /// Goes to the next glyph that counts. False at the end of the run, and when the work that the
    /// call may do is used up.
    bool next() {
        return next([](int) {});
    }
    /// @param passed  told the index of each glyph that is passed over
    template <class Passed>
    bool next(Passed passed) {
        for (;;) {
            index_ += step_;
            if (index_ < 0 || index_ >= run_->size() || !call_->spend(1))
                return false;
            if (!call_->passesOver(lookupFlag_, (*run_)[index_]))
                return true;
            passed(index_);
        }
    }

    LayoutCall& call() const { return *call_; }
    int index() const { return index_; }
    unsigned short gid() const { return (*run_)[index_].getGlyphID(); }

private:
    LayoutCall* call_;
    const GlyphIDArray* run_;
    unsigned int lookupFlag_;
    int index_;
    int step_;
};

/// True when the next glyphs of a walk are the wanted ones, by what `numberOf` makes of a glyph:
/// its class, or the glyph id itself.
/// @param passed  told the index of each glyph that is passed over, also where the answer is false
template <class NumberOf, class Passed>
bool matches(const U16List& wanted, RunWalk& walk, NumberOf numberOf, Passed passed) {
    for (const std::uint16_t number : wanted) {
        if (!walk.next(passed) || numberOf(walk.gid()) != number)
            return false;
    }
    return true;
}

/// Lists the glyphs that the rules of a context pass over, those of rules that do not match in the
/// end among them. A record counts past none beyond as many as the run has, wherever it starts, so
/// that no more are listed.
class PassedList {
public:
    PassedList(std::vector<int>& list, const GlyphIDArray& run)
        : list_(list), most_(static_cast<std::size_t>(run.size())) {}

    void operator()(int index) const {
        if (list_.size() < most_)
            list_.push_back(index);
    }

private:
    std::vector<int>& list_;
    std::size_t most_;
};

/// True when the next glyphs of a walk are covered, one by each coverage.
/// @param first  the coverage to begin with
inline bool covers(const TTI_CoverageList& coverages, RunWalk& walk, std::size_t first = 0) {
    for (std::size_t i = first; i < coverages.size(); ++i) {
        if (!walk.next() || !coverages.covers(i, walk.gid(), &walk.call().memo()))
            return false;
    }
    return true;
}

} // namespace KWFontService_NS
