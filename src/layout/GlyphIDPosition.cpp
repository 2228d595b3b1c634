#include <KWFontService17/GlyphIDPosition.h>

#include "layout/GlyphPlacement.h"

namespace KWFontService_NS {

namespace {

bool isPresent(int amount) {
    return amount != GlyphPlacement::kAbsent;
}

} // namespace

void GlyphIDPosition::clearOutsideGPOSInfo() {
    if ((flag_ & GLYPH_FLAG_OUTSIDE_GPOS) == 0)
        return;
    flag_ = static_cast<std::uint16_t>(flag_ & ~GLYPH_FLAG_OUTSIDE_GPOS);
    moveX1_ = 0;
    moveX2_ = width_;
    moveY_ = 0;
    moveY2_ = 0;
}

void GlyphIDPosition::addPosition2(int x1, int y, int x2, int y2) {
    clearOutsideGPOSInfo();
    if (isPresent(x1)) {
        moveX1_ = sum16(moveX1_, x1);
        moveX2_ = sum16(moveX2_, -x1);
    }
    if (isPresent(x2))
        moveX2_ = sum16(moveX2_, x2);
    if (isPresent(y))
        moveY_ = sum16(moveY_, y);
    if (isPresent(y2))
        moveY2_ = sum16(moveY2_, y2);
}

void GlyphIDPosition::addPosition(int x1, int y, int x2, int y2) {
    clearOutsideGPOSInfo();
    if ((flag_ & GLYPH_FLAG_LOOKUP_SKIP) == 0) {
        addPosition2(x1, y, x2, y2);
        return;
    }
    // Strict: the position is stored, and y2 is not looked at.
    const std::int16_t oldX1 = moveX1_;
    if (isPresent(x1))
        moveX1_ = low16(x1);
    moveX2_ = isPresent(x2) ? sum16(width_ - moveX1_, x2) : low16(moveX2_ - (moveX1_ - oldX1));
    if (isPresent(y))
        moveY_ = low16(y);
}

} // namespace KWFontService_NS
