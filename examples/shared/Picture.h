#pragma once

#include <KWFontService17/FS_GlyphBMP.h>

#include <cstdint>
#include <vector>

namespace examples {

/// A white page that glyphs are drawn on in black.
///
/// The library draws in black and white. Each pixel of the picture counts the ink of 4 x 4 finer
/// ones, which makes smooth greys and lets a glyph stand on a quarter of a pixel.
class Picture {
public:
    static constexpr unsigned kFiner = 4;

    /// In pixels.
    Picture(unsigned width, unsigned height);

    /// What does not fall on the page is left out.
    /// @param glyph  drawn at `kFiner` times the resolution of the picture
    /// @param x, y   where the glyph's origin stands, in fine pixels
    void add(const KWFontService_NS::FS_GlyphBMP& glyph, long x, long y);

    /// The picture as a greyscale PNG file. Throws std::runtime_error.
    std::vector<unsigned char> toPng() const;

private:
    void addInk(long x, long y);

    unsigned width_;
    unsigned height_;
    std::vector<std::uint8_t> ink_;
};

} // namespace examples
