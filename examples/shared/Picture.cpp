#include "Picture.h"

#include <png.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string>

namespace examples {

Picture::Picture(unsigned width, unsigned height)
    : width_(width), height_(height), ink_(std::size_t{width} * height) {}

void Picture::add(const KWFontService_NS::FS_GlyphBMP& glyph, long x, long y) {
    x += glyph.getColsOffestFromHorizontalBaseLineToStartPoint();
    y += glyph.getRowsOffestFromHorizontalBaseLineToStartPoint();
    for (unsigned row = 0; row < glyph.getRows(); ++row) {
        for (unsigned col = 0; col < glyph.getCols(); ++col) {
            if (glyph.getPixel(col, row) != 0)
                addInk(x + static_cast<long>(col), y + static_cast<long>(row));
        }
    }
}

void Picture::addInk(long x, long y) {
    const auto column = static_cast<unsigned long>(x) / kFiner;
    const auto row = static_cast<unsigned long>(y) / kFiner;
    if (x < 0 || y < 0 || column >= width_ || row >= height_)
        return;
    std::uint8_t& ink = ink_[row * width_ + column];
    ink = std::min<std::uint8_t>(ink + 1U, kFiner * kFiner); // glyphs may overlap
}

std::vector<unsigned char> Picture::toPng() const {
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
        throw std::runtime_error(std::string("cannot make the picture: ") + image.message);
    bytes.resize(size);
    return bytes;
}

} // namespace examples
