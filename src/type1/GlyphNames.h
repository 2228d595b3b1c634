#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace KWFontService_NS {

// Glyph names and characters (Adobe Glyph List). The tables are the same for every font; they are
// built once, by the first that asks, and any thread may ask.

inline constexpr std::size_t kFirstGlyphNames = 856;
inline constexpr std::size_t kSecondGlyphNames = 203;

/// Builds the tables now rather than with the first question.
void initType1Tables();

/// The glyph name of a character; empty when it has none.
std::string_view glyphNameOf(int ch);

/// The character of a glyph name; -1 when the list does not have the name.
int characterOf(std::string_view glyphName);

/// The character that stands in for one without a glyph name of its own, such as the space for the
/// no-break space; the character itself where there is none. For fonts that are not symbolic.
int substituteCharacter(int ch);

/// The glyph name that StandardEncoding has for a code; empty when it has none.
std::string_view standardName(std::uint8_t code);

/// The code that StandardEncoding has for a glyph name; 0 when it has none.
std::uint8_t standardCode(std::string_view glyphName);

} // namespace KWFontService_NS
