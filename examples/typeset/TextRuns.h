#pragma once

#include "FontSet.h"
#include "Layout.h"

#include <unicode/ubidi.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <cstddef>
#include <vector>

namespace typeset {

/// A piece of text that is shaped at once: of one script, direction and font.
struct TextRun {
    std::int32_t start = 0; // in UTF-16 units
    std::int32_t limit = 0;
    UScriptCode script = USCRIPT_COMMON; // common only where the whole text is
    UBiDiLevel level = 0;                // odd: from right to left
    std::size_t font = 0;
    Writing writing = Writing::horizontal;

    bool rightToLeft() const { return (level & 1) != 0; }
};

struct TextRuns {
    std::vector<TextRun> runs; // in the order of the text
    bool rightToLeft = false;  // the lines start at the right edge
};

/// Takes a text apart: directions by the Unicode Bidirectional Algorithm (UAX #9), scripts by
/// UAX #24, fonts by what they have glyphs for, in columns also by UAX #50. Marks, blanks and
/// punctuation follow the letters before them where the font of those has them.
/// @param font     index of the font that is asked first
/// @param columns  vertical writing, from top to bottom alone
TextRuns splitIntoRuns(const icu::UnicodeString& text, const FontSet& fonts, std::size_t font,
                       bool columns);

} // namespace typeset
