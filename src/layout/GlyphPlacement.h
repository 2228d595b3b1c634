#pragma once

#include <KWFontService17/GlyphIDPosition.h>

#include <limits>

namespace KWFontService_NS {

/// How `GPOS` reaches a positioned glyph. Amounts are font units, x to the right and y downwards,
/// so y comes from the font with its sign changed. Sums keep their low 16 bits.
///
/// Either operation first takes back positions that were set from outside
/// (`GLYPH_FLAG_OUTSIDE_GPOS`), even when every amount is absent.
class GlyphPlacement {
public:
    /// True for a glyph in strict mode.
    static bool isStrict(const GlyphIDPosition& glyph) {
        return (glyph.getFlag() & GLYPH_FLAG_LOOKUP_SKIP) != 0;
    }

    /// An amount that is absent.
    static constexpr int kAbsent = std::numeric_limits<int>::min();

    /// Adds a value record: x1 and y move the glyph and not the pen after it, x2 and y2 change the
    /// advances.
    static void addValue(GlyphIDPosition& glyph, int x1, int y, int x2, int y2) {
        glyph.addPosition2(x1, y, x2, y2);
    }
    /// Attaches the glyph at x1 and y. In strict mode (`GLYPH_FLAG_LOOKUP_SKIP`) this replaces the
    /// glyph's position, otherwise it adds to it.
    static void attach(GlyphIDPosition& glyph, int x1, int y, int x2 = kAbsent, int y2 = kAbsent) {
        glyph.addPosition(x1, y, x2, y2);
    }
};

} // namespace KWFontService_NS
