#include "FontProgram.h"

#include "Failure.h"
#include "FontFile.h"

#include <KWCommon15/KWMemStream.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TYPE1_TABLES_H

#include <optional>
#include <set>

namespace typeset {

using namespace KWFontService_NS;
using KWCommonNS::KWMemStream;

namespace {

/// What one-byte codes can tell apart.
constexpr std::size_t kMostNamed = 256;

/// A CFF table as FreeType reads it. The service does not tell the names of glyphs.
class CffFace {
public:
    /// @param table  kept
    explicit CffFace(const std::string& table) {
        if (FT_Init_FreeType(&library_) == 0) {
            FT_New_Memory_Face(library_, reinterpret_cast<const FT_Byte*>(table.data()),
                               static_cast<FT_Long>(table.size()), 0, &face_);
        }
    }
    CffFace(const CffFace&) = delete;
    CffFace& operator=(const CffFace&) = delete;
    ~CffFace() {
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

std::vector<unsigned short> idsOf(const UsedGlyphs& glyphs) {
    std::vector<unsigned short> ids;
    ids.reserve(glyphs.size());
    for (const auto& [gid, glyph] : glyphs)
        ids.push_back(gid);
    return ids;
}

std::optional<std::string> bytesOf(bool written, KWMemStream& stream) {
    if (!written || stream.data() == nullptr)
        return std::nullopt;
    return std::string(stream.data(), stream.size());
}
std::optional<std::string> embedded(const FS_FontInfo& font, const UsedGlyphs& glyphs) {
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
std::optional<FontProgram> makeNamed(const FS_FontInfo& font, const UsedGlyphs& glyphs,
                                     bool subset) {
    const auto source = whole(font);
    auto bytes = subset ? embedded(font, glyphs) : source;
    if (glyphs.size() > kMostNamed || !source || !bytes || kindOf(*bytes) != FontProgram::Kind::cff)
        return std::nullopt;
    FontProgram program{FontProgram::Kind::named, *std::move(bytes)};
    const CffFace from(*source);
    const CffFace to(program.bytes);
    std::set<std::string> known;
    for (const auto& [gid, glyph] : glyphs) {
        std::string name = from.nameOf(gid);
        if (name.empty() || !to.hasGlyph(name) || !known.insert(name).second)
            return std::nullopt;
        program.codes[gid] = static_cast<unsigned short>(program.names.size());
        program.names.push_back(std::move(name));
    }
    program.italicAngle = to.italicAngle();
    return program;
}

/// The glyphs by their CIDs. A font of which the service makes no CFF subset goes in as an sfnt,
/// where glyphs keep their CIDs.
std::optional<FontProgram> makeCidKeyed(const FS_FontInfo& font, const UsedGlyphs& glyphs,
                                        bool subset) {
    if (subset) {
        // The CIDs of the subset are the glyph ids of the font.
        if (auto bytes = embedded(font, glyphs))
            return FontProgram{FontProgram::Kind::cff, *std::move(bytes)};
    }
    auto bytes = subset ? openTypeSubset(font, glyphs) : whole(font);
    if (!bytes)
        return std::nullopt;
    FontProgram program{kindOf(*bytes), *std::move(bytes), cidsOf(font, glyphs)};
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
                                        bool subset) {
    auto bytes = subset ? embedded(font, glyphs) : whole(font);
    if (!bytes)
        return std::nullopt;
    return FontProgram{FontProgram::Kind::trueType, *std::move(bytes)};
}

} // namespace

unsigned short FontProgram::codeOf(unsigned short gid) const {
    const auto found = codes.find(gid);
    return found == codes.end() ? gid : found->second;
}

FontProgram makeFontProgram(const FontFile& font, const UsedGlyphs& glyphs, bool subset,
                            bool upright) {
    std::optional<FontProgram> program;
    switch (font.info.getFontFileType2()) {
    case FS_FILETYPE_OPENTYPE:
        if (!upright)
            program = makeNamed(font.writer(), glyphs, subset);
        if (!program)
            program = makeByGlyphIds(font.writer(), glyphs, subset);
        break;
    case FS_FILETYPE_OPENTYPE_CID:
        program = makeCidKeyed(font.writer(), glyphs, subset);
        break;
    default:
        program = makeTrueType(font.writer(), glyphs, subset);
        break;
    }
    if (!program)
        throw Failure(ExitCode::font, font.path + ": cannot make a font program to embed");
    return *std::move(program);
}

} // namespace typeset
