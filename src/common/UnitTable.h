#pragma once

#include "KWCommon15/KWUnitType.h"

#include <optional>
#include <string_view>

namespace KWCommonNS {

/// The unit of a lower-case or mixed-case CSS unit text; empty when the text is no known unit.
std::optional<KWUnitType> findUnit(std::u16string_view text);

/// The CSS text of a number's unit, lower-case; empty for plain numbers and the sorts of text.
std::u16string_view unitText(KWUnitType unit);

/// A number in another unit; empty when no fixed ratio leads from one to the other.
std::optional<double> convertUnit(double value, KWUnitType from, KWUnitType to);

} // namespace KWCommonNS
