#include "cff/CFFCharset.h"

#include <algorithm>

namespace KWFontService_NS {

namespace {

bool readValues(CFFCursor& cursor, std::size_t count, CFFCharset& out) {
    while (out.values.size() < count) {
        const auto value = cursor.u16();
        if (!value)
            return false;
        out.values.push_back(*value);
    }
    return true;
}

bool readRanges(CFFCursor& cursor, bool wide, std::uint32_t glyphCount, CFFCharset& out) {
    std::uint32_t glyph = 1;
    while (glyph < glyphCount) {
        const auto first = cursor.u16();
        std::optional<std::uint32_t> left;
        if (wide)
            left = cursor.u16();
        else
            left = cursor.u8();
        if (!first || !left)
            return false;
        const std::uint32_t more = std::min({*left, glyphCount - 1 - glyph, 0xFFFFU - *first});
        const auto firstGlyph = static_cast<std::uint16_t>(glyph);
        out.byValue.push_back({*first, static_cast<std::uint16_t>(*first + more), firstGlyph});
        out.byGlyph.push_back({firstGlyph, static_cast<std::uint16_t>(glyph + more), *first});
        // Glyphs whose value would lie beyond 65535 have none, but they count.
        glyph += *left + 1;
    }
    return true;
}

} // namespace

std::optional<CFFCharset> readCharset(CFFStream& table, std::uint64_t offset,
                                      std::uint16_t glyphCount) {
    CFFCursor cursor(table, offset);
    const auto format = cursor.u8();
    if (!format || *format > 2)
        return std::nullopt;
    CFFCharset out;
    const bool ok = *format == 0 ? readValues(cursor, std::max<std::size_t>(glyphCount, 1) - 1, out)
                                 : readRanges(cursor, *format == 2, glyphCount, out);
    if (!ok)
        return std::nullopt;
    std::ranges::stable_sort(out.byValue, {}, &CharsetRange::first);
    out.values.shrink_to_fit();
    out.byValue.shrink_to_fit();
    out.byGlyph.shrink_to_fit();
    return out;
}

std::uint16_t findInRanges(const std::vector<CharsetRange>& ranges, std::uint16_t wanted,
                           std::uint16_t missing) {
    const auto behind = std::ranges::upper_bound(ranges, wanted, {}, &CharsetRange::first);
    if (behind == ranges.begin())
        return missing;
    const CharsetRange& range = *std::prev(behind);
    if (wanted > range.last)
        return missing;
    return static_cast<std::uint16_t>(range.start + (wanted - range.first));
}

std::optional<std::vector<std::uint8_t>> readEncoding(CFFStream& table, std::uint64_t offset) {
    CFFCursor cursor(table, offset);
    const auto format = cursor.u8();
    const auto count = cursor.u8();
    if (!count)
        return std::nullopt;
    std::vector<std::uint8_t> codes;
    for (unsigned i = 0; i < *count; ++i) {
        const auto first = cursor.u8();
        if (!first)
            return std::nullopt;
        const auto left = *format != 0 ? cursor.u8() : std::uint8_t{0};
        if (!left)
            return std::nullopt;
        for (unsigned more = 0; more <= *left; ++more)
            codes.push_back(static_cast<std::uint8_t>(*first + more));
    }
    codes.shrink_to_fit();
    return codes;
}

} // namespace KWFontService_NS
