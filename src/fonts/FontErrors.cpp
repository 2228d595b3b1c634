#include "fonts/FontErrors.h"

namespace KWFontService_NS {

namespace {

struct FontErrorRow {
    FS_ERROR code;
    const char* message;
};

constexpr FontErrorRow kFontErrors[] = {
    {FS_ERROR_FONT_READ, "Font read error"},
    {FS_ERROR_GLYPH_LIST_OPEN, "Glyph-list open error"},
    {FS_ERROR_GLYPH_LIST_READ, "Glyph-list read error"},
    {FS_ERROR_PRINTER_FONT, "Cannot read printer font"},
    {FS_ERROR_FONT_INFORMATION, "Cannot read font information"},
    {FS_ERROR_FONT_FILE, "Font file error"},
    {FS_ERROR_FONT_FILE_2, "Font file error"},
    {FS_ERROR_FONT_FACE_REGISTERED,
     "Already registered font-face font with different font-weight/style"},
    {FS_ERROR_FONT_FACE_OPEN, "Cannot open font-face font"},
    {FS_ERROR_FONT_FACE_CREATE, "Cannot create font-face font"},
    {FS_ERROR_FONT_FACE_INFORMATION, "Cannot read font-face font information"},
    {FS_ERROR_UNSUPPORTED_FONT, "Unsupported font"},
    {FS_ERROR_UNSUPPORTED_FONT_FACE, "Unsupported font-face font"},
};

} // namespace

UnicodeString fontErrorMessage(FS_ERROR code) {
    for (const FontErrorRow& row : kFontErrors) {
        if (row.code == code)
            return UnicodeString(row.message);
    }
    return UnicodeString("FontService unknown error");
}

UnicodeString fontErrorText(FS_ERROR code, const UnicodeString& detail,
                            const UnicodeString& localPath) {
    UnicodeString text = fontErrorMessage(code);
    if (detail.isEmpty())
        text.append(u'.');
    else
        text.append(u": ", 2).append(detail);
    return text.append(u'\n').append(localPath);
}

KWCommonNS::KWError makeFontError(FS_ERROR code, const UnicodeString& detail,
                                  const UnicodeString& localPath) {
    return KWCommonNS::KWError(code, fontErrorText(code, detail, localPath));
}

KWCommonNS::KWError cannotReadFontError(const KWCommonNS::KWUri& uri) {
    const UnicodeString path = uri.getLocalPath();
    UnicodeString detail("Cannot read font: ");
    return makeFontError(FS_ERROR_FONT_READ, detail.append(path).append(u'\n'), path);
}

} // namespace KWFontService_NS
