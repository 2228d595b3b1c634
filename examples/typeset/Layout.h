#pragma once

#include <cstddef>
#include <map>
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
    std::map<char32_t, std::size_t> missing; // characters that the font lacks, and how often

    std::size_t lineCount() const;
};

} // namespace typeset
