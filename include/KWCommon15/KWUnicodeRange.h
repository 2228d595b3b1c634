#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWValue.h"

#include <cstdint>
#include <vector>

namespace KWCommonNS {

/// A set of code point ranges, as the CSS descriptor `unicode-range` has it.
///
/// Reading is by one thread at a time; a set that no one changes may be asked from any thread.
class KWCOMMON_API KWUnicodeRange {
public:
    /// Replaces the set by that of a value: ranges separated by commas, each "U+" (either case) and
    /// one to six hexadecimal digits, the last of which may be "?", or two such numbers without "?"
    /// and a "-" between them. White space and comments may stand around the ranges.
    ///
    /// As in CSS one bad range, an upper limit beyond 10FFFF, or limits in reverse order, make the
    /// whole value invalid.
    /// @return false, with an empty set, when the value is invalid, empty or not a string
    bool parseUnicodeRange(const KWValue& value);

    /// True when `ch` is in the set.
    bool inRange(int ch) const;

    /// True when the set has no range.
    bool isEmpty() const { return ranges_.empty(); }

private:
    struct Range {
        std::int32_t first;
        std::int32_t last;
    };

    static bool readRange(const UnicodeString& token, Range& range);
    void mergeRanges();

    /// In ascending order, neither overlapping nor touching.
    std::vector<Range> ranges_;
};

} // namespace KWCommonNS
