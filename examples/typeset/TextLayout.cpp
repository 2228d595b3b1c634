#include "TextLayout.h"

#include "LineSetter.h"
#include "Progress.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace typeset {

namespace {

// ISO A4, with margins that give the body text lines of some seventy letters.
constexpr double kPageWidth = 595.276;
constexpr double kPageHeight = 841.89;
constexpr double kSideMargin = 80;
constexpr double kTopMargin = 76;
constexpr double kBottomMargin = 84;
constexpr double kFooterBaseline = kPageHeight - 48;
constexpr double kLineWidth = kPageWidth - 2 * kSideMargin;

/// Columns in sizes of their text: their height where there is room, the least that is worth to
/// start on a page, and what lies between their middles.
constexpr double kColumnHeight = 20;
constexpr double kLeastColumnHeight = 10;
constexpr double kColumnLeading = 1.75;
/// What lies above them, in sizes of the body text.
constexpr double kAboveColumns = 1.75;

/// All lengths but `scale` in sizes of the body text.
struct Style {
    double scale;
    double leading;
    double before;
    double after;
    bool justified;
    std::size_t font;
};

class Layouter {
public:
    Layouter(const FontSet& fonts, const LayoutStyle& style)
        : fonts_(fonts), style_(style), shaper_(fonts) {
        layout_.pageWidth = kPageWidth;
        layout_.pageHeight = kPageHeight;
        layout_.size = style.size;
    }

    void add(const Block& block);
    Layout finish();

private:
    Style styleOf(const Block& block) const;
    Paragraph shape(const Block& block, std::size_t font, bool columns);
    void addLines(const Paragraph& paragraph, const Style& style, bool isHeading);
    void addColumns(const Paragraph& paragraph, const Style& style);
    void addPageNumber(std::size_t page);
    void nextBaseline(double advance, double room, double size);
    void put(Line line);

    const FontSet& fonts_;
    const LayoutStyle& style_;
    ParagraphShaper shaper_;
    Layout layout_;
    double baseline_ = 0;
};

Style Layouter::styleOf(const Block& block) const {
    switch (block.kind) {
    case BlockKind::title:
        return {2.3, 2.75, 2, 0.8, false, fonts_.headings};
    case BlockKind::heading:
        return {1.3, 1.65, 1.25, 0, false, fonts_.headings};
    case BlockKind::paragraph:
        break;
    }
    const double scale = block.style.scale;
    return {scale, 1.5 * scale, 0.55, 0.4 * (scale - 1), style_.justified, 0};
}

Paragraph Layouter::shape(const Block& block, std::size_t font, bool columns) {
    ParagraphStyle style;
    style.font = font;
    style.columns = columns;
    style.language = block.style.language != 0 ? block.style.language : style_.language;
    style.plan = style_.plan.with(block.style.features);
    Paragraph paragraph = shaper_.shape(block.text, style);
    for (const char32_t character : paragraph.missing)
        ++layout_.missing[{font, character}];
    return paragraph;
}

/// Moves down, or to a new page when there is no room for `room` more below.
void Layouter::nextBaseline(double advance, double room, double size) {
    if (layout_.pages.empty() || baseline_ + advance + room > kPageHeight - kBottomMargin) {
        layout_.pages.emplace_back();
        baseline_ = kTopMargin + size;
    } else {
        baseline_ += advance;
    }
}

void Layouter::put(Line line) {
    if (!line.spans.empty())
        layout_.pages.back().lines.push_back(std::move(line));
}

void Layouter::addLines(const Paragraph& paragraph, const Style& style, bool isHeading) {
    const double size = layout_.size;
    const double textSize = size * style.scale;
    const double em = textSize * fonts_[style.font].sizeAdjust;
    const std::vector<std::size_t> ends =
        breakLines(paragraph.boxes, kLineWidth * 1000 / em, style.justified);
    std::size_t begin = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        // No line of a paragraph stands alone on a page, and no heading without text below it.
        const bool last = i + 1 == ends.size();
        const bool keepsNext = !last && (i == 0 || i + 2 == ends.size());
        double room = keepsNext ? style.leading * size : 0;
        if (isHeading)
            room = (static_cast<double>(ends.size() - 1 - i) * style.leading + 4) * size;
        nextBaseline((style.leading + (i == 0 ? style.before : 0)) * size, room, em);
        put(setLine(
            paragraph, fonts_, begin, ends[i],
            {style.font, textSize, kSideMargin, baseline_, kLineWidth, style.justified && !last}));
        begin = ends[i];
    }
    baseline_ += style.after * size;
}

/// Sets columns from the right margin to the left one, in as many rows of columns as it takes.
void Layouter::addColumns(const Paragraph& paragraph, const Style& style) {
    const double size = layout_.size * style.scale;
    const double em = size * fonts_[style.font].sizeAdjust;
    const double leading = kColumnLeading * em;
    const double above = kAboveColumns * layout_.size;
    // Whole characters in what is left of the page, or the usual height on the next one.
    const double room = layout_.pages.empty() ? 0 : kPageHeight - kBottomMargin - baseline_ - above;
    const double fitting = std::floor(room / em);
    const double count =
        fitting < kLeastColumnHeight ? kColumnHeight : std::min(fitting, kColumnHeight);
    const double height = count * em;
    const std::vector<std::size_t> ends =
        breakLines(paragraph.boxes, count * 1000, style.justified);
    double x = 0;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        x -= leading;
        if (x < kSideMargin) {
            // From the last baseline, or the end of the columns above, to the end of these.
            nextBaseline(height + above, 0, height);
            x = kPageWidth - kSideMargin - em / 2;
        }
        put(setLine(paragraph, fonts_, begin, ends[i],
                    {style.font, size, x, baseline_ - height, height,
                     style.justified && i + 1 < ends.size()}));
        begin = ends[i];
    }
}

void Layouter::add(const Block& block) {
    const Style style = styleOf(block);
    const bool isHeading = block.kind != BlockKind::paragraph;
    const bool columns = !isHeading && (style_.columns || block.style.columns);
    const Paragraph paragraph = shape(block, style.font, columns);
    if (paragraph.boxes.empty())
        return;
    if (columns)
        addColumns(paragraph, style);
    else
        addLines(paragraph, style, isHeading);
}

void Layouter::addPageNumber(std::size_t page) {
    Block block;
    block.text = icu::UnicodeString::fromUTF8(std::to_string(page + 1));
    const Paragraph number = shape(block, 0, false);
    const double size = layout_.size * 0.85;
    const std::size_t end = number.boxes.size();
    const double width =
        measureLine(number.boxes, 0, end).width * size * fonts_[0].sizeAdjust / 1000;
    layout_.pages[page].lines.push_back(
        setLine(number, fonts_, 0, end,
                {0, size, (kPageWidth - width) / 2, kFooterBaseline, width, false}));
}

Layout Layouter::finish() {
    if (layout_.pages.size() > 1) {
        for (std::size_t i = 0; i < layout_.pages.size(); ++i)
            addPageNumber(i);
    }
    return std::move(layout_);
}

} // namespace

std::size_t Layout::lineCount() const {
    std::size_t count = 0;
    for (const Page& page : pages)
        count += page.lines.size();
    return count;
}

Layout layOut(const Document& document, const FontSet& fonts, const LayoutStyle& style) {
    Progress progress("Setting the text");
    Layouter layouter(fonts, style);
    for (std::size_t i = 0; i < document.blocks.size(); ++i) {
        layouter.add(document.blocks[i]);
        progress.update(i + 1, document.blocks.size());
    }
    return layouter.finish();
}

} // namespace typeset
