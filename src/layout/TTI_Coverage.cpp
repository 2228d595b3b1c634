#include "layout/TTI_Coverage.h"

namespace KWFontService_NS {

GlyphDigest TTI_CoverageFormat1::digest() const {
    if (glyphs_.empty())
        return {};
    // Also in a list that is not sorted, a search may come to any glyph.
    std::uint16_t first = glyphs_[0];
    std::uint16_t last = first;
    for (const std::uint16_t glyph : glyphs_) {
        first = std::min(first, glyph);
        last = std::max(last, glyph);
    }
    GlyphDigest digest(first, last);
    for (const std::uint16_t glyph : glyphs_)
        digest.add(glyph, glyph);
    return digest;
}

GlyphDigest TTI_CoverageFormat2::digest() const {
    std::uint16_t first = 0xFFFF;
    std::uint16_t last = 0;
    for (std::size_t i = 0; i < ranges_.size(); ++i) {
        const GlyphRange range = ranges_[i];
        if (range.start <= range.end) {
            first = std::min(first, range.start);
            last = std::max(last, range.end);
        }
    }
    if (first > last)
        return {};
    GlyphDigest digest(first, last);
    for (std::size_t i = 0; i < ranges_.size(); ++i) {
        const GlyphRange range = ranges_[i];
        if (range.start <= range.end)
            digest.add(range.start, range.end);
    }
    return digest;
}

GlyphDigest TTI_Coverage::digest() const {
    return std::visit([](const auto& format) { return format.digest(); }, format_);
}

std::size_t TTI_Coverage::byteSize() const {
    return std::visit([](const auto& format) { return format.byteSize(); }, format_);
}

} // namespace KWFontService_NS
