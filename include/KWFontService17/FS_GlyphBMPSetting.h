#pragma once

namespace KWFontService_NS {

/// How a glyph is drawn: slant first, then scale, then rotation, and emboldening last.
struct FS_GlyphBMPSetting {
    bool scaleVertically = false; ///< `scale` applies to y, not to x
    bool slantVertically = false; ///< `slantAngle` shears y, not x
    float slantAngle = 0.0F;      ///< degrees; positive leans to the right, or down to the right
    float rotationAngle = 0.0F;   ///< degrees, clockwise
    float scale = 1.0F;
    int emboldenPixels = 0; ///< strength in pixels; below 0 thins

    /// True when the glyph is drawn as the font has it; the two flags alone change nothing.
    bool isDefault() const {
        return slantAngle == 0.0F && rotationAngle == 0.0F && scale == 1.0F && emboldenPixels == 0;
    }
};

} // namespace KWFontService_NS
