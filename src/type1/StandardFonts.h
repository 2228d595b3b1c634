#pragma once

#include <KWFontService17/FS_Export.h>

#include <cstdint>

namespace KWFontService_NS {

/// One of the 14 fonts that every PDF viewer has (PDF 1.7, 9.6.2.2), in thousandths of the em.
struct Type1StandardFont {
    const char* name;
    std::int16_t ascent;
    std::int16_t descent; ///< below the baseline, above 0
    std::int16_t top;
    std::int16_t bottom;
    std::int16_t left;
    std::int16_t right;
    float italicAngle;
};

/// The standard font of a PostScript name, as `normaliseFontName` leaves it; null when it is none.
const Type1StandardFont* findStandardFont(const UnicodeString& normalisedName);

} // namespace KWFontService_NS
