#include "UsedGlyphs.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace typeset {

std::u16string plainText(const PlacedGlyph& glyph) {
    return glyph.text == u"\u00A0" ? u" " : glyph.text;
}

namespace {

/// Of the lines from one to before another.
UsedGlyphs usedGlyphs(const Layout& layout, std::size_t font, std::size_t begin, std::size_t end) {
    UsedGlyphs glyphs;
    std::size_t number = 0;
    std::vector<std::pair<unsigned short, std::u16string>> parts; // of clusters, seen later
    for (const Page& page : layout.pages) {
        for (const Line& line : page.lines) {
            const bool counts = number >= begin && number < end;
            ++number;
            for (const Span& span : line.spans) {
                if (span.font != font || !counts)
                    continue;
                glyphs.try_emplace(0, UsedGlyph{u"\uFFFD", 0});
                for (std::size_t i = 0; i < span.glyphs.size(); ++i) {
                    const PlacedGlyph& glyph = span.glyphs[i];
                    const bool alone = !glyph.joined &&
                                       (i + 1 == span.glyphs.size() || !span.glyphs[i + 1].joined);
                    UsedGlyph& used = glyphs[glyph.gid];
                    used.advance = glyph.advance;
                    if (!alone)
                        parts.emplace_back(glyph.gid, plainText(glyph));
                    else if (used.text.empty())
                        used.text = plainText(glyph);
                }
            }
        }
    }
    for (auto& [gid, text] : parts) {
        if (glyphs[gid].text.empty())
            glyphs[gid].text = std::move(text);
    }
    return glyphs;
}

} // namespace

UsedGlyphs usedGlyphs(const Layout& layout, std::size_t font) {
    return usedGlyphs(layout, font, 0, layout.lineCount());
}

std::vector<UsedGlyphs> usedGlyphsOfHalves(const Layout& layout, std::size_t font) {
    const std::size_t half = (layout.lineCount() + 1) / 2;
    return {usedGlyphs(layout, font, 0, half), usedGlyphs(layout, font, half, layout.lineCount())};
}

std::vector<unsigned short> idsOf(const UsedGlyphs& glyphs) {
    std::vector<unsigned short> ids;
    ids.reserve(glyphs.size());
    for (const auto& [gid, glyph] : glyphs)
        ids.push_back(gid);
    return ids;
}

bool hasUpright(const Layout& layout, std::size_t font) {
    for (const Page& page : layout.pages) {
        for (const Line& line : page.lines) {
            for (const Span& span : line.spans) {
                if (span.font == font && span.writing == Writing::upright)
                    return true;
            }
        }
    }
    return false;
}

std::string subsetTag(const UsedGlyphs& glyphs) {
    std::uint64_t hash = 14695981039346656037U; // FNV-1a
    for (const auto& [gid, glyph] : glyphs) {
        for (const unsigned byte : {gid & 0xFFU, static_cast<unsigned>(gid) >> 8})
            hash = (hash ^ byte) * 1099511628211U;
    }
    std::string tag;
    for (int i = 0; i < 6; ++i, hash /= 26)
        tag += static_cast<char>('A' + hash % 26);
    return tag;
}

} // namespace typeset
