#pragma once

#include "type1/Type1FileError.h"
#include "type1/Type1Text.h"

#include <KWFontService17/FS_Export.h>

#include <iosfwd>
#include <optional>
#include <string_view>

namespace KWFontService_NS {

/// What the clear text at the head of a font program says (Adobe Type 1 Font Format, chapter 2).
/// Angles are in degrees, lengths in units of the font.
struct PrinterFontHead {
    UnicodeString postScriptName;
    UnicodeString fullName;
    UnicodeString familyName;
    UnicodeString weightName;
    int weight = 0; ///< CSS weight of the weight name
    float italicAngle = 0;
    bool isFixedPitch = false;
    float underlinePosition = 0;
    float underlineThickness = 0;
    UnicodeString encodingName;
    bool isStandardEncoding = true;
    bool isSymbolic = false;
    Type1Box fontBBox;
};

/// Reads the head of a program in hexadecimal text from the stream's position up to the line with
/// "currentfile" or the end. Values stand as they are in the file, strings with their parentheses;
/// a `def`, `readonly def`, `ND` or `|-` at their end does not belong to them. Only the first
/// `kMaxPrinterFontLine` bytes of a line count.
/// @return nothing for success
std::optional<Type1FileError> scanPFAHead(std::istream& stream, PrinterFontHead& head);

/// Reads the head of a program in segments: the first segment, from the stream's position on.
/// @return nothing for success
std::optional<Type1FileError> scanPFBHead(std::istream& stream, PrinterFontHead& head);

} // namespace KWFontService_NS
