#pragma once

#include "cff/CFFStream.h"

#include <optional>
#include <vector>

namespace KWFontService_NS {

/// A run of glyphs whose values, SIDs or CIDs, follow each other. What the fields are depends on
/// the list that it stands in.
struct CharsetRange {
    std::uint16_t first;
    std::uint16_t last;
    std::uint16_t start; ///< what `first` stands for

    friend bool operator==(const CharsetRange&, const CharsetRange&) = default;
};

/// A charset (Adobe Technical Note 5176, section 13): formats 1 and 2 fill the two lists of ranges,
/// format 0 the list of values.
struct CFFCharset {
    std::vector<std::uint16_t> values;
    std::vector<CharsetRange> byValue; ///< {first value, last value, first glyph}, by first value
    std::vector<CharsetRange> byGlyph; ///< {first glyph, last glyph, first value}
};

/// Nothing on a short read and for an unknown format. A range that goes on past the last glyph, or
/// past the value 65535, ends there.
std::optional<CFFCharset> readCharset(CFFStream& table, std::uint64_t offset,
                                      std::uint16_t glyphCount);

/// What the list of ranges has for a value or a glyph; `missing` when no range holds it.
std::uint16_t findInRanges(const std::vector<CharsetRange>& ranges, std::uint16_t wanted,
                           std::uint16_t missing);

/// The codes of an Encoding (section 12) in the order of the file, that of glyphs from 1 on.
/// Any format but 0 reads as ranges of codes, which go on at 0 behind 255; supplements are not
/// read. Nothing on a short read.
std::optional<std::vector<std::uint8_t>> readEncoding(CFFStream& table, std::uint64_t offset);

} // namespace KWFontService_NS
