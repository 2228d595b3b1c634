#pragma once

#include "cff/CharString.h"

#include <string>

namespace KWFontService_NS {

/// Appends a charstring that stands alone: what it calls stands in its place, `return` is gone, and
/// arithmetic has become the numbers that it comes to. Numbers, drawing operators, stems and masks
/// stay as they are; where there is arithmetic, or a call whose number does not stand right before
/// it, numbers are written anew in their shortest form.
///
/// A call of a subr that does not exist or lies beyond `kMaxSubrDepth` is left out with its number,
/// and so is a token that is cut off at the end of a charstring. `random`, `load`, `store` and
/// `blend` stay.
/// @param budget  bytes of charstrings to go through; once it is spent, what was appended is of no
///                use
void makeNewCharString(std::string& out, ByteView data, const CharStringSubrs& subrs,
                       CharStringBudget& budget);

} // namespace KWFontService_NS
