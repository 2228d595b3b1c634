#pragma once

#include "LayoutModel.h"

#include <vector>

namespace KWTest::oracle {

/// A glyph of a run.
struct Slot {
    Glyph glyph = kNone;
    int glyphClass = -1;

    bool operator==(const Slot&) const = default;
};
using Run = std::vector<Slot>;

/// Whether a lookup with this flag passes over a glyph.
bool isPassedOver(const Font& font, int flag, const Slot& slot);

/// What a context says of a place of a run.
struct Match {
    int result = 0; // the number of records; 0: no match; -1: a match without records
    std::vector<Record> records{};
    std::vector<int> skipped{}; // indices passed over, as far as they are recorded
};
Match matchContext(const Font& font, const SubTable& subtable, const Run& run, int position,
                   int flag);

/// The substitute of a glyph by reverse chaining, kNone without one.
Glyph substituteReverse(const Font& font, const SubTable& subtable, const Run& run, int index,
                        int flag);

} // namespace KWTest::oracle
