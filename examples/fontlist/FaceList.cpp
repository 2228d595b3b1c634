#include "FaceList.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <stdexcept>
#include <string>

namespace fontlist {

using namespace KWFontService_NS;

namespace {

/// What the callback is handed. No exception passes through the library here: what went wrong is
/// an answer of the callback.
constexpr int kNoMemory = 2;

int keepFace(FS_FontResourceType type, const FS_EnumLogFontEx* font,
             const FS_NewTextMetricEx* metric, void* userData) {
    try {
        static_cast<std::vector<ListedFace>*>(userData)->push_back({type, *font, *metric});
        return 0;
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    }
}

bool comesBefore(const ListedFace& a, const ListedFace& b) {
    if (a.font < b.font || b.font < a.font)
        return a.font < b.font;
    return a.font.getFullName() < b.font.getFullName();
}

/// A family that was used reports a face for every style that it stood in for.
bool isSameFace(const ListedFace& a, const ListedFace& b) {
    return !comesBefore(a, b) && !comesBefore(b, a) && a.type == b.type &&
           a.font.getFileType() == b.font.getFileType();
}

} // namespace

std::vector<ListedFace> listFaces(const icu::UnicodeString& name, FS_ExtraFontManager& document) {
    std::vector<ListedFace> faces;
    if (FS_EnumFontFamilies(name, keepFace, &faces, &document, 0) != 0)
        throw std::runtime_error("the fonts cannot be listed");
    std::stable_sort(faces.begin(), faces.end(), comesBefore);
    faces.erase(std::unique(faces.begin(), faces.end(), isSameFace), faces.end());
    return faces;
}

std::string styleOf(const ListedFace& face) {
    static constexpr const char* kWeights[] = {"Thin",    "Extra Light", "Light",
                                               "Regular", "Medium",      "Semibold",
                                               "Bold",    "Extra Bold",  "Black"};
    constexpr int kUnsaid = 0;
    const int own = face.font.getWeight();
    const int nearest = (std::clamp(own != kUnsaid ? own : 400, 100, 900) + 50) / 100;
    std::string style = kWeights[std::min<std::size_t>(static_cast<std::size_t>(nearest) - 1,
                                                       std::size(kWeights) - 1)];
    if (face.font.isItalic())
        style = style == "Regular" ? "Italic" : style + " Italic";
    return style;
}

} // namespace fontlist
