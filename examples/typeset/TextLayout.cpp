#include "TextLayout.h"

#include "Failure.h"
#include "LineBreaker.h"
#include "Progress.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <memory>
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

/// A metric asked for with this size comes in thousandths of an em, the unit of PDF fonts.
constexpr int kPerMille = -1000;
/// A word gap wider than this would tear the line apart; it is better left short.
constexpr double kWidestGap = 1200;

/// All lengths but `scale` in sizes of the body text.
struct Style {
    double scale;
    double leading;
    double before;
    double after;
    bool justified;
    std::size_t font;
};

Style styleOf(BlockKind kind, bool justified, std::size_t headingFont) {
    switch (kind) {
    case BlockKind::title:
        return {2.3, 2.75, 2, 0.8, false, headingFont};
    case BlockKind::heading:
        return {1.3, 1.65, 1.25, 0, false, headingFont};
    case BlockKind::paragraph:
        break;
    }
    return {1, 1.5, 0.55, 0, justified, 0};
}

class Layouter {
public:
    Layouter(const FontSet& fonts, double size) : fonts_(fonts) {
        layout_.pageWidth = kPageWidth;
        layout_.pageHeight = kPageHeight;
        layout_.size = size;
        UErrorCode status = U_ZERO_ERROR;
        breaker_.reset(icu::BreakIterator::createLineInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status))
            throw Failure(ExitCode::text, std::string("ICU's line breaks: ") + u_errorName(status));
    }

    void add(const Block& block, bool justified);
    Layout finish();

private:
    double sizeOf(const Style& style) const;
    std::vector<Box> shape(const icu::UnicodeString& text, std::size_t fontIndex);
    Line place(const std::vector<Box>& boxes, std::size_t begin, std::size_t end,
               const Style& style, bool lastLine) const;
    void nextBaseline(double advance, double room, double size);

    const FontSet& fonts_;
    std::unique_ptr<icu::BreakIterator> breaker_;
    Layout layout_;
    double baseline_ = 0;
};

double Layouter::sizeOf(const Style& style) const {
    return layout_.size * style.scale * fonts_[style.font].sizeAdjust;
}

/// One box for each character that shows, with the font's advances and kerning.
std::vector<Box> Layouter::shape(const icu::UnicodeString& text, std::size_t fontIndex) {
    const KWFontService_NS::FS_FontInfo& font = fonts_[fontIndex].info;
    std::vector<unsigned short> gids(static_cast<std::size_t>(text.countChar32()));
    int count = 0;
    if (!font.getGlyphIDs(text, gids.data(), count, false, nullptr))
        throw Failure(ExitCode::font, "the font maps no characters to glyphs");
    const bool kerned = font.hasPairKerningInfo(false);

    breaker_->setText(text);
    std::vector<Box> boxes;
    boxes.reserve(gids.size());
    std::int32_t boundary = breaker_->next();
    std::size_t n = 0;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1), ++n) {
        const UChar32 character = text.char32At(i);
        if (!u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT)) {
            Box box;
            box.gid = gids[n];
            box.character = static_cast<char32_t>(character);
            box.blank = u_charType(character) == U_SPACE_SEPARATOR;
            if (box.gid == KWFontService_NS::FS_NO_GLYPH || box.gid == 0) {
                ++layout_.missing[{fontIndex, box.character}];
                box.gid = 0; // shows the box that stands for a missing glyph
            }
            box.advance = font.getGlyphWidth(box.gid, kPerMille, false);
            if (kerned && !boxes.empty()) {
                boxes.back().kern =
                    font.getPairKerningValue(boxes.back().gid, box.gid, kPerMille, false);
            }
            boxes.push_back(box);
        }
        if (text.moveIndex32(i, 1) == boundary) {
            if (!boxes.empty())
                boxes.back().breakAfter = true;
            boundary = breaker_->next();
        }
    }
    return boxes;
}

Line Layouter::place(const std::vector<Box>& boxes, std::size_t begin, std::size_t end,
                     const Style& style, bool lastLine) const {
    Line line;
    line.font = style.font;
    line.size = sizeOf(style);
    line.baseline = baseline_ - fonts_[style.font].baselineAdjust * line.size;
    const double perMille = line.size / 1000;
    const LineExtent extent = measureLine(boxes, begin, end);

    double gap = 0;
    const double slack = (kPageWidth - 2 * kSideMargin) / perMille - extent.width;
    if (extent.gaps > 0 && (slack < 0 || (style.justified && !lastLine)))
        gap = slack / static_cast<double>(extent.gaps);
    if (gap > kWidestGap)
        gap = 0;

    double pen = 0;
    for (std::size_t i = begin; i < extent.end; ++i) {
        const Box& box = boxes[i];
        line.glyphs.push_back({box.gid, box.character, box.advance, kSideMargin + pen * perMille});
        pen += double{box.advance} + double{box.kern} + (box.blank ? gap : 0);
    }
    return line;
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

void Layouter::add(const Block& block, bool justified) {
    const Style style = styleOf(block.kind, justified, fonts_.size() - 1);
    const double size = layout_.size;
    const std::vector<Box> boxes = shape(block.text, style.font);
    const double measure = (kPageWidth - 2 * kSideMargin) * 1000 / sizeOf(style);
    const std::vector<std::size_t> ends = breakLines(boxes, measure, style.justified);

    std::size_t begin = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        // No line of a paragraph stands alone on a page, and no heading without text below it.
        const bool last = i + 1 == ends.size();
        const bool keepsNext = !last && (i == 0 || i + 2 == ends.size());
        double room = keepsNext ? style.leading * size : 0;
        if (block.kind != BlockKind::paragraph)
            room = (static_cast<double>(ends.size() - 1 - i) * style.leading + 4) * size;
        nextBaseline((style.leading + (i == 0 ? style.before : 0)) * size, room, sizeOf(style));
        Line line = place(boxes, begin, ends[i], style, last);
        if (!line.glyphs.empty())
            layout_.pages.back().lines.push_back(std::move(line));
        begin = ends[i];
    }
    baseline_ += style.after * size;
}

Layout Layouter::finish() {
    if (layout_.pages.size() > 1) {
        const Style style{0.85, 0, 0, 0, false, 0};
        baseline_ = kFooterBaseline;
        for (std::size_t i = 0; i < layout_.pages.size(); ++i) {
            const std::string number = std::to_string(i + 1);
            const std::vector<Box> boxes = shape(icu::UnicodeString::fromUTF8(number), style.font);
            Line line = place(boxes, 0, boxes.size(), style, true);
            const double width = measureLine(boxes, 0, boxes.size()).width * line.size / 1000;
            for (PlacedGlyph& glyph : line.glyphs)
                glyph.x += (kPageWidth - width) / 2 - kSideMargin;
            layout_.pages[i].lines.push_back(std::move(line));
        }
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

Layout layOut(const Document& document, const FontSet& fonts, double size, bool justified) {
    Progress progress("Setting the text");
    Layouter layouter(fonts, size);
    for (std::size_t i = 0; i < document.blocks.size(); ++i) {
        layouter.add(document.blocks[i], justified);
        progress.update(i + 1, document.blocks.size());
    }
    return layouter.finish();
}

} // namespace typeset
