#pragma once

#include "GposOracle.h"
#include "LayoutMatcher.h"
#include "LayoutModel.h"

#include "support/Rng.h"

#include <vector>

namespace KWTest::oracle {

/// A font of random lookups over few glyphs. Its tables are honest: coverage is in order, indices
/// are in range, and contexts call only lookups before them.
///
/// Scripts `arab`, `hebr` and `latn` have every feature by default, `latn` has some of them for
/// `TRK `. Every lookup has a feature of its own; further features have several.
Font randomFont(Rng& rng);

/// Glyphs that a lookup may like: what its subtables look for, mixed with others.
class RandomRuns {
public:
    /// @param others  glyphs to mix in
    RandomRuns(const Font& font, std::vector<Glyph> others, Rng& rng);

    /// Slots mostly have the class that the font gives; some have no glyph.
    Run run(const std::vector<const Lookup*>& about, int longest);
    Line line(const std::vector<const Lookup*>& about, int longest);
    /// Up to so many words, of which some mask; mostly none.
    std::vector<int> words(std::size_t longest);

private:
    Slot slotOf(Glyph glyph);

    const Font* font_;
    std::vector<Glyph> others_;
    Rng* rng_;
};

/// All glyphs that subtables speak of.
std::vector<Glyph> glyphsOf(const Font& font);

} // namespace KWTest::oracle
