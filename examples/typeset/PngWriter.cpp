#include "PngWriter.h"

#include "Failure.h"
#include "OutputFile.h"
#include "Progress.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

namespace typeset {

using namespace KWFontService_NS;

namespace {

/// The library draws in black and white. Each pixel of the picture counts the ink of 4 x 4 finer
/// ones, which makes smooth greys and lets a glyph stand on a quarter of a pixel.
constexpr unsigned kFiner = 4;

class Picture {
public:
    Picture(unsigned width, unsigned height)
        : width_(width), height_(height), ink_(std::size_t{width} * height) {}

    /// @param x, y  where the glyph's origin stands, in fine pixels
    void add(const FS_GlyphBMP& glyph, long x, long y) {
        x += glyph.getColsOffestFromHorizontalBaseLineToStartPoint();
        y += glyph.getRowsOffestFromHorizontalBaseLineToStartPoint();
        for (unsigned row = 0; row < glyph.getRows(); ++row) {
            for (unsigned col = 0; col < glyph.getCols(); ++col) {
                if (glyph.getPixel(col, row) != 0)
                    addInk(x + static_cast<long>(col), y + static_cast<long>(row));
            }
        }
    }

    std::vector<png_byte> toPng() const;

private:
    void addInk(long x, long y) {
        const auto column = static_cast<unsigned long>(x) / kFiner;
        const auto row = static_cast<unsigned long>(y) / kFiner;
        if (x < 0 || y < 0 || column >= width_ || row >= height_)
            return;
        std::uint8_t& ink = ink_[row * width_ + column];
        ink = std::min<std::uint8_t>(ink + 1U, kFiner * kFiner); // glyphs may overlap
    }

    unsigned width_;
    unsigned height_;
    std::vector<std::uint8_t> ink_;
};

std::vector<png_byte> Picture::toPng() const {
    std::vector<png_byte> grey(ink_.size());
    std::transform(ink_.begin(), ink_.end(), grey.begin(), [](std::uint8_t ink) {
        return static_cast<png_byte>(255 - ink * 255 / (kFiner * kFiner));
    });
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width_;
    image.height = height_;
    image.format = PNG_FORMAT_GRAY;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<png_byte> bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, grey.data(), 0, nullptr) == 0)
        throw Failure(ExitCode::output, std::string("cannot make the picture: ") + image.message);
    bytes.resize(size);
    return bytes;
}

/// The glyph as drawn once for this size; null when it has nothing to draw.
const FS_GlyphBMP* drawnGlyph(FS_GlyphBMPStore& store, const PlacedGlyph& glyph, double size,
                              FontFile& font, unsigned dpi, const FS_GlyphBMPSetting& setting) {
    if (const FS_GlyphBMP* known = store.getGlyph(glyph.gid))
        return known;
    FS_GlyphDrawInfo outline;
    if (font.info.getGlyphDrawInfo(glyph.gid, outline, false) && outline.contours.empty())
        return nullptr;
    if (!store.insertGlyph(glyph.gid, static_cast<float>(size), dpi * kFiner, &font.info, setting))
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
                    picture.add(*drawn, std::lround(glyph.x * pixels * kFiner),
                                std::lround(glyph.y * pixels * kFiner));
                }
            }
        }
        progress.update(i + 1, lines.size());
    }
    const std::vector<png_byte> png = picture.toPng();
    writeFile(path, png.data(), png.size());
}

} // namespace typeset
