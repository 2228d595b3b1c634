#pragma once

#include "UsedGlyphs.h"

#include <array>
#include <cstddef>
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

/// A font file whose glyphs have codes of one byte (ISO 32000-1, 9.6).
struct SimpleFont {
    std::string bytes;
    /// By code, where it is not the font's own encoding that says it.
    std::map<unsigned char, std::string> names{};
    /// Of a Type 1 font program: its clear text, its enciphered part and its trailer.
    std::array<std::size_t, 3> lengths{};
};

/// A font program to embed, and the codes that its glyphs have in text.
struct FontProgram {
    enum class Kind {
        trueType, ///< an sfnt with `glyf`
        cff,      ///< a CFF table; the codes are CIDs, or glyph ids where the font has no CIDs
        openType, ///< an sfnt with `CFF `; codes as before
        named,    ///< a CFF table whose glyphs go by their names, as one simple font
        type1,    ///< Type 1 font programs, as many as the codes need
    };
    Kind kind = Kind::trueType;
    std::string bytes; ///< empty where there are `parts`
    /// The simple fonts, by the upper byte of the codes of their glyphs.
    std::map<unsigned char, SimpleFont> parts{};
    /// By glyph id, where the codes are others than the glyph ids.
    std::map<unsigned short, unsigned short> codes{};
    CidSystem system{};
    /// Degrees, against the clock.
    double italicAngle = 0;
    /// Bytes of the subsets that it was joined of; none where it was written as one.
    std::vector<std::size_t> joinedOf{};

    unsigned short codeOf(unsigned short gid) const;
    bool isSimple() const { return kind == Kind::named || kind == Kind::type1; }
    /// Bytes of all font files.
    std::size_t size() const;
};

/// Asks the library for a subset with the glyphs, or for the whole font. Throws `Failure` (font)
/// when it cannot write it.
/// @param upright  columns are set in it, for which one-byte codes have no form
/// @param parts    the glyphs by the parts of a document, whose subsets are to be joined; where
///                 they cannot be, and for none, there is one subset of all glyphs
FontProgram makeFontProgram(const FontFile& font, const UsedGlyphs& glyphs, bool subset,
                            bool upright, const std::vector<UsedGlyphs>& parts = {});

} // namespace typeset
