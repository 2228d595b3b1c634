#include "interop/PagePicture.h"

#include "support/FreeTypeFace.h"
#include "support/TempDir.h"

#include FT_OUTLINE_H

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace KWTest {

namespace {

/// Adds ink up to the full; outside the picture nothing happens.
void addInk(PagePicture& picture, long x, long y, unsigned ink) {
    if (x < 0 || y < 0 || x >= static_cast<long>(picture.width) ||
        y >= static_cast<long>(picture.height))
        return;
    std::uint8_t& pixel =
        picture.ink[static_cast<std::size_t>(y) * picture.width + static_cast<std::size_t>(x)];
    pixel = static_cast<std::uint8_t>(std::min(255U, pixel + ink));
}

void setSize(const FreeTypeFace& face, double size, unsigned dpi) {
    if (FT_Set_Char_Size(face.get(), 0, std::lround(size * 64), dpi, dpi) != 0)
        throw std::runtime_error("FreeType does not take the size");
}

std::vector<typeset::Span> spansOf(const std::vector<typeset::Line>& lines) {
    std::vector<typeset::Span> spans;
    for (const typeset::Line& line : lines)
        spans.insert(spans.end(), line.spans.begin(), line.spans.end());
    return spans;
}

} // namespace

PagePicture::PagePicture(unsigned columns, unsigned rows)
    : width(columns), height(rows), ink(std::size_t{columns} * rows) {}

std::uint64_t PagePicture::totalInk() const {
    return std::accumulate(ink.begin(), ink.end(), std::uint64_t{0});
}

PagePicture PagePicture::corner(unsigned columns, unsigned rows) const {
    PagePicture out(columns, rows);
    for (std::size_t row = 0; row < std::min(rows, height); ++row) {
        std::copy_n(ink.begin() + static_cast<std::ptrdiff_t>(row * width),
                    std::min(columns, width),
                    out.ink.begin() + static_cast<std::ptrdiff_t>(row * columns));
    }
    return out;
}

PagePicture PagePicture::reduced(unsigned finer) const {
    PagePicture out(width / finer, height / finer);
    for (std::size_t row = 0; row < out.height; ++row) {
        for (std::size_t col = 0; col < out.width; ++col) {
            unsigned sum = 0;
            for (std::size_t i = 0; i < std::size_t{finer} * finer; ++i)
                sum += ink[(row * finer + i / finer) * width + col * finer + i % finer];
            out.ink[row * out.width + col] = static_cast<std::uint8_t>(sum / (finer * finer));
        }
    }
    return out;
}

PagePicture PagePicture::shifted() const {
    PagePicture out = *this;
    std::rotate(out.ink.begin(), out.ink.end() - 1, out.ink.end());
    return out;
}

double difference(const PagePicture& one, const PagePicture& other) {
    if (one.width != other.width || one.height != other.height)
        throw std::runtime_error("pictures of different sizes");
    double sum = 0;
    for (std::size_t i = 0; i < one.ink.size(); ++i)
        sum += std::abs(int{one.ink[i]} - int{other.ink[i]});
    return sum / static_cast<double>(std::max<std::uint64_t>(1, one.totalInk()));
}

PagePicture readPgm(const std::string& path) {
    std::istringstream file(readFile(path).str());
    std::string magic;
    unsigned width = 0;
    unsigned height = 0;
    unsigned white = 0;
    file >> magic;
    for (unsigned* number : {&width, &height, &white}) {
        for (file >> std::ws; file.peek() == '#'; file >> std::ws) // a comment
            file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
        file >> *number;
    }
    file.get();
    if (!file || magic != "P5" || white != 255)
        throw std::runtime_error(path + " is not a PGM");
    PagePicture picture(width, height);
    for (std::uint8_t& pixel : picture.ink)
        pixel = static_cast<std::uint8_t>(255 - file.get());
    if (!file)
        throw std::runtime_error(path + " is short");
    return picture;
}

PagePicture readPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
        throw std::runtime_error(path + ": " + image.message);
    image.format = PNG_FORMAT_GRAY;
    PagePicture picture(image.width, image.height);
    if (png_image_finish_read(&image, nullptr, picture.ink.data(), 0, nullptr) == 0)
        throw std::runtime_error(path + ": " + image.message);
    for (std::uint8_t& pixel : picture.ink)
        pixel = static_cast<std::uint8_t>(255 - pixel);
    return picture;
}

PagePicture drawSmooth(const std::vector<typeset::Line>& lines, const Bytes& font, unsigned dpi,
                       unsigned width, unsigned height) {
    const FreeTypeFace face(font);
    PagePicture picture(width, height);
    for (const typeset::Span& span : spansOf(lines)) {
        setSize(face, span.size, dpi);
        const bool large = span.size * dpi / 72 > 50;
        for (const typeset::PlacedGlyph& glyph : span.glyphs) {
            const double x = glyph.x * dpi / 72;
            const long column = std::lround(std::floor(x));
            const long row0 = std::lround(std::floor(glyph.y * dpi / 72));
            const long quarters = large ? 0 : std::lround(std::floor((x - std::floor(x)) * 4));
            if (FT_Load_Glyph(face.get(), glyph.gid, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0)
                throw std::runtime_error("FreeType does not load a glyph");
            FT_GlyphSlot slot = face->glyph;
            FT_Outline_Translate(&slot->outline, quarters * 16, 0);
            if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0)
                throw std::runtime_error("FreeType does not draw a glyph");
            const FT_Bitmap& bitmap = slot->bitmap;
            for (unsigned row = 0; row < bitmap.rows; ++row) {
                for (unsigned col = 0; col < bitmap.width; ++col) {
                    addInk(picture, column + slot->bitmap_left + long{col},
                           row0 - slot->bitmap_top + long{row},
                           bitmap.buffer[static_cast<long>(row) * bitmap.pitch + long{col}]);
                }
            }
        }
    }
    return picture;
}

PagePicture drawMono(const std::vector<typeset::Line>& lines, const Bytes& font, unsigned dpi,
                     unsigned finer, unsigned width, unsigned height) {
    const FreeTypeFace face(font);
    PagePicture counts(width, height); // of fine pixels
    for (const typeset::Span& span : spansOf(lines)) {
        setSize(face, span.size, dpi * finer);
        for (const typeset::PlacedGlyph& glyph : span.glyphs) {
            if (FT_Load_Glyph(face.get(), glyph.gid, FT_LOAD_NO_BITMAP) != 0 ||
                FT_Render_Glyph(face->glyph, FT_RENDER_MODE_MONO) != 0)
                throw std::runtime_error("FreeType does not draw a glyph");
            const FT_Bitmap& bitmap = face->glyph->bitmap;
            const long left = std::lround(glyph.x * dpi * finer / 72) + face->glyph->bitmap_left;
            const long top = std::lround(glyph.y * dpi * finer / 72) - face->glyph->bitmap_top;
            for (unsigned row = 0; row < bitmap.rows; ++row) {
                for (unsigned col = 0; col < bitmap.width; ++col) {
                    const unsigned byte =
                        bitmap.buffer[static_cast<long>(row) * bitmap.pitch + long{col / 8}];
                    if ((byte >> (7 - col % 8) & 1U) != 0)
                        addInk(counts, (left + long{col}) / long{finer},
                               (top + long{row}) / long{finer}, 1);
                }
            }
        }
    }
    for (std::uint8_t& pixel : counts.ink)
        pixel = static_cast<std::uint8_t>(std::min<unsigned>(pixel, finer * finer) * 255 /
                                          (finer * finer));
    return counts;
}

} // namespace KWTest
