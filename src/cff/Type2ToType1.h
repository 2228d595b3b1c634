#pragma once

#include "cff/CharString.h"
#include "cff/Type1Emitter.h"

#include <span>
#include <vector>

namespace KWFontService_NS {

/// One stem of a glyph, its edges counted from the origin.
struct CIDStemRecord {
    enum Kind { Horizontal, Vertical } kind;
    KWValue position;
    KWValue width;
};

/// Translates flattened Type 2 charstrings of one Private DICT to Type 1.
class Type2ToType1 {
public:
    /// @param defaultWidthX, nominalWidthX  of the Private DICT; null counts as 0
    Type2ToType1(const KWValue& defaultWidthX, const KWValue& nominalWidthX)
        : defaultWidthX_(defaultWidthX.getRealValue()),
          nominalWidthX_(nominalWidthX.getRealValue()) {}

    /// The Subrs 0 to 3 of every Type 1 font: flex, hint replacement.
    static std::vector<CharStringTokens> standardSubrs();

    /// One glyph. False where it has a shape that is not translated: a first operator that cannot
    /// follow a width, moves with other than their operands, `endchar` with operands (accented
    /// characters), operators that Type 1 lacks (`random`, `load`, `store`, `blend`, unknown ones).
    /// A charstring that just stops gets its `endchar`.
    /// @param tokens  as `flattenCharString` leaves them
    /// @param subrs   gets a Subr for each hint replacement; the calls count on its present size
    /// @param out     appended to
    bool convert(const CharStringTokens& tokens, std::vector<CharStringTokens>& subrs,
                 CharStringTokens& out);

private:
    double defaultWidthX_;
    double nominalWidthX_;
};

} // namespace KWFontService_NS
