#include "FontProgram.h"

#include "Failure.h"
#include "FontFile.h"
#include "SubsetJoin.h"

#include <KWCommon15/KWMemStream.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TYPE1_TABLES_H

#include <algorithm>
#include <optional>
#include <set>

namespace typeset {

using namespace KWFontService_NS;
using KWCommonNS::KWMemStream;

namespace {

/// What one-byte codes can tell apart.
constexpr std::size_t kMostNamed = 256;

/// A CFF table or a Type 1 font program as FreeType reads it. The service does not tell the names
/// of glyphs.
class ProgramFace {
public:
    /// @param table  kept
    explicit ProgramFace(const std::string& table) {
        if (FT_Init_FreeType(&library_) == 0) {
            FT_New_Memory_Face(library_, reinterpret_cast<const FT_Byte*>(table.data()),
                               static_cast<FT_Long>(table.size()), 0, &face_);
        }
    }
    ProgramFace(const ProgramFace&) = delete;
    ProgramFace& operator=(const ProgramFace&) = delete;
    ~ProgramFace() {
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }

    /// Empty when it has none.
    std::string nameOf(unsigned short gid) const {
        char name[256] = "";
        if (face_ == nullptr || FT_Get_Glyph_Name(face_, gid, name, sizeof name) != 0)
            return {};
        return name;
    }
    bool hasGlyph(const std::string& name) const {
        return face_ != nullptr &&
               (name == ".notdef" || FT_Get_Name_Index(face_, name.c_str()) != 0);
    }
    double italicAngle() const {
        PS_FontInfoRec info{};
        if (face_ == nullptr || FT_Get_PS_Font_Info(face_, &info) != 0)
            return 0;
        return static_cast<double>(info.italic_angle) / 65536; // 16.16
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

std::optional<std::string> bytesOf(bool written, KWMemStream& stream) {
    if (!written || stream.data() == nullptr)
        return std::nullopt;
    return std::string(stream.data(), stream.size());
}
/// Joined of the parts, where there are any.
/// @param joinedOf  receives the sizes of the parts
std::optional<std::string> embedded(const FS_FontInfo& font, const UsedGlyphs& glyphs,
                                    const std::vector<UsedGlyphs>& parts, SubsetFormat format,
                                    std::vector<std::size_t>& joinedOf) {
    if (auto joined = joinSubsets(font, parts, format)) {
        joinedOf = std::move(joined->parts);
        return std::move(joined->bytes);
    }
    KWMemStream stream;
    return bytesOf(font.getEmbedFont(idsOf(glyphs), stream), stream);
}
std::optional<std::string> openTypeSubset(const FS_FontInfo& font, const UsedGlyphs& glyphs) {
    KWMemStream stream;
    return bytesOf(font.makeSubsetFont(idsOf(glyphs), stream), stream);
}
std::optional<std::string> whole(const FS_FontInfo& font) {
    KWMemStream stream;
    return bytesOf(font.getEmbedFontStream(stream), stream);
}

/// The whole font is a CFF table where the font has a file to itself, and else an sfnt.
FontProgram::Kind kindOf(const std::string& bytes) {
    return bytes.starts_with("OTTO") ? FontProgram::Kind::openType : FontProgram::Kind::cff;
}

std::map<unsigned short, unsigned short> cidsOf(const FS_FontInfo& font, const UsedGlyphs& glyphs) {
    std::map<unsigned short, unsigned short> cids{{0, 0}};
    for (unsigned cid = 1; cid <= 0xFFFF && cids.size() < glyphs.size(); ++cid) {
        const unsigned short gid = font.getGlyphIDfromCID(static_cast<unsigned short>(cid));
        if (glyphs.contains(gid))
            cids.try_emplace(gid, static_cast<unsigned short>(cid));
    }
    return cids;
}

/// The glyphs by their names in a CFF table. Nothing when there are too many for one-byte codes, or
/// when a name is missing or stands for two of them.
std::optional<FontProgram> makeNamed(const FS_FontInfo& font, const UsedGlyphs& glyphs, bool subset,
                                     const std::vector<UsedGlyphs>& parts) {
    FontProgram program;
    const auto source = whole(font);
    auto bytes = subset
                     ? embedded(font, glyphs, parts, SubsetFormat::cffWithNames, program.joinedOf)
                     : source;
    if (glyphs.size() > kMostNamed || !source || !bytes || kindOf(*bytes) != FontProgram::Kind::cff)
        return std::nullopt;
    program.kind = FontProgram::Kind::named;
    SimpleFont& simple = program.parts[0];
    simple.bytes = *std::move(bytes);
    const ProgramFace from(*source);
    const ProgramFace to(simple.bytes);
    std::set<std::string> known;
    for (const auto& [gid, glyph] : glyphs) {
        std::string name = from.nameOf(gid);
        if (name.empty() || !to.hasGlyph(name) || !known.insert(name).second)
            return std::nullopt;
        const auto code = static_cast<unsigned char>(simple.names.size());
        program.codes[gid] = code;
        simple.names[code] = std::move(name);
    }
    program.italicAngle = to.italicAngle();
    return program;
}

/// The code of a glyph by the character that it stands for; 0 when it has none.
unsigned short type1Code(const FS_FontInfo& font, unsigned short gid, const std::u16string& text) {
    const icu::UnicodeString characters(text.data(), static_cast<int>(text.size()));
    for (int i = 0; i < characters.length(); i = characters.moveIndex32(i, 1)) {
        const UChar32 character = characters.char32At(i);
        if (font.getGlyphID(character, false) == gid)
            return font.getType1CharCode(character);
    }
    return 0;
}

/// A file of three segments, which say their lengths, as a PDF has it: without their headers.
SimpleFont withoutSegments(const std::string& file, const std::array<int, 3>& lengths) {
    constexpr std::size_t kHeader = 6;
    SimpleFont font;
    std::size_t at = 0;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        font.lengths[i] = static_cast<std::size_t>(lengths[i]);
        font.bytes += file.substr(std::min(at + kHeader, file.size()), font.lengths[i]);
        at += kHeader + font.lengths[i];
    }
    return font;
}

/// The glyphs by the codes that the service gives their characters. Glyph 0, which no character
/// has, is code 0.
std::optional<FontProgram> makeType1(const FS_FontInfo& font, const UsedGlyphs& glyphs,
                                     bool subset) {
    FontProgram program;
    program.kind = FontProgram::Kind::type1;
    program.codes[0] = 0;
    std::map<unsigned char, std::string> used{{0, {}}};
    for (const auto& [gid, glyph] : glyphs) {
        if (gid == 0)
            continue;
        const unsigned short code = type1Code(font, gid, glyph.text);
        if (code == 0)
            return std::nullopt;
        program.codes[gid] = code;
        used[static_cast<unsigned char>(code >> 8)] += static_cast<char>(code & 0xFF);
    }
    for (const auto& [number, codes] : used) {
        KWMemStream stream;
        std::array<int, 3> lengths{};
        const bool written =
            subset ? font.getType1EmbedFont(number, codes.data(), static_cast<int>(codes.size()),
                                            stream, lengths[0], lengths[1], lengths[2])
                   : font.getType1FontStream(stream, lengths[0], lengths[1], lengths[2]);
        const auto file = bytesOf(written, stream);
        if (!file)
            return std::nullopt;
        SimpleFont& simple = program.parts[number] = withoutSegments(*file, lengths);
        for (const char code : codes) {
            const auto byte = static_cast<unsigned char>(code);
            if (std::string name; font.getType1GlyphName(number, byte, name))
                simple.names[byte] = name;
        }
        program.italicAngle = ProgramFace(*file).italicAngle();
    }
    program.parts[0].names[0] = ".notdef";
    return program;
}

/// The glyphs by their CIDs. A font of which the service makes no CFF subset goes in as an sfnt,
/// where glyphs keep their CIDs.
std::optional<FontProgram> makeCidKeyed(const FS_FontInfo& font, const UsedGlyphs& glyphs,
                                        bool subset, const std::vector<UsedGlyphs>& parts) {
    if (subset) {
        // The CIDs of the subset are the glyph ids of the font.
        FontProgram program;
        program.kind = FontProgram::Kind::cff;
        if (auto bytes =
                embedded(font, glyphs, parts, SubsetFormat::cffWithCids, program.joinedOf)) {
            program.bytes = *std::move(bytes);
            return program;
        }
    }
    auto bytes = subset ? openTypeSubset(font, glyphs) : whole(font);
    if (!bytes)
        return std::nullopt;
    FontProgram program{kindOf(*bytes), *std::move(bytes), {}, cidsOf(font, glyphs)};
    if (FS_CIDSystemInfo info; font.getCIDSystemInfo(info))
        program.system = {info.Registry, info.Ordering, info.Supplement};
    return program;
}

/// The glyphs by their ids, which stay the same.
std::optional<FontProgram> makeByGlyphIds(const FS_FontInfo& font, const UsedGlyphs& glyphs,
                                          bool subset) {
    auto bytes = subset ? openTypeSubset(font, glyphs) : whole(font);
    if (!bytes)
        return std::nullopt;
    return FontProgram{kindOf(*bytes), *std::move(bytes)};
}

std::optional<FontProgram> makeTrueType(const FS_FontInfo& font, const UsedGlyphs& glyphs,
                                        bool subset, const std::vector<UsedGlyphs>& parts) {
    FontProgram program;
    auto bytes = subset ? embedded(font, glyphs, parts, SubsetFormat::trueType, program.joinedOf)
                        : whole(font);
    if (!bytes)
        return std::nullopt;
    program.bytes = *std::move(bytes);
    return program;
}

} // namespace

unsigned short FontProgram::codeOf(unsigned short gid) const {
    const auto found = codes.find(gid);
    return found == codes.end() ? gid : found->second;
}

std::size_t FontProgram::size() const {
    std::size_t sum = bytes.size();
    for (const auto& [number, font] : parts)
        sum += font.bytes.size();
    return sum;
}

FontProgram makeFontProgram(const FontFile& font, const UsedGlyphs& glyphs, bool subset,
                            bool upright, const std::vector<UsedGlyphs>& parts) {
    std::optional<FontProgram> program;
    switch (font.info.getFontFileType2()) {
    case FS_FILETYPE_OPENTYPE:
        if (!upright)
            program = makeNamed(font.writer(), glyphs, subset, parts);
        if (!program)
            program = makeByGlyphIds(font.writer(), glyphs, subset);
        break;
    case FS_FILETYPE_OPENTYPE_CID:
        program = makeCidKeyed(font.writer(), glyphs, subset, parts);
        break;
    case FS_FILETYPE_AFM:
    case FS_FILETYPE_PFM:
        program = makeType1(font.writer(), glyphs, subset);
        break;
    default:
        program = makeTrueType(font.writer(), glyphs, subset, parts);
        break;
    }
    if (!program)
        throw Failure(ExitCode::font, font.path + ": cannot make a font program to embed");
    return *std::move(program);
}

} // namespace typeset
