#include "LineSetter.h"

#include <unicode/ubidi.h>

#include <algorithm>

namespace typeset {

using namespace KWFontService_NS;

namespace {

/// A word gap wider than this, in thousandths of an em, would tear the line apart; it is better
/// left short. The same for the space between the characters of a column.
constexpr double kWidestGap = 1200;
constexpr double kWidestColumnGap = 150;
/// The vertical origin of glyphs whose font does not say, in em: where fonts for Japanese place it.
constexpr double kUsualOriginY = 0.88;

/// How high above the baseline the middle of a font's em square lies, in em. In a column that lies
/// on the middle of the column.
double middleOf(const FontFile& font) {
    const double ascender = double{font.info.getTypoAscender()};
    return (ascender > 0 ? ascender : kUsualOriginY) - 0.5;
}

/// y of the origin of vertical writing, in font units.
double originOf(const FontFile& font, unsigned short gid) {
    if (const float own = font.info.getGlyphVertOriginY(gid, 0); own != 0)
        return double{own};
    if (const float usual = font.info.getDefaultVertOriginY(0); usual != 0)
        return double{usual};
    return kUsualOriginY * font.info.getUnitsPerEm();
}

class Setter {
public:
    Setter(const Paragraph& paragraph, const FontSet& fonts, const LineFrame& frame)
        : paragraph_(paragraph), fonts_(fonts), frame_(frame) {}

    Line set(std::size_t begin, std::size_t end);

private:
    bool inColumns() const { return paragraph_.runs.front().writing != Writing::horizontal; }
    std::vector<std::size_t> visualOrder(std::size_t begin, std::size_t end) const;
    void add(const Cluster& cluster);
    PlacedGlyph place(const TextRun& run, const GlyphIDPosition& glyph, double size);

    const Paragraph& paragraph_;
    const FontSet& fonts_;
    const LineFrame& frame_;
    Line line_;
    double pen_ = 0;      // points from the beginning of the line
    std::size_t run_ = 0; // of the last span
};

std::vector<std::size_t> Setter::visualOrder(std::size_t begin, std::size_t end) const {
    std::vector<UBiDiLevel> levels;
    levels.reserve(end - begin);
    for (std::size_t i = begin; i < end; ++i)
        levels.push_back(paragraph_.runs[paragraph_.clusters[i].run].level);
    std::vector<std::int32_t> map(levels.size());
    ubidi_reorderVisual(levels.data(), static_cast<std::int32_t>(levels.size()), map.data());
    std::vector<std::size_t> order;
    order.reserve(map.size());
    for (const std::int32_t i : map)
        order.push_back(begin + static_cast<std::size_t>(i));
    return order;
}

/// Places a glyph at the pen and moves the pen on.
PlacedGlyph Setter::place(const TextRun& run, const GlyphIDPosition& glyph, double size) {
    const FontFile& font = fonts_[run.font];
    const double unit = size / font.info.getUnitsPerEm();
    const bool horizontal = run.writing != Writing::upright;
    const unsigned short gid = glyph.getGlyphID();
    const double along = pen_ + glyph.getMoveX1V(horizontal) * unit;
    const double across = glyph.getMoveY1V(horizontal) * unit;
    const double raise = font.baselineAdjust * size;
    const double width = double{font.info.getGlyphWidth(gid, 0, false)};
    pen_ += glyph.getMoveXV(horizontal) * unit;

    PlacedGlyph placed;
    placed.gid = gid;
    placed.advance = font.info.getGlyphWidth(gid, -1000, false);
    switch (run.writing) {
    case Writing::horizontal:
        placed.x = frame_.x + along;
        placed.y = frame_.y + across - raise;
        break;
    case Writing::sideways:
        placed.x = frame_.x - middleOf(font) * size - across + raise;
        placed.y = frame_.y + along;
        break;
    case Writing::upright:
        // A mark has no width here; the readers put it at the right edge of what it stands over.
        placed.x = frame_.x - (glyph.getWidth() == 0 ? 0 : width / 2 * unit) + across;
        placed.y = frame_.y + along + originOf(font, gid) * unit;
        break;
    }
    return placed;
}

void Setter::add(const Cluster& cluster) {
    const TextRun& run = paragraph_.runs[cluster.run];
    const double size = frame_.size * fonts_[run.font].sizeAdjust;
    if (line_.spans.empty() || run_ != cluster.run) {
        line_.spans.push_back({run.font, size, run.writing, run.rightToLeft(), {}});
        run_ = cluster.run;
    }
    const std::vector<GlyphIDPosition>& glyphs = paragraph_.glyphs[cluster.run];
    const std::size_t count = cluster.glyphsEnd - cluster.firstGlyph;

    // What each glyph stands for; all goes to the first where a ligature and its marks mingle.
    std::vector<std::u16string> texts(count);
    std::int32_t position = cluster.start;
    bool mingled = false;
    for (std::size_t i = 0; i < count; ++i)
        mingled = mingled || glyphs[cluster.firstGlyph + i].getSkipInfo() > 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t length =
            mingled ? (i == 0 ? cluster.limit - cluster.start : 0)
                    : std::int32_t{glyphs[cluster.firstGlyph + i].getCorrespondLength()};
        const icu::UnicodeString text = paragraph_.text.tempSubString(position, length);
        texts[i].assign(text.getBuffer(), static_cast<std::size_t>(text.length()));
        position += length;
    }

    for (std::size_t n = 0; n < count; ++n) {
        const std::size_t i = run.rightToLeft() ? count - 1 - n : n;
        PlacedGlyph placed = place(run, glyphs[cluster.firstGlyph + i], size);
        placed.text = std::move(texts[i]);
        placed.joined = n > 0;
        line_.spans.back().glyphs.push_back(std::move(placed));
    }
}

Line Setter::set(std::size_t begin, std::size_t end) {
    const double perMille = frame_.size * fonts_[frame_.font].sizeAdjust / 1000;
    const LineExtent extent = measureLine(paragraph_.boxes, begin, end);
    const double slack = frame_.measure / perMille - extent.width;
    double gap = 0;       // more at every blank
    double columnGap = 0; // more at every character
    if (extent.gaps > 0 && (slack < 0 || frame_.justified))
        gap = slack / static_cast<double>(extent.gaps);
    else if (inColumns() && extent.end > begin + 1 && frame_.justified)
        columnGap = slack / static_cast<double>(extent.end - begin - 1);
    gap = gap > kWidestGap ? 0 : gap;
    columnGap = columnGap > kWidestColumnGap ? 0 : columnGap;
    if (paragraph_.rightToLeft && gap == 0)
        pen_ = std::max(0.0, slack * perMille);

    for (const std::size_t i : visualOrder(begin, extent.end)) {
        add(paragraph_.clusters[i]);
        pen_ += ((paragraph_.boxes[i].blank ? gap : 0) + columnGap) * perMille;
    }
    line_.bottom = inColumns() ? frame_.y + pen_ : frame_.y;
    return std::move(line_);
}

} // namespace

Line setLine(const Paragraph& paragraph, const FontSet& fonts, std::size_t begin, std::size_t end,
             const LineFrame& frame) {
    return Setter(paragraph, fonts, frame).set(begin, end);
}

} // namespace typeset
