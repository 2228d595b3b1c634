#pragma once

#include "Bytes.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace KWTest {

/// A point of a TrueType contour, in font units, y up.
struct GlyphPoint {
    std::int16_t x = 0;
    std::int16_t y = 0;
    bool onCurve = true;
};

using GlyphContour = std::vector<GlyphPoint>;

/// The smallest box around all points: `xMin`, `yMin`, `xMax`, `yMax`.
struct GlyphBox {
    std::int16_t xMin = 0;
    std::int16_t yMin = 0;
    std::int16_t xMax = 0;
    std::int16_t yMax = 0;
};

/// A rectangle and a triangle with the base down, clockwise (filled).
GlyphContour rectangle(const GlyphBox& box);
GlyphContour triangle(const GlyphBox& box);

/// A simple glyph: one flag byte and two-byte deltas for every point, so that its bytes are easy to
/// reckon. The box is that of the points unless given.
struct SimpleGlyph {
    std::vector<GlyphContour> contours{};
    Bytes instructions{};
    std::optional<GlyphBox> box{};

    Bytes build() const;
};

// Flags of a composite component that tests set themselves; the builder works out the others.
inline constexpr std::uint16_t kRoundXYToGrid = 0x0004;
inline constexpr std::uint16_t kWeHaveInstructions = 0x0100;
inline constexpr std::uint16_t kUseMyMetrics = 0x0200;
inline constexpr std::uint16_t kOverlapCompound = 0x0400;

/// One component of a composite glyph, placed by an x, y shift. The scale's kind follows from how
/// many numbers are given: 0 none, 1 one for both axes, 2 for x and y, 4 a matrix.
struct GlyphComponent {
    std::uint16_t glyphIndex = 0;
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::vector<double> scale{};
    bool wordArguments = true;
    std::uint16_t extraFlags = 0;
};

/// A composite glyph. MORE_COMPONENTS is set on every component but the last; with
/// `endlessComponents` on the last as well, so that a reader runs off the end of the glyph.
struct CompositeGlyph {
    std::vector<GlyphComponent> components{};
    GlyphBox box{};
    bool endlessComponents = false;

    Bytes build() const;
};

/// `glyf` and `loca` of a list of glyphs; an empty one has no outline. Any bytes do as a glyph, so
/// that a test can store broken ones.
///
///     GlyfLoca outlines;
///     outlines.add().add(SimpleGlyph{.contours = {triangle({0, 0, 500, 700})}});
///     font.table("glyf", outlines.glyf()).table("loca", outlines.loca());
struct GlyfLoca {
    std::vector<Bytes> glyphs{};
    bool longLoca = false;
    std::size_t alignment = 2; // of each glyph; 1 leaves odd lengths as they are

    GlyfLoca& add(Bytes glyph = {});
    template <BytesMaker Maker>
    GlyfLoca& add(const Maker& maker) {
        return add(Bytes(maker.build()));
    }

    /// Offsets into `glyf`, one more than there are glyphs.
    std::vector<std::uint32_t> offsets() const;
    Bytes glyf() const;
    Bytes loca() const;
};

/// `loca` from explicit offsets, in order or not; short entries hold half the offset.
Bytes locaOf(const std::vector<std::uint32_t>& offsets, bool longLoca);

} // namespace KWTest
