#pragma once

#include "cff/CharString.h"

namespace KWFontService_NS {

/// Stems that a flattened charstring has declared, and operands that wait for their operator.
struct FlatCounts {
    int hstems = 0;
    int vstems = 0;
    int operands = 0;
};

/// Turns a charstring into tokens without calls and arithmetic: subrs stand in their places, and
/// what arithmetic comes to stands for its operands. Behind `hintmask` and `cntrmask` come the
/// number of mask bytes and a number for each. Numbers of form 255 are reals.
///
/// What cannot be done is left out: a call of a subr that does not exist or lies beyond
/// `kMaxSubrDepth` or the budget, arithmetic on operands that are not there. `random`, `load`,
/// `store` and `blend` stay as operators.
/// @param tokens  appended to
/// @param counts  what the charstring starts and then ends with
void flattenCharString(ByteView charString, const CharStringSubrs& subrs, CharStringTokens& tokens,
                       FlatCounts& counts, CharStringBudget& budget);

} // namespace KWFontService_NS
