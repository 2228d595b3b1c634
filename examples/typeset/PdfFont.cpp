#include "PdfFont.h"

#include "Failure.h"
#include "FontFile.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

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

int descriptorFlags(const FS_FontInfo& font, bool italic) {
    int flags = kSymbolic;
    flags |= font.isFixedWidthFont() ? kFixedPitch : 0;
    flags |= font.isSerifLikeFont() ? kSerif : 0;
    flags |= font.isScriptLikeFont() ? kScript : 0;
    flags |= italic ? kItalic : 0;
    return flags;
}

std::string postScriptName(const FontFile& font) {
    const std::string own = toUtf8(font.writer().getPostScriptName(0));
    std::string out;
    for (const char c : own.empty() ? font.name : own) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-')
            out += c;
    }
    return out.empty() ? "Unnamed" : out;
}

} // namespace

UsedGlyphs PdfFont::byCode() const {
    UsedGlyphs sorted;
    for (const auto& [gid, glyph] : glyphs)
        sorted[program.codeOf(gid)] = glyph;
    return sorted;
}

UsedGlyphs PdfFont::byCode(unsigned char part) const {
    UsedGlyphs sorted;
    for (const auto& [code, glyph] : byCode()) {
        if (code >> 8 == part)
            sorted[code & 0xFF] = glyph;
    }
    return sorted;
}

PdfFont makePdfFont(const FontFile& font, const UsedGlyphs& glyphs, bool wholeFont, bool upright,
                    const std::vector<UsedGlyphs>& parts) {
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
    pdf.program = makeFontProgram(font, glyphs, pdf.subset, upright, parts);
    pdf.name = (pdf.subset ? subsetTag(glyphs) + "+" : std::string()) + postScriptName(font);
    pdf.flags = descriptorFlags(info, italic);
    pdf.box = {face.xMin * perMille, face.yMin * perMille, face.xMax * perMille,
               face.yMax * perMille};
    if (pdf.program.kind == FontProgram::Kind::trueType ||
        pdf.program.kind == FontProgram::Kind::openType) {
        // These stand in tables that the embedded program always carries.
        const std::string& sfnt = pdf.program.bytes;
        pdf.ascent = tableValue(sfnt, "hhea", 4, 2) * perMille;
        pdf.descent = tableValue(sfnt, "hhea", 6, 2) * perMille;
        pdf.italicAngle = tableValue(sfnt, "post", 4, 4) / 65536.0;
    } else {
        pdf.ascent = 1000 * double{info.getTypoAscender()};
        pdf.descent = 1000 * double{info.getTypoDescender()};
        pdf.italicAngle = pdf.program.italicAngle;
    }
    if (pdf.ascent == 0 && pdf.descent == 0) {
        // Type 1 fonts tell no more than this.
        pdf.descent = pdf.box[1];
        pdf.ascent = pdf.box[3];
    }
    pdf.capHeight = capHeight(info, perMille);
    // Nothing that the service tells gives the stem width; this follows the weight well enough.
    pdf.stemV = 50 + (weight / 65.0) * (weight / 65.0);
    return pdf;
}

} // namespace typeset
