#pragma once

#include "LineBreaker.h"
#include "Shaper.h"

#include <unicode/brkiter.h>

#include <memory>
#include <vector>

namespace typeset {

/// How to shape a paragraph.
struct ParagraphStyle {
    std::size_t font = 0;
    bool columns = false;
    unsigned int language = 0;
    FeaturePlan plan;
};

/// What stands between two places of a cursor: glyphs, more than one when marks are there, for
/// characters, more than one in a ligature.
struct Cluster {
    std::int32_t start = 0; // of its text
    std::int32_t limit = 0;
    std::size_t run = 0;
    std::size_t firstGlyph = 0; // of the run's
    std::size_t glyphsEnd = 0;
};

/// A text with its glyphs, as one endless line.
struct Paragraph {
    icu::UnicodeString text;
    bool rightToLeft = false;
    std::vector<TextRun> runs;
    std::vector<std::vector<KWFontService_NS::GlyphIDPosition>> glyphs; // of each run
    std::vector<Cluster> clusters;                                      // in the order of the text
    std::vector<Box> boxes;        // of the clusters; the em is that of the font of the style
    std::vector<char32_t> missing; // characters that no font has
};

class ParagraphShaper {
public:
    explicit ParagraphShaper(const FontSet& fonts);

    Paragraph shape(const icu::UnicodeString& text, const ParagraphStyle& style);

private:
    void addClusters(Paragraph& paragraph, std::size_t run) const;
    void addBoxes(Paragraph& paragraph, std::size_t font);

    const FontSet& fonts_;
    Shaper shaper_;
    std::unique_ptr<icu::BreakIterator> breaker_;
};

} // namespace typeset
