#pragma once

#include "FontFile.h"

#include <string>
#include <vector>

namespace typeset {

/// The fonts of a document: the first one sets the text, the last one the headings. They may be
/// the same one.
using FontSet = std::vector<FontFile>;

/// Which fonts a document wants: one file for everything, or fonts by their names.
struct FontChoice {
    std::string file;              // empty: the default font
    std::string config;            // of the font service; empty: its default
    FontRequest text;              // without a name: by file
    FontRequest headings{"", 700}; // without a name: set like the text

    bool byName() const { return !text.name.empty(); }
};

/// Opens the font service with a configuration. Throws `Failure` (font) when there is none at that
/// place or the service refuses it.
/// @return  messages about what went wrong without stopping it
std::vector<std::string> openService(const std::string& config);

/// Throws `Failure` (font); a font that is not found is told with the folders that were searched.
FontSet openFonts(const FontChoice& choice);

} // namespace typeset
