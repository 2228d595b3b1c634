#include "FontFace.h"

#include "Failure.h"
#include "FontFile.h"
#include "Numbers.h"

namespace typeset {

using namespace KWFontService_NS;

namespace {

/// The service knows the media types of older days alone.
FS_FontFileType typeOf(const std::string& url) {
    for (const char* const woff : {"data:font/woff", "data:application/font-woff"}) {
        const std::size_t end = std::string(woff).size();
        if (url.starts_with(woff) &&
            (url.compare(end, 1, ";") == 0 || url.compare(end, 1, ",") == 0))
            return FS_FILETYPE_WOFF;
    }
    return FS_FILETYPE_REQUEST_TRUETYPE;
}

} // namespace

FontFace parseFontFace(const std::string& text) {
    std::string fields[3];
    std::size_t at = 0;
    for (std::string& field : fields) {
        const std::size_t end = text.find(';', at);
        if (end == std::string::npos)
            throw Failure(ExitCode::usage,
                          "--font-face wants 'Family;weight;italic;URL', not '" + text + "'");
        field = text.substr(at, end - at);
        at = end + 1;
    }
    FontFace face{fields[0], 0, -1, text.substr(at)};
    if (face.family.empty() || face.url.empty())
        throw Failure(ExitCode::usage, "--font-face wants a family and a URL in '" + text + "'");
    if (!fields[1].empty())
        face.weight = parseNumber(ExitCode::usage, "the weight of --font-face", fields[1], 1, 1000);
    if (!fields[2].empty())
        face.italic = parseNumber(ExitCode::usage, "italic of --font-face", fields[2], 0, 1);
    return face;
}

void addFontFaces(FS_ExtraFontManager& fonts, const std::vector<FontFace>& faces) {
    for (const FontFace& face : faces) {
        KWError error;
        if (fonts.appendExtraFont(icu::UnicodeString::fromUTF8(face.url),
                                  icu::UnicodeString::fromUTF8(face.family), face.weight,
                                  face.italic, typeOf(face.url), &error) < 0)
            throw Failure(ExitCode::font, toUtf8(error.getMessage()));
    }
}

} // namespace typeset
