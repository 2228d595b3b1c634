#include "raster/FTFaceSize.h"
#include "raster/GlyphTransform.h"
#include "raster/MonoBitmap.h"
#include "raster/RenderLock.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphBMP.h>

#include <KWCommon15/KWUtil.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <new>

namespace KWFontService_NS {

using KWCommonNS::KWMutex;
using KWCommonNS::KWUtil;

KWCommonNS::KWLock g_glyphRenderLock;

namespace {

constexpr double kMaxPixels = 65535.0;
constexpr double kPointsPerInch = 72.0;
constexpr FT_F26Dot6 kOnePoint = 64;
/// The vertical origin of fonts that do not have one, in em: where CJK fonts place it.
constexpr double kUsualVertOriginY = 0.88;

const char* const kRendererError = "Glyph renderer error.";

bool fail(KWError& error, const UnicodeString& detail) {
    error =
        KWError(FS_ERROR_GLYPH_BITMAP, FS_GlyphBMP::makeErrorMessage(FS_ERROR_GLYPH_BITMAP, detail),
                UnicodeString(), -1, -1, UnicodeString());
    return false;
}

bool fail(KWError& error, const char* detail) {
    return fail(error, UnicodeString(detail));
}

/// Sets the transformation of a shared face and takes it back at the end.
class FaceTransform {
public:
    FaceTransform(FT_Face face, FT_Matrix matrix) : face_(face) {
        FT_Set_Transform(face_, &matrix, nullptr);
    }
    ~FaceTransform() { FT_Set_Transform(face_, nullptr, nullptr); }
    FaceTransform(const FaceTransform&) = delete;
    FaceTransform& operator=(const FaceTransform&) = delete;

private:
    FT_Face face_;
};

bool isPixelsInRange(double pixels, KWError& error) {
    if (!(pixels >= 1.0))
        return fail(error, "Amount of pixel is less than 1px.");
    if (pixels > kMaxPixels) {
        UnicodeString detail("Amount of pixel per line will be more than ");
        return fail(error, detail.append(KWUtil::toString(65536.0)).append(u'.'));
    }
    return true;
}

double vertOriginInEm(const FS_FontInfo& font, unsigned short gid) {
    const int unitsPerEm = font.getUnitsPerEm();
    if (unitsPerEm == 0)
        return kUsualVertOriginY;
    double origin = double{font.getGlyphVertOriginY(gid, -unitsPerEm)} / unitsPerEm;
    if (origin == 0.0)
        origin = double{font.getDefaultVertOriginY(-unitsPerEm)} / unitsPerEm;
    return origin == 0.0 ? kUsualVertOriginY : origin;
}

FT_Pos emboldenStrength(int pixels) {
    constexpr FT_Pos kMost = std::numeric_limits<FT_Pos>::max() / 64;
    return std::clamp<FT_Pos>(pixels, -kMost, kMost) * 64;
}

struct GlyphDone {
    void operator()(FT_Glyph glyph) const { FT_Done_Glyph(glyph); }
};
using GlyphPtr = std::unique_ptr<FT_GlyphRec, GlyphDone>;

/// Loads a glyph into the face's slot and renders it. Null, or what went wrong.
const char* renderGlyph(FT_Face face, unsigned short gid, FT_Pos strength, GlyphPtr& bitmap) {
    if (FT_Load_Glyph(face, gid, FT_LOAD_NO_BITMAP) != FT_Err_Ok &&
        FT_Load_Glyph(face, gid, FT_LOAD_NO_BITMAP | FT_LOAD_IGNORE_GLOBAL_ADVANCE_WIDTH) !=
            FT_Err_Ok)
        return kRendererError;
    FT_GlyphSlot slot = face->glyph;
    if (slot->format == FT_GLYPH_FORMAT_BITMAP)
        return kRendererError;
    if (strength != 0 && FT_Outline_Embolden(&slot->outline, strength) != FT_Err_Ok)
        return kRendererError;
    // FreeType would draw one blank pixel.
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE && slot->outline.n_points == 0)
        return "Invalid Glyph BMP.";
    // A copy of the glyph, so that no bitmap stays behind in the shared slot.
    FT_Glyph glyph = nullptr;
    if (FT_Get_Glyph(slot, &glyph) != FT_Err_Ok)
        return kRendererError;
    const FT_Error error = FT_Glyph_To_Bitmap(&glyph, FT_RENDER_MODE_MONO, nullptr, 1);
    bitmap.reset(glyph);
    return error == FT_Err_Ok ? nullptr : kRendererError;
}

} // namespace

bool FS_FontInfo::drawGlyph(unsigned short gid, float pointSize, unsigned int dpi,
                            FS_GlyphBMP* bitmap, const FS_GlyphBMPSetting& setting,
                            KWError& drawError) const {
    bitmap->clear();
    const double emPixels = dpi * double{pointSize} / kPointsPerInch;
    if (!isPixelsInRange(estimatePixels(emPixels, setting), drawError))
        return false;
    const double vertOrigin = vertOriginInEm(*this, gid);

    KWMutex mutex(g_glyphRenderLock);
    mutex.lock();
    FT_Face face = font != nullptr ? font->getFTFace(faceIndex) : nullptr;
    if (face == nullptr)
        return fail(drawError, kRendererError);
    const double height = std::round(double{pointSize} * 64.0);
    if (height < kOnePoint)
        return fail(drawError, "Fontsize is less than 1pt.");
    // A small scale lets huge sizes through, which FreeType's 16-bit sizes cannot hold.
    if (emPixels > kMaxPixels ||
        setFTFaceSize(face, static_cast<FT_F26Dot6>(height), dpi) != FT_Err_Ok)
        return fail(drawError, kRendererError);

    const FaceTransform transform(face, glyphMatrix(setting));
    const FT_Pos strength = emboldenStrength(setting.emboldenPixels);
    GlyphPtr glyph;
    if (const char* detail = renderGlyph(face, gid, strength, glyph))
        return fail(drawError, detail);
    const auto* rendered = reinterpret_cast<FT_BitmapGlyph>(glyph.get());
    const FT_Bitmap& source = rendered->bitmap;
    if (source.rows == 0 || source.width == 0)
        return fail(drawError, "Invalid Glyph BMP.");

    bitmap->pixels.reset(new (std::nothrow) std::uint8_t[std::size_t{source.rows} * source.width]);
    if (!bitmap->pixels)
        return fail(drawError, "Ouf of Memory.");
    bitmap->rows = source.rows;
    bitmap->cols = source.width;
    expandMonoBitmap(source, bitmap->pixels.get());

    const int half = static_cast<int>((strength / 2) >> 6);
    const int advance = static_cast<int>((face->glyph->metrics.horiAdvance - strength) >> 6);
    bitmap->rowsFromHorizontal = half - rendered->top;
    bitmap->colsFromHorizontal = rendered->left - half;
    if (const auto step =
            stepFromVertOrigin(setting, double{pointSize} * vertOrigin, dpi, advance / 2)) {
        bitmap->rowsFromVertical = toPixels(step->rows + bitmap->rowsFromHorizontal);
        bitmap->colsFromVertical = toPixels(step->cols + bitmap->colsFromHorizontal);
    }
    return true;
}

} // namespace KWFontService_NS
