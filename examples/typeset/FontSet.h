#pragma once

#include "FontFace.h"
#include "FontFile.h"

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace typeset {

/// The fonts of a document.
struct FontSet {
    std::vector<FontFile> files; // never empty; the first one sets the text
    std::size_t headings = 0;    // index of the one that sets the headings
    /// Index of the first one that stands in for characters that these have not; those behind it
    /// do so in their order.
    std::size_t fallbacks = std::numeric_limits<std::size_t>::max();

    /// Keeps the fonts that the document brought along.
    KWFontService_NS::FS_ExtraFontManager faces{};

    std::size_t size() const { return files.size(); }
    const FontFile& operator[](std::size_t index) const { return files[index]; }
    FontFile& operator[](std::size_t index) { return files[index]; }
};

/// Which fonts a document wants, by their files or by their names.
struct FontChoice {
    std::vector<std::string> files;     // empty: the default font; all but the first: fallbacks
    std::string config;                 // of the font service; empty: its default
    FontRequest text;                   // without a name: by file
    std::vector<FontFace> faces;        // that the document brings, found before all others
    std::vector<std::string> fallbacks; // names, in the style of the text
    FontRequest headings{"", 700};      // without a name: set like the text

    bool byName() const { return !text.name.empty(); }
};

/// Opens the font service with a configuration. Throws `Failure` (font) when there is none at that
/// place or the service refuses it.
/// @return  messages about what went wrong without stopping it
std::vector<std::string> openService(const std::string& config);

/// Throws `Failure` (font); a font that is not found is told with the folders that were searched.
FontSet openFonts(const FontChoice& choice);

/// Adds the fonts that the service knows for characters of a text that end users have defined, as
/// the last of the fallbacks. Throws `Failure` (font) when one may not be embedded.
void addPrivateUseFonts(FontSet& fonts, const icu::UnicodeString& text);

} // namespace typeset
