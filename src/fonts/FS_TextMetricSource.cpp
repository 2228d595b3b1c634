#include "fonts/FS_TextMetricSource.h"

#include "fonts/FS_ServiceContext.h"

#include <KWFontService17/FS_NewTextMetricEx.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KWFontService_NS {

namespace {

/// Below the baseline, whatever sign a font gives it.
double downwards(double descender) {
    return 0 - std::fabs(descender); // and no negative zero
}

/// Turns lengths of the font into those of a size.
class Scale {
public:
    Scale(double size, double divisor)
        : factor_(divisor != 0 && std::isfinite(divisor) ? std::fabs(size) / divisor : 0) {}

    float operator()(double length) const {
        constexpr double kMost{std::numeric_limits<float>::max()};
        if (factor_ == 0)
            return 0;
        return static_cast<float>(std::clamp(length * factor_, -kMost, kMost));
    }

private:
    double factor_;
};

} // namespace

void FS_TextMetricSource::fill(FS_NewTextMetricEx& metric, int size) const {
    const Scale scaled(size, size < 0 ? unitsPerEm : lineHeight);
    metric.ascent = scaled(ascent);
    metric.descent = scaled(descent);
    metric.capHeight = scaled(capHeight);

    const double evenHalf = internalLeading.value_or(descent + ascent - unitsPerEm) / 2;
    double leadingA = evenHalf;
    double leadingD = evenHalf;
    if (!FS_ServiceContext::otfMetricsWindows()) {
        const double typoBelow = downwards(typoDescender);
        if (!internalLeading) {
            const double emOutsideTypo = unitsPerEm - typoAscender + typoBelow;
            const double belowTypo = descent + typoBelow;
            const double emBelow = std::min(belowTypo, emOutsideTypo / 2);
            leadingD = belowTypo - emBelow;
            leadingA = ascent - typoAscender - emOutsideTypo + emBelow;
        }
        metric.typoAscender = scaled(typoAscender);
        metric.typoDescender = scaled(typoBelow);
        metric.typoLineGap = scaled(typoLineGap);
        metric.vertTypoAscender = scaled(vertTypoAscender);
        metric.vertTypoDescender = scaled(downwards(vertTypoDescender));
        metric.vertTypoLineGap = scaled(vertTypoLineGap);
    }
    metric.internalLeadingA = scaled(leadingA);
    metric.internalLeadingD = scaled(leadingD);

    metric.externalLeading = scaled(externalLeading);
    metric.aveCharWidth = scaled(aveCharWidth);
    metric.maxCharWidth = scaled(maxCharWidth);
    metric.italicAngle = italicAngle;
    metric.pitchAndFamily = pitchAndFamily;
    metric.symbolFont = symbolFont;
    std::copy(unicodeRanges.begin(), unicodeRanges.end(), metric.unicodeRanges.begin());
    std::copy(codePages.begin(), codePages.end(), metric.codePages.begin());
    std::transform(fontBBox.begin(), fontBBox.end(), metric.fontBBox.begin(), scaled);
    metric.fontEntrySettings = fontEntrySettings;
}

} // namespace KWFontService_NS
