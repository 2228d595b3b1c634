#pragma once

#include "type1/Type1FileError.h"
#include "type1/Type1KernPairs.h"
#include "type1/Type1Metrics.h"
#include "type1/Type1Text.h"

#include <KWFontService17/FS_Types.h>

#include <iosfwd>
#include <optional>
#include <vector>

namespace KWFontService_NS {

/// What an AFM file says of a font as a whole (Adobe Technical Note 5004). Lengths are in units of
/// the font, y up; angles in degrees.
struct AFMHead {
    UnicodeString postScriptName;
    UnicodeString fullName;
    UnicodeString familyName;
    UnicodeString weightName;
    UnicodeString copyright;
    int weight = 0; ///< CSS weight of the weight name; 0 without one
    float italicAngle = 0;
    float underlinePosition = 0;
    float underlineThickness = 0;
    bool isFixedPitch = false;
    float capHeight = 0;
    float xHeight = 0; ///< in em
    float ascender = 0;
    float descender = 0;
    float stdHW = 0;
    float stdVW = 0;
    Type1Box fontBBox;
    int metricsSet = 0; ///< 0 horizontal, 1 vertical, 2 both
    UnicodeString encodingName;
    FS_EncodingScheme encodingScheme = FS_ENCODING_STANDARD;

    // Computed from the rest of the file.
    float externalLeading = 0; ///< what the box has beyond 1000
    float averageWidth = 0;
    float maximumWidth = 0;
    bool hasKernPairs = false; ///< of characters that have Unicode values
};

/// The glyphs of an AFM file.
struct AFMGlyphs {
    std::vector<Type1CharMetric> charMetrics;
    Type1KernPairs kernPairs; ///< by Unicode values
};

/// Reads an AFM file from the stream's position to the end. Lines end in LF, CR or CRLF, and of a
/// line only the first `kMaxMetricsLine` bytes count. What no keyword begins is passed by, so any
/// text is an AFM file; what a keyword forbids where it stands is an error with the number of its
/// line. A section that does not end has what was read of it; a stream that breaks is an error.
/// @param glyphs  null: the file is read and checked all the same, and only the head is kept
/// @return        nothing for success
std::optional<Type1FileError> readAFM(std::istream& stream, AFMHead& head, AFMGlyphs* glyphs);

} // namespace KWFontService_NS
