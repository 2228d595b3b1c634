#include "raster/FTFaceSize.h"

#include <new>

namespace KWFontService_NS {

namespace {

/// The last size that was set, and what it made of the face; kept at the face itself.
struct FaceSize {
    FT_F26Dot6 height;
    FT_UInt dpi;
    FT_Size_Metrics metrics;
};

/// FreeType calls this when it closes the face.
void freeFaceSize(void* object) {
    delete static_cast<FaceSize*>(static_cast<FT_Face>(object)->generic.data);
}

bool isStill(const FT_Size_Metrics& a, const FT_Size_Metrics& b) {
    return a.x_ppem == b.x_ppem && a.y_ppem == b.y_ppem && a.x_scale == b.x_scale &&
           a.y_scale == b.y_scale;
}

} // namespace

FT_Error setFTFaceSize(FT_Face face, FT_F26Dot6 height, FT_UInt dpi) {
    // Somebody else's data is left alone; then nothing is remembered.
    const bool free = face->generic.data == nullptr && face->generic.finalizer == nullptr;
    const bool ours = face->generic.finalizer == freeFaceSize;
    auto* last = ours ? static_cast<FaceSize*>(face->generic.data) : nullptr;
    if (last != nullptr && last->height == height && last->dpi == dpi &&
        isStill(face->size->metrics, last->metrics))
        return FT_Err_Ok;
    const FT_Error error = FT_Set_Char_Size(face, 0, height, 0, dpi);
    if (free && (last = new (std::nothrow) FaceSize) != nullptr)
        face->generic = {last, freeFaceSize};
    if (last != nullptr)
        *last = {error == FT_Err_Ok ? height : -1, dpi, face->size->metrics};
    return error;
}

} // namespace KWFontService_NS
