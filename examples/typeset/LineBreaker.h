#pragma once

#include <cstddef>
#include <vector>

namespace typeset {

/// Glyphs that stay together, on their way into a line. Widths are thousandths of an em.
struct Box {
    float advance = 0;
    float kern = 0; // added before the next box, when that stands in the same line
    bool blank = false;
    bool breakAfter = false;
};

/// What a line of boxes comes to when blanks at its end hang over.
struct LineExtent {
    std::size_t end = 0; // one past the last visible box
    double width = 0;
    std::size_t gaps = 0; // blanks inside
};
LineExtent measureLine(const std::vector<Box>& boxes, std::size_t begin, std::size_t end);

/// Chooses the line ends of a whole paragraph together, so that its lines come out as alike as they
/// can (after Knuth and Plass, "Breaking Paragraphs into Lines", 1981). A word wider than the
/// measure is cut where it reaches it.
/// @return for each line the index one past its last box
std::vector<std::size_t> breakLines(std::vector<Box> boxes, double measure, bool justified);

} // namespace typeset
