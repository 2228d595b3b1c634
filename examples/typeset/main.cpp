// Sets a text in a TrueType font: reads, lays out, writes a PDF and, when asked, a PNG.

#include "Document.h"
#include "Failure.h"
#include "FontFile.h"
#include "Options.h"
#include "PdfFont.h"
#include "PdfWriter.h"
#include "PngWriter.h"
#include "TextLayout.h"

#include <chrono>
#include <cstdio>
#include <iostream>

namespace typeset {

namespace {

std::string grouped(std::uintmax_t number) {
    std::string out = std::to_string(number);
    for (std::size_t i = out.size(); i > 3; i -= 3)
        out.insert(i - 3, ",");
    return out;
}

std::string plural(std::size_t count, const char* noun) {
    return grouped(count) + " " + noun + (count == 1 ? "" : "s");
}

void row(const char* label, const std::string& text) {
    std::printf("%-16s %s\n", label, text.c_str());
}

void reportMissing(const Layout& layout) {
    for (const auto& [character, count] : layout.missing) {
        std::fprintf(stderr, "typeset: the font has no glyph for U+%04X (%s)\n",
                     static_cast<unsigned>(character), plural(count, "time").c_str());
    }
}

std::string percentOf(std::size_t part, std::uintmax_t whole) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %%",
                  whole == 0 ? 0.0
                             : 100.0 * static_cast<double>(part) / static_cast<double>(whole));
    return text;
}

void run(const Options& options) {
    const auto start = std::chrono::steady_clock::now();

    FontFile font = openFont(options.fontPath);
    const Document document = readDocument(options.textPath);
    if (document.hasRightToLeft())
        std::fprintf(stderr, "typeset: right-to-left text is set from left to right\n");
    const Layout layout = layOut(document, font, options.size, options.justified);
    reportMissing(layout);

    const UsedGlyphs glyphs = usedGlyphs(layout);
    const PdfFont pdfFont = makePdfFont(font, glyphs, options.wholeFont);
    if (!pdfFont.subset && !options.wholeFont)
        std::fprintf(stderr, "typeset: the font's licence wants it embedded whole\n");
    const std::size_t pdfBytes =
        writePdf(options.pdfPath, layout, pdfFont, toUtf8(document.title()));
    if (!options.pngPath.empty())
        writePng(options.pngPath, layout, font, options.dpi);

    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.3f s", time.count());

    row("Font", toUtf8(font.info.getFullFontName(0)) + " (" + font.path + ")");
    row("Text", plural(document.blocks.size(), "block") + ", " +
                    plural(layout.lineCount(), "line") + ", " +
                    plural(layout.pages.size(), "page"));
    row("Glyphs used", grouped(glyphs.size()));
    row("Font file", grouped(font.bytes) + " bytes");
    row(pdfFont.subset ? "Embedded subset" : "Embedded whole",
        grouped(pdfFont.program.size()) + " bytes, " +
            percentOf(pdfFont.program.size(), font.bytes));
    row("PDF, compressed", grouped(pdfBytes) + " bytes");
    row("Time", seconds);
}

} // namespace

} // namespace typeset

int main(int argc, char** argv) {
    using typeset::ExitCode;
    const auto fail = [](ExitCode code, const char* message) {
        std::fprintf(stderr, "typeset: %s\n", message);
        if (code == ExitCode::usage)
            std::fprintf(stderr, "Try 'typeset --help'.\n");
        return static_cast<int>(code);
    };
    try {
        const typeset::Options options = typeset::parseOptions({argv + 1, argv + argc});
        if (options.help)
            std::fputs(typeset::kUsage, stdout);
        else
            typeset::run(options);
        return static_cast<int>(ExitCode::ok);
    } catch (const typeset::Failure& failure) {
        return fail(failure.code(), failure.what());
    } catch (const std::exception& exception) {
        return fail(ExitCode::output, exception.what());
    }
}
