#pragma once

#include <iosfwd>
#include <map>
#include <string>

namespace KWFontService_NS {

/// The glyph names that a configuration gives to the characters of a font.
using Type1GlyphList = std::map<int, std::string>;

/// Reads a list of lines `0041;A` (Adobe Glyph List): a value in hexadecimal, a semicolon, the name
/// up to another semicolon. Lines end in LF, CR or CRLF. Lines that begin with "#" or white space
/// and lines of any other form are passed by, and of two lines for a value the first one counts.
/// Names stop counting at `kMaxGlyphNameLength` bytes: longer ones are passed by.
/// @param list  added to
/// @return      false when the stream fails; its end is no failure
bool readGlyphList(std::istream& stream, Type1GlyphList& list);

} // namespace KWFontService_NS
