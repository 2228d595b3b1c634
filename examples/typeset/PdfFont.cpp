#include "PdfFont.h"

#include "Failure.h"
#include "FontFile.h"

#include <KWCommon15/KWMemStream.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <utility>
#include <vector>

namespace typeset {

using namespace KWFontService_NS;

namespace {

// FontDescriptor flags (ISO 32000-1, table 123).
constexpr int kFixedPitch = 1 << 0;
constexpr int kSerif = 1 << 1;
constexpr int kSymbolic = 1 << 2; // glyphs outside the standard Latin set
constexpr int kScript = 1 << 3;
constexpr int kItalic = 1 << 6;

/// Two or four bytes of a font table; 0 when the font program has no such table or is too short.
std::int32_t tableValue(const std::string& sfnt, const std::string& tag, std::size_t offset,
                        std::size_t size) {
    const auto number = [&](std::size_t at, std::size_t bytes) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i)
            value =
                value << 8 | static_cast<unsigned char>(at + i < sfnt.size() ? sfnt[at + i] : 0);
        return value;
    };
    for (std::size_t i = 0, count = number(4, 2); i < count; ++i) {
        const std::size_t record = 12 + 16 * i;
        if (sfnt.compare(std::min(record, sfnt.size()), 4, tag) == 0) {
            const std::uint32_t value = number(number(record + 8, 4) + offset, size);
            return size == 2 ? static_cast<std::int16_t>(value) : static_cast<std::int32_t>(value);
        }
    }
    return 0;
}

double capHeight(const FS_FontInfo& font, double perMille) {
    if (const float known = font.getCapHeight(); known > 0)
        return 1000 * double{known};
    // Older fonts do not say; a capital without overshoot does.
    FS_GlyphDrawInfo info;
    const unsigned short gid = font.getGlyphID('H', false);
    if (gid != FS_NO_GLYPH && font.getGlyphDrawInfo(gid, info, false))
        return double{info.outlineYMax} * perMille;
    return 700;
}

/// A subset with the glyphs, or the font file itself.
std::string makeProgram(const FontFile& font, const UsedGlyphs& glyphs, bool subset) {
    std::vector<unsigned short> gids;
    gids.reserve(glyphs.size());
    for (const auto& [gid, glyph] : glyphs)
        gids.push_back(gid);
    KWCommonNS::KWMemStream stream;
    const bool written =
        subset ? font.info.getEmbedFont(gids, stream) : font.info.getEmbedFontStream(stream);
    const char* data = stream.data();
    if (!written || data == nullptr)
        throw Failure(ExitCode::font, font.path + ": cannot make a font program to embed");
    return {data, stream.size()};
}

int descriptorFlags(const FS_FontInfo& font, bool italic) {
    int flags = kSymbolic;
    flags |= font.isFixedWidthFont() ? kFixedPitch : 0;
    flags |= font.isSerifLikeFont() ? kSerif : 0;
    flags |= font.isScriptLikeFont() ? kScript : 0;
    flags |= italic ? kItalic : 0;
    return flags;
}

std::string postScriptName(const FS_FontInfo& font) {
    std::string out;
    for (const char c : toUtf8(font.getPostScriptName(0))) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-')
            out += c;
    }
    return out.empty() ? "Unnamed" : out;
}

} // namespace

std::u16string plainText(const PlacedGlyph& glyph) {
    return glyph.text == u"\u00A0" ? u" " : glyph.text;
}

UsedGlyphs usedGlyphs(const Layout& layout, std::size_t font) {
    UsedGlyphs glyphs;
    std::vector<std::pair<unsigned short, std::u16string>> parts; // of clusters, seen later
    for (const Page& page : layout.pages) {
        for (const Line& line : page.lines) {
            for (const Span& span : line.spans) {
                if (span.font != font)
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

PdfFont makePdfFont(const FontFile& font, const UsedGlyphs& glyphs, bool wholeFont) {
    const FS_FontInfo& info = font.info;
    const int unitsPerEm = info.getUnitsPerEm();
    const double perMille = unitsPerEm > 0 ? 1000.0 / unitsPerEm : 1;
    int weight = 0;
    bool italic = false;
    info.getFontStyle(&weight, &italic, nullptr);
    FS_GlyphDrawInfo face;
    if (!info.getGlyphDrawInfo(0, face, false))
        throw Failure(ExitCode::font, font.path + ": its first glyph cannot be read");

    PdfFont pdf;
    pdf.glyphs = glyphs;
    pdf.subset = !wholeFont && font.maySubset;
    pdf.program = makeProgram(font, glyphs, pdf.subset);
    pdf.name = (pdf.subset ? subsetTag(glyphs) + "+" : std::string()) + postScriptName(info);
    pdf.flags = descriptorFlags(info, italic);
    pdf.box = {face.xMin * perMille, face.yMin * perMille, face.xMax * perMille,
               face.yMax * perMille};
    // These three stand in tables that the embedded program always carries.
    pdf.ascent = tableValue(pdf.program, "hhea", 4, 2) * perMille;
    pdf.descent = tableValue(pdf.program, "hhea", 6, 2) * perMille;
    pdf.italicAngle = tableValue(pdf.program, "post", 4, 4) / 65536.0;
    pdf.capHeight = capHeight(info, perMille);
    // Nothing in a TrueType font gives the stem width; this follows the weight well enough.
    pdf.stemV = 50 + (weight / 65.0) * (weight / 65.0);
    return pdf;
}

} // namespace typeset
