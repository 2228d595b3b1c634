#include "PageContent.h"

#include "NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace typeset {

namespace {

/// Where vertical writing takes a glyph by, in thousandths of an em above its origin, and how far
/// the next one is below: what a PDF font has that says nothing (ISO 32000-1, 9.7.4.3).
constexpr double kOriginY = 880;
constexpr double kHeight = 1000;

/// A span as TJ operators: runs of codes, and between them what the pen must move, in
/// thousandths of the font size, to come to where the next glyph stands. A glyph beside the line
/// begins another one.
class SpanWriter {
public:
    SpanWriter(std::string& out, const Span& span, const PdfFont& font, double pageHeight)
        : out_(out), span_(span), font_(font), pageHeight_(pageHeight) {}

    void write();

private:
    /// A place on the page, by the way that the line runs and across it.
    struct Place {
        double along;
        double across;
    };
    Place placeOf(const PlacedGlyph& glyph) const;
    void choose(int part);
    void start(const Place& place);
    void stop();
    void show(const PlacedGlyph& glyph);
    bool readsBack(std::size_t begin, std::size_t end) const;
    std::u16string textOf(std::size_t begin, std::size_t end) const;

    std::string& out_;
    const Span& span_;
    const PdfFont& font_;
    double pageHeight_;
    bool started_ = false;
    Place pen_{};
    int part_ = -1; // which of the simple fonts is chosen
};

SpanWriter::Place SpanWriter::placeOf(const PlacedGlyph& glyph) const {
    const double perMille = span_.size / 1000;
    switch (span_.writing) {
    case Writing::sideways:
        return {glyph.y, glyph.x};
    case Writing::upright:
        return {glyph.y - kOriginY * perMille, glyph.x + double{glyph.advance} / 2 * perMille};
    case Writing::horizontal:
        break;
    }
    return {glyph.x, glyph.y};
}

void SpanWriter::choose(int part) {
    if (part == part_)
        return;
    stop();
    out_ +=
        resourceName(span_.font, span_.writing == Writing::upright, static_cast<unsigned>(part)) +
        ' ' + decimalText(span_.size) + " Tf\n";
    part_ = part;
}

void SpanWriter::start(const Place& place) {
    const bool horizontal = span_.writing == Writing::horizontal;
    const double x = horizontal ? place.along : place.across;
    const double y = horizontal ? place.across : place.along;
    out_ += span_.writing == Writing::sideways ? "0 -1 1 0 " : "1 0 0 1 ";
    out_ += decimalText(x) + ' ' + decimalText(pageHeight_ - y) + " Tm [<";
    pen_ = place;
    started_ = true;
}

void SpanWriter::stop() {
    if (started_)
        out_ += ">] TJ\n";
    started_ = false;
}

void SpanWriter::show(const PlacedGlyph& glyph) {
    const Place place = placeOf(glyph);
    const unsigned code = font_.program.codeOf(glyph.gid);
    const bool simple = font_.program.isSimple();
    if (simple)
        choose(static_cast<int>(code >> 8));
    if (started_ && std::abs(place.across - pen_.across) >= 0.0005)
        stop();
    if (!started_)
        start(place);
    const bool upright = span_.writing == Writing::upright;
    const double step = std::round((place.along - pen_.along) * 1e6 / span_.size) / 1000;
    // A number moves the pen to the left, and in vertical writing down.
    if (step != 0)
        out_ += '>' + decimalText(upright ? step : -step) + '<';
    out_ += hexText(code & (simple ? 0xFFU : 0xFFFFU), simple ? 1 : 2);
    pen_.along += (step + (upright ? kHeight : double{glyph.advance})) * span_.size / 1000;
}

bool SpanWriter::readsBack(std::size_t begin, std::size_t end) const {
    return std::all_of(span_.glyphs.begin() + static_cast<std::ptrdiff_t>(begin),
                       span_.glyphs.begin() + static_cast<std::ptrdiff_t>(end),
                       [&](const PlacedGlyph& glyph) {
                           return font_.glyphs.at(glyph.gid).text == plainText(glyph);
                       });
}

std::u16string SpanWriter::textOf(std::size_t begin, std::size_t end) const {
    std::u16string text;
    for (std::size_t i = begin; i < end; ++i) {
        const std::u16string part = plainText(span_.glyphs[i]);
        text.insert(span_.rightToLeft ? 0 : text.size(), part);
    }
    return text;
}

void SpanWriter::write() {
    out_ += "BT ";
    choose(span_.glyphs.empty() || !font_.program.isSimple()
               ? 0
               : font_.program.codeOf(span_.glyphs.front().gid) >> 8);
    for (std::size_t i = 0; i < span_.glyphs.size();) {
        std::size_t end = i + 1;
        while (end < span_.glyphs.size() && span_.glyphs[end].joined)
            ++end;
        const bool readsBack = this->readsBack(i, end);
        if (!readsBack) {
            stop();
            out_ += "/Span <</ActualText <FEFF";
            for (const char16_t unit : textOf(i, end))
                out_ += hexText(unit, 2);
            out_ += ">>> BDC\n";
        }
        for (; i < end; ++i)
            show(span_.glyphs[i]);
        if (!readsBack) {
            stop();
            out_ += "EMC\n";
        }
    }
    stop();
    out_ += "ET\n";
}

} // namespace

std::string resourceName(std::size_t font, bool upright, unsigned part) {
    std::string name = "/F" + std::to_string(font + 1);
    if (part != 0)
        name += "P" + std::to_string(part);
    return upright ? name + "V" : name;
}

std::string pageContent(const Page& page, const PdfFonts& fonts, double pageHeight) {
    std::string content;
    for (const Line& line : page.lines) {
        for (const Span& span : line.spans)
            SpanWriter(content, span, fonts.at(span.font), pageHeight).write();
    }
    return content;
}

} // namespace typeset
