#include "embed/GlyphLocator.h"

namespace KWFontService_NS {

std::uint32_t GlyphLocator::offset(std::size_t gid) const {
    if (isLong_)
        return loca_.u32(gid * 4).value_or(glyfLength_);
    const auto half = loca_.u16(gid * 2);
    return half ? std::uint32_t{*half} * 2 : glyfLength_;
}

std::uint32_t GlyphLocator::length(std::size_t gid) const {
    if (gid + 1 >= entryCount() && gid >= numGlyphs_)
        return 0;
    const std::uint32_t start = offset(gid);
    const std::uint32_t end = offset(gid + 1);
    return end > start ? end - start : 0;
}

} // namespace KWFontService_NS
