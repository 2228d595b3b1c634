#pragma once

#include "type1/Type1FileError.h"
#include "type1/Type1KernPairs.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <vector>

namespace KWFontService_NS {

/// What a PFM file says of a font (the Windows printer font metrics format, little-endian). Lengths
/// are in units of the font. Fields have the names of the format.
struct PFMFile {
    UnicodeString copyright;
    float dfAscent = 0;
    float dfInternalLeading = 0;
    bool dfItalic = false;
    int dfWeight = 0;
    std::uint8_t dfCharSet = 0;
    std::uint16_t dfPixWidth = 0;
    std::uint16_t dfPixHeight = 0;
    std::uint8_t dfPitchAndFamily = 0;
    float dfAvgWidth = 0;
    float dfMaxWidth = 0;
    int dfFirstChar = 0;
    int dfLastChar = 0;
    std::uint8_t dfBreakChar = 0;
    UnicodeString deviceName;
    UnicodeString faceName;
    UnicodeString postScriptName;
    float xHeight = 0; ///< in em; 0 when the file does not say

    /// Of the codes from `dfFirstChar` on; none when every character is `dfPixWidth` wide.
    std::optional<std::vector<std::uint16_t>> extents;
    Type1KernPairs kernPairs; ///< by codes

    bool hasCode(int code) const { return code >= dfFirstChar && code <= dfLastChar; }
    /// The advance of a code; 0 for one that the file does not have.
    int widthOf(int code) const;
};

/// Reads a PFM file, whose offsets count from the start of the stream.
/// @param mendRange  replaces a `dfLastChar` that is not above `dfFirstChar` by 255, then a
///                   `dfFirstChar` that is not 32 by 32
/// @return           nothing for success
std::optional<Type1FileError> readPFM(std::istream& stream, bool mendRange, PFMFile& file);

} // namespace KWFontService_NS
