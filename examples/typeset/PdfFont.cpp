#include "PdfFont.h"

#include "Failure.h"

#include <KWCommon15/KWMemStream.h>

#include <cctype>
#include <cstdint>
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

QPDFObjectHandle name(const std::string& text) {
    return QPDFObjectHandle::newName("/" + text);
}
QPDFObjectHandle integer(long long value) {
    return QPDFObjectHandle::newInteger(value);
}
QPDFObjectHandle real(double value) {
    return QPDFObjectHandle::newReal(value, 3, true);
}

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

QPDFObjectHandle makeDescriptor(QPDF& pdf, const FS_FontInfo& font, const std::string& fontName,
                                const FontProgram& program) {
    const int unitsPerEm = font.getUnitsPerEm();
    const double perMille = unitsPerEm > 0 ? 1000.0 / unitsPerEm : 1;
    int weight = 0;
    bool italic = false;
    font.getFontStyle(&weight, &italic, nullptr);

    int flags = kSymbolic;
    flags |= font.isFixedWidthFont() ? kFixedPitch : 0;
    flags |= font.isSerifLikeFont() ? kSerif : 0;
    flags |= font.isScriptLikeFont() ? kScript : 0;
    flags |= italic ? kItalic : 0;

    QPDFObjectHandle box = QPDFObjectHandle::newArray();
    FS_GlyphDrawInfo face;
    if (!font.getGlyphDrawInfo(0, face, false))
        throw Failure(ExitCode::font, "the font's first glyph cannot be read");
    for (const int edge : {face.xMin, face.yMin, face.xMax, face.yMax})
        box.appendItem(real(edge * perMille));

    QPDFObjectHandle file = QPDFObjectHandle::newStream(&pdf, program.bytes);
    file.getDict().replaceKey("/Length1", integer(static_cast<long long>(program.bytes.size())));

    // These three stand in tables that the embedded program always carries.
    const double ascent = tableValue(program.bytes, "hhea", 4, 2) * perMille;
    const double descent = tableValue(program.bytes, "hhea", 6, 2) * perMille;
    const double italicAngle = tableValue(program.bytes, "post", 4, 4) / 65536.0;
    // Nothing in a TrueType font gives the stem width; this follows the weight well enough.
    const double stem = 50 + (weight / 65.0) * (weight / 65.0);

    QPDFObjectHandle descriptor = QPDFObjectHandle::newDictionary();
    descriptor.replaceKey("/Type", name("FontDescriptor"));
    descriptor.replaceKey("/FontName", name(fontName));
    descriptor.replaceKey("/Flags", integer(flags));
    descriptor.replaceKey("/FontBBox", box);
    descriptor.replaceKey("/ItalicAngle", real(italicAngle));
    descriptor.replaceKey("/Ascent", real(ascent));
    descriptor.replaceKey("/Descent", real(descent));
    descriptor.replaceKey("/CapHeight", real(capHeight(font, perMille)));
    descriptor.replaceKey("/StemV", real(stem));
    descriptor.replaceKey("/FontFile2", file);
    return pdf.makeIndirectObject(descriptor);
}

/// The W array: runs of glyph ids, each with the widths of its glyphs.
QPDFObjectHandle makeWidths(const UsedGlyphs& glyphs) {
    QPDFObjectHandle widths = QPDFObjectHandle::newArray();
    QPDFObjectHandle run;
    int next = -1;
    for (const auto& [gid, glyph] : glyphs) {
        if (gid != next) {
            run = QPDFObjectHandle::newArray();
            widths.appendItem(integer(gid));
            widths.appendItem(run);
        }
        run.appendItem(real(double{glyph.advance}));
        next = gid + 1;
    }
    return widths;
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

UsedGlyphs usedGlyphs(const Layout& layout) {
    UsedGlyphs glyphs{{0, {U'\uFFFD', 0}}};
    for (const Page& page : layout.pages) {
        for (const Line& line : page.lines) {
            for (const PlacedGlyph& glyph : line.glyphs) {
                // A no-break space is a space in the text that one reads back.
                const char32_t character = glyph.character == 0x00A0 ? U' ' : glyph.character;
                UsedGlyph& used =
                    glyphs.try_emplace(glyph.gid, UsedGlyph{character, 0}).first->second;
                used.advance = glyph.advance;
            }
        }
    }
    return glyphs;
}

FontProgram makeFontProgram(const FontFile& font, const UsedGlyphs& glyphs, bool wholeFont) {
    std::vector<unsigned short> gids;
    for (const auto& [gid, glyph] : glyphs)
        gids.push_back(gid);

    FontProgram program;
    program.subset = !wholeFont && font.maySubset;
    KWCommonNS::KWMemStream stream;
    const bool written = program.subset ? font.info.getEmbedFont(gids, stream)
                                        : font.info.getEmbedFontStream(stream);
    const char* data = stream.data();
    if (!written || data == nullptr)
        throw Failure(ExitCode::font, font.path + ": cannot make a font program to embed");
    program.bytes.assign(data, stream.size());
    return program;
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

QPDFObjectHandle makePdfFont(QPDF& pdf, const FontFile& font, const UsedGlyphs& glyphs,
                             const FontProgram& program) {
    const std::string baseFont =
        (program.subset ? subsetTag(glyphs) + "+" : std::string()) + postScriptName(font.info);

    QPDFObjectHandle system = QPDFObjectHandle::newDictionary();
    system.replaceKey("/Registry", QPDFObjectHandle::newString("Adobe"));
    system.replaceKey("/Ordering", QPDFObjectHandle::newString("Identity"));
    system.replaceKey("/Supplement", integer(0));

    QPDFObjectHandle cidFont = QPDFObjectHandle::newDictionary();
    cidFont.replaceKey("/Type", name("Font"));
    cidFont.replaceKey("/Subtype", name("CIDFontType2"));
    cidFont.replaceKey("/BaseFont", name(baseFont));
    cidFont.replaceKey("/CIDSystemInfo", system);
    cidFont.replaceKey("/CIDToGIDMap", name("Identity"));
    cidFont.replaceKey("/FontDescriptor", makeDescriptor(pdf, font.info, baseFont, program));
    cidFont.replaceKey("/W", makeWidths(glyphs));

    QPDFObjectHandle descendants = QPDFObjectHandle::newArray();
    descendants.appendItem(pdf.makeIndirectObject(cidFont));

    QPDFObjectHandle type0 = QPDFObjectHandle::newDictionary();
    type0.replaceKey("/Type", name("Font"));
    type0.replaceKey("/Subtype", name("Type0"));
    type0.replaceKey("/BaseFont", name(baseFont));
    type0.replaceKey("/Encoding", name("Identity-H"));
    type0.replaceKey("/DescendantFonts", descendants);
    type0.replaceKey("/ToUnicode", QPDFObjectHandle::newStream(&pdf, toUnicodeCMap(glyphs)));
    return pdf.makeIndirectObject(type0);
}

} // namespace typeset
