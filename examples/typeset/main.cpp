// Sets a text: reads, shapes, lays out, writes a PDF and, when asked, a PNG.

#include "Document.h"
#include "Failure.h"
#include "FontSet.h"
#include "Options.h"
#include "PdfFont.h"
#include "PdfWriter.h"
#include "PngWriter.h"
#include "PsFont.h"
#include "PsWriter.h"
#include "TextLayout.h"
#include "WebFont.h"

#include <KWCommon15/KWError.h>

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

void warn(const std::string& text) {
    std::fprintf(stderr, "typeset: %s\n", text.c_str());
}

void reportMissing(const Layout& layout, const FontSet& fonts) {
    for (const auto& [which, count] : layout.missing) {
        const auto& [font, character] = which;
        char code[16];
        std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(character));
        warn((fonts.size() == 1 ? "the font" : fonts[font].name) + " has no glyph for " + code +
             " (" + plural(count, "time") + ")");
    }
}

std::string percentOf(std::size_t part, std::uintmax_t whole) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %%",
                  whole == 0 ? 0.0
                             : 100.0 * static_cast<double>(part) / static_cast<double>(whole));
    return text;
}

/// What the PDF carries of each font that the layout uses.
PdfFonts embeddedFonts(const Layout& layout, const FontSet& fonts, bool wholeFont, bool merge) {
    PdfFonts embedded;
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        const UsedGlyphs glyphs = usedGlyphs(layout, i);
        if (glyphs.empty())
            continue;
        const PdfFont& font = embedded[i] =
            makePdfFont(fonts[i], glyphs, wholeFont, hasUpright(layout, i),
                        merge ? usedGlyphsOfHalves(layout, i) : std::vector<UsedGlyphs>());
        if (merge && font.program.joinedOf.empty())
            warn(fonts[i].name + ": there are no two subsets that can be joined");
        if (!font.subset && !wholeFont)
            warn("the font's licence wants it embedded whole");
    }
    return embedded;
}

PsFonts psFonts(const Layout& layout, const FontSet& fonts) {
    PsFonts defined;
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        const UsedGlyphs glyphs = usedGlyphs(layout, i);
        if (!glyphs.empty())
            defined[i] = makePsFont(fonts[i], glyphs, "F" + std::to_string(i + 1));
    }
    return defined;
}

void reportFont(const char* label, const FontFile& font, const PdfFont& embedded) {
    row(label, font.name + " (" + font.path + ")");
    row("Glyphs used", grouped(embedded.glyphs.size()));
    row("Font file", grouped(font.bytes) + " bytes");
    row(embedded.subset ? "Embedded subset" : "Embedded whole",
        grouped(embedded.program.size()) + " bytes, " +
            percentOf(embedded.program.size(), font.bytes));
    if (const std::vector<std::size_t>& parts = embedded.program.joinedOf; !parts.empty())
        row("Joined of", grouped(parts[0]) + " and " + grouped(parts[1]) + " bytes");
}

void run(const Options& options) {
    const auto start = std::chrono::steady_clock::now();

    if (options.fonts.byName()) {
        for (const std::string& note : openService(options.fonts.config))
            warn(note);
    }
    FontSet fonts = openFonts(options.fonts);
    const Document document = readDocument(options.textPath);
    for (const Block& block : document.blocks)
        addPrivateUseFonts(fonts, block.text);
    const Layout layout = layOut(document, fonts,
                                 {options.size, options.justified, options.columns,
                                  options.language, FeaturePlan(options.features)});
    reportMissing(layout, fonts);

    PdfFonts embedded;
    std::size_t pdfBytes = 0;
    if (!options.pdfPath.empty()) {
        embedded = embeddedFonts(layout, fonts, options.wholeFont, options.merge);
        pdfBytes = writePdf(options.pdfPath, layout, embedded, toUtf8(document.title()));
    }
    std::size_t psBytes = 0;
    if (!options.psPath.empty())
        psBytes = writePs(options.psPath, layout, psFonts(layout, fonts), toUtf8(document.title()));
    if (!options.pngPath.empty())
        writePng(options.pngPath, layout, fonts, options.dpi, options.wholePage);

    std::size_t webFontBytes = 0;
    if (!options.webFontPath.empty())
        webFontBytes = writeWebFont(options.webFontPath, layout, 0, fonts[0]);

    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.3f s", time.count());

    row("Text", plural(document.blocks.size(), "block") + ", " +
                    plural(layout.lineCount(), "line") + ", " +
                    plural(layout.pages.size(), "page"));
    for (const auto& [index, font] : embedded) {
        const bool heading = index != 0 && index == fonts.headings;
        reportFont(index == 0 ? "Font"
                   : heading  ? "Heading font"
                              : "Further font",
                   fonts[index], font);
    }
    if (webFontBytes != 0)
        row("Web font",
            grouped(webFontBytes) + " bytes, " + percentOf(webFontBytes, fonts[0].bytes));
    if (pdfBytes != 0)
        row("PDF, compressed", grouped(pdfBytes) + " bytes");
    if (psBytes != 0)
        row("PostScript", grouped(psBytes) + " bytes");
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
    } catch (const KWCommonNS::KWError& error) { // from the reader of a font that was found
        return fail(ExitCode::font, typeset::toUtf8(error.getMessage()).c_str());
    } catch (const std::exception& exception) {
        return fail(ExitCode::output, exception.what());
    }
}
