#pragma once

#include "shared/Utf8.h"

#include <KWFontService17/KWFontService.h>

#include <cstdint>
#include <optional>
#include <string>

namespace typeset {

/// A font that text is set in.
struct FontFile {
    KWFontService_NS::FS_FontInfo info;
    /// The file of a font that a document brought along as an sfnt: under the name of the document
    /// it has no names of its own, and not every writer. Without a font where `info` has them.
    KWFontService_NS::FS_FontInfo file;
    std::string name; // for people
    std::string path;
    std::uintmax_t bytes = 0;
    /// False when the font's licence wants it embedded whole or not at all (OS/2 fsType, bit 8).
    bool maySubset = true;
    /// What the configuration asks of whoever sets the font: a factor of every size, and how far
    /// its baseline stands above that of the line, in parts of the size.
    double sizeAdjust = 1;
    double baselineAdjust = 0;

    /// The font by which subsets are written.
    const KWFontService_NS::FS_FontInfo& writer() const {
        return file.isCreatedFont() ? file : info;
    }
};

/// A font as people speak of it: a name and a style.
struct FontRequest {
    std::string name; // UTF-8
    int weight = 400;
    bool italic = false;
    int stretch = 5;
};

/// Opens a file with one font; an empty path asks for the default one.
/// Throws `Failure` (font) when it is not there, no font that a PDF takes, or may not be embedded.
FontFile openFont(const std::string& path);

/// Finds a font among those that the font service knows, and opens it. Nothing when there is none;
/// throws `Failure` (font) when it cannot or may not be embedded.
/// @param extraFonts  those that the document brought along, which go before all others; may be
/// null
std::optional<FontFile> findFont(const FontRequest& request,
                                 KWFontService_NS::FS_ExtraFonts* extraFonts = nullptr);

using examples::toUtf8;

} // namespace typeset
