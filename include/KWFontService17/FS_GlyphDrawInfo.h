#pragma once

#include <utility>
#include <vector>

namespace KWFontService_NS {

/// The outline and the metrics of one glyph, in font units, y up. The metrics and the box are
/// truncated to whole units, after FreeType has fitted the metrics to the pixels it works in.
struct FS_GlyphDrawInfo {
    enum SegmentKind : int {
        Line = 0,      ///< adds one point: the end
        Quadratic = 1, ///< adds two: the control point and the end
        Cubic = 2,     ///< adds three: two control points and the end
    };

    /// One closed curve.
    struct Contour {
        /// Kinds of the segments, each a `SegmentKind`.
        std::vector<int> segments;
        /// The start of the contour, then the points of each segment.
        std::vector<std::pair<float, float>> points;
    };

    // Box of the whole face (OpenType `head`).
    int xMin = 0;
    int yMin = 0;
    int xMax = 0;
    int yMax = 0;

    // Metrics of the glyph.
    int width = 0;
    int height = 0;
    int horiBearingX = 0; ///< from the origin to the left edge
    int horiBearingY = 0; ///< from the baseline up to the top edge
    int horiAdvance = 0;
    int vertBearingX = 0; ///< from the vertical baseline to the left edge
    int vertBearingY = 0; ///< from the vertical origin down to the top edge
    int vertAdvance = 0;

    /// True when overlaps are filled by the even-odd rule, else by non-zero winding.
    bool evenOddFill = false;
    std::vector<Contour> contours;

    // Bounds of all points, control points included; 0 without contours.
    float outlineXMin = 0.0F;
    float outlineYMin = 0.0F;
    float outlineXMax = 0.0F;
    float outlineYMax = 0.0F;
};

} // namespace KWFontService_NS
