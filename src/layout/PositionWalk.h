#pragma once

#include "layout/LayoutCall.h"

#include <KWFontService17/GlyphIDPosition.h>

#include <cstddef>
#include <vector>

namespace KWFontService_NS {

/// Index of the nearest position that `counts`, from `from` on in steps of `step`, which is 1 or
/// -1. -1 when there is none, and when the work that the call may do is used up.
template <class Counts>
int nearestPosition(LayoutCall& call, const std::vector<GlyphIDPosition>& positions, int from,
                    int step, Counts counts) {
    // An index below 0 wraps to one past the end.
    for (auto i = static_cast<std::size_t>(from); i < positions.size() && call.spend(1);
         i += static_cast<std::size_t>(step)) {
        if (counts(positions[i]))
            return static_cast<int>(i);
    }
    return -1;
}

} // namespace KWFontService_NS
