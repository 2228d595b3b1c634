#pragma once

#include "support/Bytes.h"
#include "typeset/TextLayout.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KWTest {

/// A page or a piece of it in greys: 255 is full ink, 0 is paper.
struct PagePicture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint8_t> ink;

    PagePicture() = default;
    PagePicture(unsigned columns, unsigned rows);

    std::uint64_t totalInk() const;
    /// The upper left corner alone.
    PagePicture corner(unsigned columns, unsigned rows) const;
    /// Scaled down: each pixel the mean of a square of `finer` x `finer`.
    PagePicture reduced(unsigned finer) const;
    /// Everything one column to the right.
    PagePicture shifted() const;
};

/// What differs, as a part of the ink: 0 for equal pictures, up to 2 for ones without common ink.
double difference(const PagePicture& one, const PagePicture& other);

/// Both throw std::runtime_error when the file is not what it should be.
PagePicture readPgm(const std::string& path);
PagePicture readPng(const std::string& path);

/// Lines drawn from the font file by FreeType alone, unhinted and with smooth edges. Each glyph
/// stands where poppler's rasteriser rounds it to: down to a whole pixel, and across to a quarter
/// of one, or to a whole one when the glyphs of the face are larger than 50 pixels.
PagePicture drawSmooth(const std::vector<typeset::Line>& lines, const Bytes& font, unsigned dpi,
                       unsigned width, unsigned height);
/// The same lines in black and white at `finer` times the resolution, each glyph on a whole fine
/// pixel, then scaled down by counting ink.
PagePicture drawMono(const std::vector<typeset::Line>& lines, const Bytes& font, unsigned dpi,
                     unsigned finer, unsigned width, unsigned height);

} // namespace KWTest
