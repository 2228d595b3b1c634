#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace typeset {

// Lengths are in points, x from the left edge of the page and y down from its top.

struct PlacedGlyph {
    unsigned short gid = 0;
    char32_t character = 0;
    float advance = 0; // the glyph's own, in thousandths of an em
    double x = 0;
};

struct Line {
    std::size_t font = 0; // index in the fonts of the document
    double baseline = 0;
    double size = 0;
    std::vector<PlacedGlyph> glyphs; // never empty
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
    // Characters that a font lacks, by its index and the character, and how often.
    std::map<std::pair<std::size_t, char32_t>, std::size_t> missing;

    std::size_t lineCount() const;
};

} // namespace typeset
