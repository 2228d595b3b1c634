#pragma once

#include "FaceList.h"

#include <string>
#include <vector>

namespace fontlist {

struct SheetStyle {
    icu::UnicodeString text{}; // empty: words in the scripts of each face
    unsigned dpi = 110;
};

/// A row for each face: its family and style in a plain font, and a sample line in the face itself.
/// Throws std::runtime_error.
/// @return  a PNG file
std::vector<unsigned char> drawSpecimens(const std::vector<ListedFace>& faces,
                                         const KWFontService_NS::FS_ExtraFontManager& document,
                                         const SheetStyle& style);

} // namespace fontlist
