#pragma once

#include "type1/GlyphListFile.h"
#include "type1/Type1CodeMap.h"
#include "type1/Type1Metrics.h"

#include <map>
#include <string>

namespace KWFontService_NS {

/// How a Type 1 font says that its codes are meant.
enum Type1EncodingScheme : int {
    TYPE1_ENCODING_OTHER = 1,
    TYPE1_ENCODING_WINANSI = 2,
    TYPE1_ENCODING_MACROMAN = 3,
    TYPE1_ENCODING_MACEXPERT = 4,
    TYPE1_ENCODING_FONTSPECIFIC = 5,
};

/// The scheme of an encoding's name, letter for letter.
Type1EncodingScheme encodingSchemeOf(const UnicodeString& name);

/// The names that a font program has for its own codes.
using Type1BuiltInNames = std::map<int, std::string>;

/// What the lookup of a code asks of a font. What is pointed at outlives the lookup.
struct Type1CodeSource {
    bool isSymbolic = false;
    bool skipGlyphNameMapping = false;               ///< characters are plain codes
    const Type1GlyphList* glyphList = nullptr;       ///< null: the configuration has none
    const Type1Metrics* metrics = nullptr;           ///< null: nothing is known of the glyphs
    const Type1BuiltInNames* builtInNames = nullptr; ///< null: there is no font program
    Type1EncodingScheme scheme = TYPE1_ENCODING_OTHER;
};

/// The two-byte code of a character, handed out on first use; 0 when it has none.
unsigned short findType1CharCode(Type1CodeMap& codes, const Type1CodeSource& font, int ch);

} // namespace KWFontService_NS
