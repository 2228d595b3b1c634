#pragma once

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <vector>

namespace typeset {

/// Which form each letter of a text takes where letters join, as in Arabic: initial, medial, final
/// or isolated (`U_DT_INITIAL` ...), and `U_DT_NONE` for what has one form alone. By index of its
/// first UTF-16 unit. Source: Unicode Standard, 9.2, and the property Joining_Type.
std::vector<UDecompositionType> joiningForms(const icu::UnicodeString& text);

// Forms by their two sides.
bool joinsBefore(UDecompositionType form);
bool joinsAfter(UDecompositionType form);
/// The form of a ligature of letters, from those of its first and its last.
UDecompositionType formOfLigature(UDecompositionType first, UDecompositionType last);

} // namespace typeset
