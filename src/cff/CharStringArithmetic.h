#pragma once

#include "cff/CharString.h"

#include <array>

namespace KWFontService_NS {

/// The arithmetic, conditional and storage operators of charstrings (Adobe Technical Note 5177,
/// sections 4.4 to 4.6), on numbers at the end of a token vector.
class CharStringArithmetic {
public:
    /// True for the operators that `apply` knows: all but `random`.
    static bool has(FS_Word op);
    /// Replaces the operands by the result. Operands that are not there make it do nothing, and so
    /// do a division by 0 and a `roll` of more than `kMaxCharStringOperands`; places beyond the 32
    /// of the transient array hold 0.
    /// @param first   where the operands begin
    /// @param budget  pays for a `roll` by the numbers that it turns; does nothing beyond it
    void apply(FS_Word op, CharStringTokens& tokens, std::size_t first, CharStringBudget& budget);

private:
    std::array<KWValue, 32> transient_{};
};

} // namespace KWFontService_NS
