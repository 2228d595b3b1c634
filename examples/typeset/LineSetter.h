#pragma once

#include "Paragraph.h"

namespace typeset {

/// Where a line or a column goes.
struct LineFrame {
    std::size_t font = 0; // whose em the boxes are measured in
    double size = 0;      // of the text, before what the configuration asks of fonts
    double x = 0;         // left end of a line; middle of a column
    double y = 0;         // baseline of a line; upper end of a column
    double measure = 0;   // points from end to end
    bool justified = false;
};

/// Puts the clusters of a line in their visual order and gives every glyph its place. Blanks at the
/// end hang over and are left out.
Line setLine(const Paragraph& paragraph, const FontSet& fonts, std::size_t begin, std::size_t end,
             const LineFrame& frame);

} // namespace typeset
