#include "FontFile.h"

#include "Failure.h"

#include <KWCommon15/KWCommon.h>
#include <KWCommon15/KWMemStream.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <istream>
#include <memory>
#include <vector>

namespace typeset {

using namespace KWFontService_NS;

namespace {

constexpr const char* kDefaultFont = "DejaVuSans.ttf";
/// What a configuration may ask of a font here: this many times its size, this many sizes up or
/// down.
constexpr double kMostSizeAdjust = 10;
constexpr double kMostBaselineAdjust = 2;
constexpr unsigned short kNoSubsetting = 0x0100; // OpenType OS/2 fsType

std::string findDefaultFont() {
    std::vector<std::filesystem::path> folders{
        "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/dejavu",
        "/usr/share/fonts/dejavu-sans-fonts", "/usr/share/fonts/TTF", "/usr/local/share/fonts"};
    if (const char* home = std::getenv("HOME"))
        folders.push_back(std::filesystem::path(home) / ".local/share/fonts");
    if (const char* windows = std::getenv("WINDIR"))
        folders.push_back(std::filesystem::path(windows) / "Fonts");
    std::string searched;
    for (const std::filesystem::path& folder : folders) {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(folder / kDefaultFont, ignored))
            return (folder / kDefaultFont).string();
        searched += "\n  " + folder.string();
    }
    throw Failure(ExitCode::font, std::string("there is no ") + kDefaultFont + " in" + searched +
                                      "\nInstall it (Debian: fonts-dejavu-core) or name a font "
                                      "font with --font.");
}

std::uintmax_t sizeOf(const KWUri& file) {
    const std::unique_ptr<std::istream> stream(file.getIStream());
    if (stream == nullptr || !stream->seekg(0, std::ios::end))
        return 0;
    return static_cast<std::uintmax_t>(stream->tellg());
}

/// Of the printer font, which lies beside the file that the font goes by.
std::uintmax_t type1Size(const FS_FontInfo& font) {
    KWCommonNS::KWMemStream stream;
    int lengths[3];
    font.getType1FontStream(stream, lengths[0], lengths[1], lengths[2]);
    return stream.size();
}

/// False for a font of a kind that does not go into a PDF here.
bool canEmbed(const FS_FontInfo& font) {
    switch (font.getFontFileType2()) {
    case FS_FILETYPE_TRUETYPE:
    case FS_FILETYPE_COLLECTION:
    case FS_FILETYPE_OPENTYPE:
    case FS_FILETYPE_OPENTYPE_CID:
    case FS_FILETYPE_DFONT:
    case FS_FILETYPE_AFM:
    case FS_FILETYPE_PFM:
        return true;
    default:
        return false;
    }
}

/// Checks that the font can go into a PDF, and notes what the example wants to know of it.
void complete(FontFile& font) {
    if (font.info.getFontFileType() == FS_FILETYPE_EXTRA)
        font.file.createFont(font.info.getFontFileName());
    if (font.name.empty())
        font.name = toUtf8(font.writer().getFullFontName(0));
    if (!canEmbed(font.info))
        throw Failure(ExitCode::font, font.path + " is a font of a kind that no PDF takes");
    font.bytes =
        font.info.isType1Font() ? type1Size(font.info) : sizeOf(font.info.getFontFileName());
    if (font.info.isType1Font() && font.bytes == 0)
        throw Failure(ExitCode::font, font.path + " has no printer font (.pfb) beside it");
    switch (font.info.getEmbedStatus()) {
    case FS_EMBED_OUTLINES:
        break;
    case FS_EMBED_BITMAP_ONLY:
        throw Failure(ExitCode::font,
                      font.path + ": its licence allows to embed bitmaps only, not outlines");
    case FS_EMBED_RESTRICTED:
        throw Failure(ExitCode::font, font.path + ": its licence does not allow to embed it");
    }
    font.maySubset = (font.info.getFontEmbeddingLicence() & kNoSubsetting) == 0;
    font.sizeAdjust = double{font.info.getFontSizeAdjust()};
    font.baselineAdjust = double{font.info.getBaselindAdjust()};
    if (font.sizeAdjust < 1 / kMostSizeAdjust || font.sizeAdjust > kMostSizeAdjust ||
        std::abs(font.baselineAdjust) > kMostBaselineAdjust) {
        throw Failure(ExitCode::font, font.path + ": the configuration asks for a size or a "
                                                  "baseline of this font that fits no page");
    }
}

} // namespace

FontFile openFont(const std::string& path) {
    FontFile font;
    font.path = path.empty() ? findDefaultFont() : path;
    // KWCStr takes a file name of any bytes; URISTR_LOCAL takes it as a path, whatever is in it.
    const KWUri uri(KWCommonNS::KWCStr(font.path.c_str()), KWCommonNS::URISTR_LOCAL);
    if (!font.info.createFont(uri)) {
        const std::string message = toUtf8(font.info.getError().getMessage());
        throw Failure(ExitCode::font, !message.empty() ? message
                                                       : font.path + " is no font file with a "
                                                                     "single font; those of a "
                                                                     "collection go by --family");
    }
    complete(font);
    return font;
}

std::optional<FontFile> findFont(const FontRequest& request, FS_ExtraFonts* extraFonts) {
    FontFile font;
    const auto name = icu::UnicodeString::fromUTF8(request.name);
    if (!font.info.createFont(name, request.weight, request.italic, request.stretch, extraFonts,
                              false)) {
        const KWError& error = font.info.getError();
        if (error.getCode() == FS_ERROR_NONE)
            return std::nullopt;
        throw Failure(ExitCode::font, toUtf8(error.getMessage()));
    }
    font.path = toUtf8(font.info.getFontFileName().getLocalPath());
    if (font.info.isExtraFont(nullptr, nullptr))
        font.name = request.name;
    complete(font);
    return font;
}

} // namespace typeset
