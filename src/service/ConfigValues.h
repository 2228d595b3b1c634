#pragma once

#include <KWFontService17/FS_Export.h>

#include <optional>

/// @file
/// The values that attributes of the configuration have. Nothing is answered for a text that is no
/// such value.

namespace KWFontService_NS {

/// "false" and "no", "true" and "yes", in any case.
std::optional<bool> booleanOf(const UnicodeString& text);
/// "enable" or "disable".
std::optional<bool> switchOf(const UnicodeString& text);
/// "windows" is true, "typographic" is false.
std::optional<bool> metricModeOf(const UnicodeString& text);
/// True for what the grammar of values takes for "true" or "yes"; anything else is false.
bool isAffirmative(const UnicodeString& text);
std::optional<int> integerOf(const UnicodeString& text);
/// The number at the start of the text, divided by 100 when "%" follows at once. What stands behind
/// it does not count.
std::optional<float> numberOf(const UnicodeString& text);
/// The weight of a text that is no integer: 700 when it holds "bold" or "demi" in any case, else
/// 400.
int weightOfWord(const UnicodeString& text);
/// 1 to 9, as a width class counts; 0 for a text with neither "condensed" nor "expanded".
int stretchOf(const UnicodeString& text);

} // namespace KWFontService_NS
