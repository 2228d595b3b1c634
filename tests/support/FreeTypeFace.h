#pragma once

#include "Bytes.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <stdexcept>
#include <string>

namespace KWTest {

/// A font as FreeType sees it, for comparison; independent of the library's own use of FreeType.
/// Throws std::runtime_error when FreeType does not open it.
class FreeTypeFace {
public:
    explicit FreeTypeFace(Bytes file, FT_Long faceIndex = 0) : file_(std::move(file)) {
        if (FT_Init_FreeType(&library_) != 0)
            throw std::runtime_error("FreeType does not start");
        const FT_Error error = FT_New_Memory_Face(
            library_, file_.data(), static_cast<FT_Long>(file_.size()), faceIndex, &face_);
        if (error != 0) {
            FT_Done_FreeType(library_);
            throw std::runtime_error("FreeType error " + std::to_string(error));
        }
    }
    ~FreeTypeFace() { FT_Done_FreeType(library_); }
    FreeTypeFace(const FreeTypeFace&) = delete;
    FreeTypeFace& operator=(const FreeTypeFace&) = delete;

    FT_Face get() const { return face_; }
    FT_Face operator->() const { return face_; }

    /// Loads a glyph without scaling and answers its slot; throws when it cannot.
    FT_GlyphSlot load(FT_UInt glyph) const {
        if (FT_Load_Glyph(face_, glyph, FT_LOAD_NO_SCALE) != 0)
            throw std::runtime_error("FreeType does not load glyph " + std::to_string(glyph));
        return face_->glyph;
    }
    FT_Pos advance(FT_UInt glyph) const { return load(glyph)->metrics.horiAdvance; }
    FT_UInt glyphOf(FT_ULong character) const { return FT_Get_Char_Index(face_, character); }

private:
    Bytes file_; // FreeType reads it in place
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

} // namespace KWTest
