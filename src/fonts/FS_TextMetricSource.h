#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace KWFontService_NS {

class FS_NewTextMetricEx;
struct FS_FontFileOptions;

/// What the text metrics of a face are computed from. Lengths are in font units.
struct FS_TextMetricSource {
    double unitsPerEm = 0;
    double lineHeight = 0; ///< what a size above 0 stands for
    double ascent = 0;
    double descent = 0; ///< downwards
    double capHeight = 0;
    std::optional<double> internalLeading{}; ///< of a font that states it
    double typoAscender = 0;
    double typoDescender = 0; ///< of either sign
    double typoLineGap = 0;
    double vertTypoAscender = 0;
    double vertTypoDescender = 0; ///< of either sign
    double vertTypoLineGap = 0;
    double externalLeading = 0;
    double aveCharWidth = 0;
    double maxCharWidth = 0;
    float italicAngle = 0; ///< in degrees
    int pitchAndFamily = 0;
    bool symbolFont = false;
    std::array<std::uint32_t, 4> unicodeRanges{};
    std::array<std::uint32_t, 2> codePages{};
    std::array<float, 4> fontBBox{}; ///< xMin, yMin, xMax, yMax
    const FS_FontFileOptions* fontEntrySettings = nullptr;

    /// Fills a record by the size rule; 0, and a font without the measure that the size refers to,
    /// make every length 0. Where the configuration asks for Windows metrics the typographic fields
    /// stay as they are in the record.
    void fill(FS_NewTextMetricEx& metric, int size) const;
};

} // namespace KWFontService_NS
