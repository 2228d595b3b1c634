#pragma once

#include "Bytes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KWTest {

/// A CFF INDEX of these objects, with one-byte or wider offsets as their size asks.
Bytes cffIndex(const std::vector<Bytes>& objects);

/// A DICT operand in the five-byte form, the only one whose size does not depend on its value.
Bytes cffInteger(std::int32_t value);

/// A Type 2 charstring: width difference from `nominalWidthX`, a filled rectangle, `endchar`. A box
/// without extent is a blank glyph.
Bytes rectangleCharstring(int widthDifference, int xMin, int yMin, int xMax, int yMax);

/// A minimal name-keyed `CFF ` (Adobe Technical Note 5176): charset format 0, standard encoding,
/// every glyph name but `.notdef` in the String INDEX, one Private DICT without subrs.
struct Cff {
    struct Glyph {
        std::string name{};
        Bytes charstring{};
    };

    std::string fontName = "KWTest-Regular";
    std::vector<Glyph> glyphs{}; // the first is .notdef
    int defaultWidthX = 500;
    int nominalWidthX = 500;

    Bytes build() const;
};

} // namespace KWTest
