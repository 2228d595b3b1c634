#include "raster/GlyphTransform.h"

#include <ft2build.h>
#include FT_GLYPH_H

#include <algorithm>
#include <climits>
#include <cmath>
#include <numbers>

namespace KWFontService_NS {

namespace {

constexpr FT_Fixed kOne = 0x10000;

/// The greatest factor: FreeType multiplies 32-bit numbers.
constexpr double kMaxFixed = 0x7FFFFFFF;

/// The value without its fraction, held to a range; 0 for no number.
template <class Int>
Int truncate(double value, double least, double most) {
    return std::isnan(value) ? Int{0} : static_cast<Int>(std::clamp(value, least, most));
}

FT_Fixed toFixed(double value) {
    return truncate<FT_Fixed>(value * kOne, -kMaxFixed, kMaxFixed);
}

double radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

} // namespace

int toPixels(double value) {
    return truncate<int>(value, INT_MIN, INT_MAX);
}

FT_Matrix glyphMatrix(const FS_GlyphBMPSetting& setting) {
    FT_Matrix matrix{kOne, 0, 0, kOne};
    if (setting.slantAngle != 0.0F) {
        const double t = std::tan(radians(double{setting.slantAngle}));
        const FT_Matrix shear = setting.slantVertically ? FT_Matrix{kOne, 0, toFixed(-t), kOne}
                                                        : FT_Matrix{kOne, toFixed(t), 0, kOne};
        FT_Matrix_Multiply(&shear, &matrix);
    }
    if (setting.scale != 1.0F) {
        const FT_Fixed factor = toFixed(double{setting.scale});
        const FT_Matrix scale =
            setting.scaleVertically ? FT_Matrix{kOne, 0, 0, factor} : FT_Matrix{factor, 0, 0, kOne};
        FT_Matrix_Multiply(&scale, &matrix);
    }
    if (setting.rotationAngle != 0.0F) {
        // FreeType turns counter-clockwise, y up.
        const double angle = radians(-double{setting.rotationAngle});
        const FT_Fixed cosine = toFixed(std::cos(angle));
        const FT_Matrix rotation{cosine, toFixed(-std::sin(angle)), toFixed(std::sin(angle)),
                                 cosine};
        FT_Matrix_Multiply(&rotation, &matrix);
    }
    return matrix;
}

double estimatePixels(double emPixels, const FS_GlyphBMPSetting& setting) {
    if (setting.isDefault())
        return emPixels;
    const double scaled = emPixels * double{setting.scale} + std::min(setting.emboldenPixels, 0);
    return scaled * (1.0 + std::fabs(std::tan(radians(double{setting.slantAngle}))));
}

std::optional<PixelStep> stepFromVertOrigin(const FS_GlyphBMPSetting& setting, double vertOriginY,
                                            unsigned int dpi, int middle) {
    const double scale = double{setting.scale};
    const double rotation = radians(double{setting.rotationAngle});
    // In this order of factors, which decides the rounding of exact halves.
    const double height = std::round(vertOriginY * scale * dpi / 72.0);
    const double distance = std::hypot(middle, height);
    if (distance == 0.0)
        return std::nullopt;
    double shear = 0.0;
    if (setting.slantVertically)
        shear = std::round(std::tan(radians(double{setting.slantAngle})) * middle *
                           std::cos(rotation) * scale);
    const double angle = std::atan2(height, middle) - rotation;
    return PixelStep{std::round(std::sin(angle) * distance) - shear,
                     -std::round(std::cos(angle) * distance)};
}

} // namespace KWFontService_NS
