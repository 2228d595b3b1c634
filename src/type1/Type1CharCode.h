#pragma once

#include "type1/GlyphListFile.h"
#include "type1/Type1CodeMap.h"
#include "type1/Type1Metrics.h"

#include <KWFontService17/FS_Types.h>

#include <map>
#include <string>

namespace KWFontService_NS {

/// The scheme of the name of a Type 1 font's encoding, letter for letter.
FS_EncodingScheme encodingSchemeOf(const UnicodeString& name);

/// The names that a font program has for its own codes.
using Type1BuiltInNames = std::map<int, std::string>;

/// What the lookup of a code, or of a width, asks of a font. What is pointed at outlives the
/// lookup.
struct Type1CodeSource {
    bool isSymbolic = false;
    bool skipGlyphNameMapping = false;               ///< characters are plain codes
    const Type1GlyphList* glyphList = nullptr;       ///< null: the configuration has none
    const Type1Metrics* metrics = nullptr;           ///< null: nothing is known of the glyphs
    const Type1BuiltInNames* builtInNames = nullptr; ///< null: there is no font program
    FS_EncodingScheme scheme = FS_ENCODING_STANDARD;

    /// The character that counts: a symbolic font has U+F020 for its code 0x20.
    int settled(int ch) const;
    bool isListed(int ch) const;
    /// The record by the name that the configuration gives to a settled character; null when there
    /// is none.
    const Type1CharMetric* findListed(int ch) const;
    /// The record by the Adobe name of a settled character that the configuration does not list;
    /// null when there is none.
    const Type1CharMetric* findNamed(int ch) const;
};

/// The two-byte code of a character, handed out on first use; 0 when it has none.
unsigned short findType1CharCode(Type1CodeMap& codes, const Type1CodeSource& font, int ch);

} // namespace KWFontService_NS
