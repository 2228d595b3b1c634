#pragma once

#include "KWCommon15/KWExport.h"

namespace KWCommonNS {

/// Properties of single code points. All operations may be called from any thread.
class KWCOMMON_API KWChar {
public:
    /// The general category, as ICU numbers it (`UCharCategory`).
    /// @return 0 (unassigned) for a number that is no code point
    static int getCategory(int ch);

    /// True when a code point has no form of its own for vertical lines.
    ///
    /// That is the value R of the property Vertical_Orientation (Unicode Standard Annex #50): such
    /// a character is set sideways, by turning its horizontal glyph. Characters of value U stand
    /// upright, those of Tu and Tr have a glyph made for vertical lines; they answer false.
    /// @return false for a number that is no code point
    static bool isNoVerticalChar(int ch);
};

} // namespace KWCommonNS
