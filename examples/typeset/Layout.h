#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace typeset {

// Lengths are in points, x from the left edge of the page and y down from its top.

/// How glyphs stand in their line.
enum class Writing {
    horizontal,
    sideways, ///< in a column, lying on their side with the feet to the left
    upright,  ///< in a column, one below the other
};

struct PlacedGlyph {
    unsigned short gid = 0;
    float advance = 0; // the glyph's own along x, in thousandths of an em
    double x = 0;      // of its origin, that of horizontal writing also in columns
    double y = 0;
    std::u16string text; // the characters that it stands for, none for the second part of one
    bool joined = false; // no cursor goes between the glyph before and this one
};

/// Glyphs of one font that stand alike, in the order in which they are drawn: from left to right or
/// from top to bottom.
struct Span {
    std::size_t font = 0; // index in the fonts of the document
    double size = 0;
    Writing writing = Writing::horizontal;
    bool rightToLeft = false; // the text runs against the order of the glyphs
    std::vector<PlacedGlyph> glyphs;
};

/// A line or a column.
struct Line {
    double bottom = 0; // y of the baseline, of a column y of its end
    std::vector<Span> spans;
};

struct Page {
    std::vector<Line> lines;
};

/// Where every glyph stands. The PDF and the picture are both drawn from this.
struct Layout {
    double pageWidth = 0;
    double pageHeight = 0;
    double size = 0; // of the body text
    std::vector<Page> pages;
    // Characters that no font has, by the index of the font that should and the character, and how
    // often.
    std::map<std::pair<std::size_t, char32_t>, std::size_t> missing;

    std::size_t lineCount() const;
};

} // namespace typeset
