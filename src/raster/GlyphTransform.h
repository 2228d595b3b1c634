#pragma once

#include <KWFontService17/FS_GlyphBMPSetting.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <optional>

namespace KWFontService_NS {

/// A whole number of pixels: the value without its fraction, the nearest int when it is out of
/// range and 0 for no number.
int toPixels(double value);

/// The matrix of a setting: slant, then scale, then rotation.
FT_Matrix glyphMatrix(const FS_GlyphBMPSetting& setting);

/// Height of the drawn em in pixels, widened by what slanting adds.
double estimatePixels(double emPixels, const FS_GlyphBMPSetting& setting);

/// A step in pixels, rows downwards and columns to the right.
struct PixelStep {
    double rows;
    double cols;
};

/// From the vertical origin of a drawn glyph to its origin on the baseline; nothing when both are
/// one point.
/// @param vertOriginY  the vertical origin above the baseline, in points, before the setting
/// @param middle       from the origin to the middle of the advance, in pixels
std::optional<PixelStep> stepFromVertOrigin(const FS_GlyphBMPSetting& setting, double vertOriginY,
                                            unsigned int dpi, int middle);

} // namespace KWFontService_NS
