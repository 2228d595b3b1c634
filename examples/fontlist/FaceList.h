#pragma once

#include <KWFontService17/KWFontService.h>

#include <vector>

namespace fontlist {

/// What the enumeration reports of a face, to be kept.
struct ListedFace {
    KWFontService_NS::FS_FontResourceType type;
    KWFontService_NS::FS_EnumLogFontEx font;
    KWFontService_NS::FS_NewTextMetricEx metric;
};

/// The faces that go by a name, or all for an empty one; sorted by family, weight, slant and full
/// name, each once.
/// @param document  fonts that were brought along
std::vector<ListedFace> listFaces(const icu::UnicodeString& name,
                                  KWFontService_NS::FS_ExtraFontManager& document);

/// The style in words: "Bold Italic".
std::string styleOf(const ListedFace& face);

} // namespace fontlist
