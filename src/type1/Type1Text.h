#pragma once

#include <KWFontService17/FS_Export.h>

#include <array>
#include <optional>
#include <string_view>

namespace KWFontService_NS {

// What AFM files and the heads of Type 1 programs are read with. Texts are bytes; nothing here
// depends on the locale.

/// Blank, tab, CR and LF.
constexpr bool isType1Separator(char ch) {
    return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n';
}

/// The text without the separators at both ends.
std::string_view trimSeparators(std::string_view text);

/// Cuts the first word, separators before it included, off the text; empty when there is none.
std::string_view cutWord(std::string_view& text);

/// The number that a text begins with, separators before it passed by, as `atof` reads a decimal
/// one; 0 when there is none and when it is beyond what a float holds.
float leadingNumber(std::string_view text);

/// The integer that a text begins with, separators before it passed by, as `atoi` reads one; 0 when
/// there is none, and the nearest there is when it is beyond what an int holds.
int leadingInteger(std::string_view text, int base = 10);

/// True when the letters "true" stand anywhere in the text, in either case.
bool holdsTrue(std::string_view text);

/// The corners of a `FontBBox`, in units of the font, y up.
struct Type1Box {
    float left = 0;
    float bottom = 0;
    float right = 0;
    float top = 0;

    float height() const { return top - bottom; }
    std::array<float, 4> corners() const { return {left, bottom, right, top}; }
    friend bool operator==(const Type1Box&, const Type1Box&) = default;
};

/// Four words as numbers, left, bottom, right and top; nothing when there are more or fewer words.
std::optional<Type1Box> readType1Box(std::string_view text);

/// Each byte as the character of ISO Latin 1 that it is.
UnicodeString textOfBytes(std::string_view bytes);

/// The style of a Type 1 font by its names: the weight name of one that is called like its family;
/// else what the full name has behind the family name; empty when it does not begin with it.
UnicodeString type1SubFamilyName(const UnicodeString& fullName, const UnicodeString& familyName,
                                 const UnicodeString& weightName);

} // namespace KWFontService_NS
