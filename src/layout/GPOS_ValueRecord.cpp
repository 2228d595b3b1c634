#include "layout/GPOS_ValueRecord.h"

#include "layout/GlyphPlacement.h"
#include "layout/LayoutArrays.h"

namespace KWFontService_NS {

bool GPOS_ValueRecord::applyTo(GlyphIDPosition& glyph) const {
    if (!applies())
        return false;
    const auto amount = [this](unsigned int bit, int sign) {
        return has(bit) ? sign * number(bit) : GlyphPlacement::kAbsent;
    };
    GlyphPlacement::addValue(glyph, amount(kXPlacement, 1), amount(kYPlacement, -1),
                             amount(kXAdvance, 1), amount(kYAdvance, -1));
    return true;
}

TTI_Device GPOS_ValueRecord::device(unsigned int bit) const {
    return has(bit) ? TTI_Device::read(offsetTo(base_, field(bit))) : TTI_Device();
}

} // namespace KWFontService_NS
