#pragma once

#include "UsedGlyphs.h"

#include <map>
#include <string>
#include <vector>

namespace typeset {

struct FontFile;

/// What CIDs are those of (ISO 32000-1, 9.7.3).
struct CidSystem {
    std::string registry = "Adobe";
    std::string ordering = "Identity";
    int supplement = 0;
};

/// A font program to embed, and the codes that its glyphs have in text.
struct FontProgram {
    enum class Kind {
        trueType, ///< an sfnt with `glyf`
        cff,      ///< a CFF table; the codes are CIDs, or glyph ids where the font has no CIDs
        openType, ///< an sfnt with `CFF `; codes as before
        named,    ///< a CFF table whose glyphs go by their names; the codes are our own, one byte
    };
    Kind kind = Kind::trueType;
    std::string bytes;
    /// By glyph id, where the codes are others than the glyph ids.
    std::map<unsigned short, unsigned short> codes{};
    /// Of `named`: the name of each code, from 0 on.
    std::vector<std::string> names{};
    CidSystem system{};
    /// Degrees, against the clock.
    double italicAngle = 0;

    unsigned short codeOf(unsigned short gid) const;
    int bytesOfCode() const { return kind == Kind::named ? 1 : 2; }
};

/// Asks the library for a subset with the glyphs, or for the whole font. Throws `Failure` (font)
/// when it cannot write it.
/// @param upright  columns are set in it, for which one-byte codes have no form
FontProgram makeFontProgram(const FontFile& font, const UsedGlyphs& glyphs, bool subset,
                            bool upright);

} // namespace typeset
