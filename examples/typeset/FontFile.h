#pragma once

#include <KWFontService17/KWFontService.h>

#include <cstdint>
#include <string>

namespace typeset {

/// The font that a document is set in.
struct FontFile {
    KWFontService_NS::FS_FontInfo info;
    std::string path;
    std::uintmax_t bytes = 0;
    /// False when the font's licence wants it embedded whole or not at all (OS/2 fsType, bit 8).
    bool maySubset = true;
};

/// Opens a TrueType font; an empty path asks for the default one. Throws `Failure` (font) when it
/// is not there, not a TrueType font, or may not be embedded.
FontFile openFont(const std::string& path);

std::string toUtf8(const icu::UnicodeString& text);

} // namespace typeset
