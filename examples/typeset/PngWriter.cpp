#include "PngWriter.h"

#include "Failure.h"
#include "Progress.h"
#include "shared/OutputFile.h"
#include "shared/Picture.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <vector>

namespace typeset {

using namespace KWFontService_NS;
using examples::Picture;

namespace {

/// The glyph as drawn once for this size; null when it has nothing to draw.
const FS_GlyphBMP* drawnGlyph(FS_GlyphBMPStore& store, const PlacedGlyph& glyph, double size,
                              FontFile& font, unsigned dpi, const FS_GlyphBMPSetting& setting) {
    if (const FS_GlyphBMP* known = store.getGlyph(glyph.gid))
        return known;
    FS_GlyphDrawInfo outline;
    if (font.info.getGlyphDrawInfo(glyph.gid, outline, false) && outline.contours.empty())
        return nullptr;
    if (!store.insertGlyph(glyph.gid, static_cast<float>(size), dpi * Picture::kFiner, &font.info,
                           setting))
        throw Failure(ExitCode::font, toUtf8(store.getError().getMessage()));
    return store.getGlyph(glyph.gid);
}

} // namespace

void writePng(const std::string& path, const Layout& layout, FontSet& fonts, unsigned dpi,
              bool wholePage) {
    std::vector<const Line*> lines;
    for (const Line& line : layout.pages.front().lines) {
        if (lines.empty() || wholePage || line.bottom < layout.pageHeight / 2)
            lines.push_back(&line);
    }
    double height = layout.pageHeight;
    if (!wholePage) {
        height = 3 * layout.size;
        for (const Line* line : lines)
            height = std::max(height, line->bottom + 3 * layout.size);
    }
    const double pixels = dpi / 72.0;
    Picture picture(static_cast<unsigned>(std::lround(layout.pageWidth * pixels)),
                    static_cast<unsigned>(std::lround(height * pixels)));

    Progress progress("Drawing the picture");
    std::map<std::tuple<std::size_t, double, bool>, FS_GlyphBMPStore> stores;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (const Span& span : lines[i]->spans) {
            const bool sideways = span.writing == Writing::sideways;
            FS_GlyphBMPSetting setting;
            setting.rotationAngle = sideways ? 90.0F : 0.0F;
            FS_GlyphBMPStore& store = stores[{span.font, span.size, sideways}];
            for (const PlacedGlyph& glyph : span.glyphs) {
                if (const FS_GlyphBMP* drawn =
                        drawnGlyph(store, glyph, span.size, fonts[span.font], dpi, setting)) {
                    picture.add(*drawn, std::lround(glyph.x * pixels * Picture::kFiner),
                                std::lround(glyph.y * pixels * Picture::kFiner));
                }
            }
        }
        progress.update(i + 1, lines.size());
    }
    const std::vector<unsigned char> png = picture.toPng();
    examples::writeFile(path, png.data(), png.size());
}

} // namespace typeset
