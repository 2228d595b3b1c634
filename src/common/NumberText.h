#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace KWCommonNS {

/// Which spellings of a number `scanNumber` takes beyond sign, digits and a point before digits.
struct NumberGrammar {
    bool exponent = false;
    bool trailingPoint = false;
};

/// The extent of a number at the beginning of a text.
struct NumberSpan {
    std::size_t length = 0; ///< in units; 0 when there is no number
    bool isWhole = false;   ///< neither point nor exponent
};

NumberSpan scanNumber(std::u16string_view text, NumberGrammar grammar);

/// The value of a number that `scanNumber` found; beyond the range of double the largest one of its
/// sign, or 0.
double numberValue(std::u16string_view number);

/// The value of a whole number; empty when `int` does not hold it.
std::optional<int> wholeNumberValue(std::u16string_view number);

/// See `KWUtil::toString(double)`.
std::string numberText(double value);

} // namespace KWCommonNS
