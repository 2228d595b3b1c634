#include "PageContent.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace typeset {

namespace {

/// Where vertical writing takes a glyph by, in thousandths of an em above its origin, and how far
/// the next one is below: what a PDF font has that says nothing (ISO 32000-1, 9.7.4.3).
constexpr double kOriginY = 880;
constexpr double kHeight = 1000;

/// With at most three decimals.
std::string number(double value) {
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 3);
    std::string out(digits, end.ptr);
    out.erase(out.find_last_not_of('0') + 1);
    if (out.back() == '.')
        out.pop_back();
    return out == "-0" ? "0" : out;
}

std::string hex(unsigned value, int bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string out;
    for (int shift = 8 * bytes; shift > 0; shift -= 4)
        out += kDigits[(value >> (shift - 4)) & 0xFU];
    return out;
}

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

void SpanWriter::start(const Place& place) {
    const bool horizontal = span_.writing == Writing::horizontal;
    const double x = horizontal ? place.along : place.across;
    const double y = horizontal ? place.across : place.along;
    out_ += span_.writing == Writing::sideways ? "0 -1 1 0 " : "1 0 0 1 ";
    out_ += number(x) + ' ' + number(pageHeight_ - y) + " Tm [<";
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
    if (started_ && std::abs(place.across - pen_.across) >= 0.0005)
        stop();
    if (!started_)
        start(place);
    const bool upright = span_.writing == Writing::upright;
    const double step = std::round((place.along - pen_.along) * 1e6 / span_.size) / 1000;
    // A number moves the pen to the left, and in vertical writing down.
    if (step != 0)
        out_ += '>' + number(upright ? step : -step) + '<';
    out_ += hex(font_.program.codeOf(glyph.gid), font_.program.bytesOfCode());
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
    out_ += "BT " + resourceName(span_.font, span_.writing == Writing::upright) + ' ' +
            number(span_.size) + " Tf\n";
    for (std::size_t i = 0; i < span_.glyphs.size();) {
        std::size_t end = i + 1;
        while (end < span_.glyphs.size() && span_.glyphs[end].joined)
            ++end;
        const bool readsBack = this->readsBack(i, end);
        if (!readsBack) {
            stop();
            out_ += "/Span <</ActualText <feff";
            for (const char16_t unit : textOf(i, end))
                out_ += hex(unit, 2);
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

std::string resourceName(std::size_t font, bool upright) {
    return "/F" + std::to_string(font + 1) + (upright ? "V" : "");
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
