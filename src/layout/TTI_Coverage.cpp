#include "layout/TTI_Coverage.h"

namespace KWFontService_NS {

using KWCommonNS::ByteView;

TTI_CoverageFormat1::TTI_CoverageFormat1(ByteView table)
    : glyphs_(table, 4, table.u16(2).value_or(0)) {}

int TTI_CoverageFormat1::coverageIndex(unsigned short gid) const {
    std::size_t low = 0;
    std::size_t high = glyphs_.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const std::uint16_t glyph = glyphs_[middle];
        if (gid < glyph)
            high = middle;
        else if (gid > glyph)
            low = middle + 1;
        else
            return static_cast<int>(middle);
    }
    return -1;
}

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

TTI_CoverageFormat2::TTI_CoverageFormat2(ByteView table)
    : ranges_(table, 4, table.u16(2).value_or(0)) {}

int TTI_CoverageFormat2::coverageIndex(unsigned short gid) const {
    const auto range = ranges_.find(gid);
    return range ? range->value + gid - range->start : -1;
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

std::optional<TTI_Coverage> TTI_Coverage::read(ByteView table) {
    switch (table.u16(0).value_or(0)) {
    case 1:
        return TTI_Coverage(TTI_CoverageFormat1(table));
    case 2:
        return TTI_Coverage(TTI_CoverageFormat2(table));
    default:
        return std::nullopt;
    }
}

int TTI_Coverage::coverageIndex(unsigned short gid) const {
    return std::visit([gid](const auto& format) { return format.coverageIndex(gid); }, format_);
}

GlyphDigest TTI_Coverage::digest() const {
    return std::visit([](const auto& format) { return format.digest(); }, format_);
}

std::size_t TTI_Coverage::byteSize() const {
    return std::visit([](const auto& format) { return format.byteSize(); }, format_);
}

ByteView TTI_CoverageList::table(std::size_t i) const {
    const std::uint16_t offset = offsets_[i];
    return offset != 0 ? base_.from(offset) : ByteView();
}

bool TTI_CoverageList::covers(std::size_t i, unsigned short gid) const {
    const auto coverage = TTI_Coverage::read(table(i));
    return coverage && coverage->coverageIndex(gid) >= 0;
}

} // namespace KWFontService_NS
