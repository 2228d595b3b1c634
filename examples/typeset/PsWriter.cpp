#include "PsWriter.h"

#include "NumberText.h"
#include "shared/OutputFile.h"

#include <cmath>

namespace typeset {

namespace {

/// Glyphs of one font in a row, and where they stand along it.
class RunWriter {
public:
    RunWriter(std::string& out, const Span& span, const PsFont& font, double pageHeight)
        : out_(out), span_(span), font_(font), pageHeight_(pageHeight) {}

    void write() {
        for (std::size_t begin = 0; begin < span_.glyphs.size();) {
            std::size_t end = begin + 1;
            while (end < span_.glyphs.size() && follows(span_.glyphs[begin], span_.glyphs[end]))
                ++end;
            writeRun(begin, end);
            begin = end;
        }
    }

private:
    bool isSideways() const { return span_.writing == Writing::sideways; }
    double along(const PlacedGlyph& glyph) const { return isSideways() ? glyph.y : glyph.x; }
    double across(const PlacedGlyph& glyph) const { return isSideways() ? glyph.x : glyph.y; }
    bool follows(const PlacedGlyph& first, const PlacedGlyph& glyph) const {
        return std::abs(across(glyph) - across(first)) < 0.0005 &&
               &font_.nameFor(font_.codeOf(glyph.gid)) == &font_.nameFor(font_.codeOf(first.gid));
    }

    /// Steps are between rounded places, so that rounding does not add up.
    void writeRun(std::size_t begin, std::size_t end) {
        const PlacedGlyph& first = span_.glyphs[begin];
        out_ +=
            '/' + font_.nameFor(font_.codeOf(first.gid)) + ' ' + decimalText(span_.size) + " F ";
        const std::string place = decimalText(first.x) + ' ' + decimalText(pageHeight_ - first.y);
        out_ +=
            isSideways() ? "gsave " + place + " translate -90 rotate 0 0 M\n<" : place + " M\n<";
        std::string steps;
        for (std::size_t i = begin; i < end; ++i) {
            out_ +=
                hexText(font_.codeOf(span_.glyphs[i].gid) & (font_.isComposite ? 0xFFFFU : 0xFFU),
                        font_.isComposite ? 2 : 1);
            const double here = rounded(along(span_.glyphs[i]));
            const double next = i + 1 < end ? rounded(along(span_.glyphs[i + 1])) : here;
            steps += (i == begin ? "" : " ") + decimalText(next - here);
        }
        out_ += ">\n[" + steps + "] X";
        out_ += isSideways() ? " grestore\n" : "\n";
    }
    static double rounded(double value) { return std::round(value * 1000) / 1000; }

    std::string& out_;
    const Span& span_;
    const PsFont& font_;
    double pageHeight_;
};

/// As a string of PostScript; characters beyond ASCII are question marks.
std::string psString(const std::string& text) {
    std::string out = "(";
    for (const char c : text) {
        if (c == '(' || c == ')' || c == '\\')
            out += '\\';
        if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U)
            out += c >= ' ' && c <= '~' ? c : '?';
    }
    return out + ')';
}

} // namespace

std::string psPageContent(const Page& page, const PsFonts& fonts, double pageHeight) {
    std::string content;
    for (const Line& line : page.lines) {
        for (const Span& span : line.spans)
            RunWriter(content, span, fonts.at(span.font), pageHeight).write();
    }
    return content;
}

std::size_t writePs(const std::string& path, const Layout& layout, const PsFonts& fonts,
                    const std::string& title) {
    const std::string size = decimalText(layout.pageWidth) + ' ' + decimalText(layout.pageHeight);
    std::string out = "%!PS-Adobe-3.0\n%%LanguageLevel: 3\n";
    if (!title.empty())
        out += "%%Title: " + psString(title) + '\n';
    out += "%%Pages: " + std::to_string(layout.pages.size()) + "\n%%BoundingBox: 0 0 " +
           std::to_string(std::lround(std::ceil(layout.pageWidth))) + ' ' +
           std::to_string(std::lround(std::ceil(layout.pageHeight))) +
           "\n%%EndComments\n%%BeginProlog\n"
           "/F {exch findfont exch scalefont setfont} bind def\n"
           "/M {moveto} bind def\n/X {xshow} bind def\n%%EndProlog\n%%BeginSetup\n";
    for (const auto& [index, font] : fonts)
        out += font.definition;
    out += "<< /PageSize [" + size + "] >> setpagedevice\n%%EndSetup\n";
    for (std::size_t i = 0; i < layout.pages.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        out.append("%%Page: ").append(number).append(" ").append(number).append("\n");
        out += psPageContent(layout.pages[i], fonts, layout.pageHeight);
        out += "showpage\n";
    }
    out += "%%EOF\n";
    examples::writeFile(path, out.data(), out.size());
    return out.size();
}

} // namespace typeset
