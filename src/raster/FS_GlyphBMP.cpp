#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphBMP.h>

#include <utility>

namespace KWFontService_NS {

FS_GlyphBMP::FS_GlyphBMP() = default;
FS_GlyphBMP::~FS_GlyphBMP() = default;

FS_GlyphBMP::FS_GlyphBMP(FS_GlyphBMP&& other) noexcept {
    *this = std::move(other);
}

FS_GlyphBMP& FS_GlyphBMP::operator=(FS_GlyphBMP&& other) noexcept {
    pixels = std::move(other.pixels);
    rows = std::exchange(other.rows, 0U);
    cols = std::exchange(other.cols, 0U);
    rowsFromHorizontal = std::exchange(other.rowsFromHorizontal, 0);
    colsFromHorizontal = std::exchange(other.colsFromHorizontal, 0);
    rowsFromVertical = std::exchange(other.rowsFromVertical, 0);
    colsFromVertical = std::exchange(other.colsFromVertical, 0);
    return *this;
}

bool FS_GlyphBMP::draw(unsigned short gid, float pointSize, unsigned int dpi, FS_FontInfo* font,
                       const FS_GlyphBMPSetting& setting, KWCommonNS::KWError& error) {
    return font->drawGlyph(gid, pointSize, dpi, this, setting, error);
}

void FS_GlyphBMP::clear() {
    *this = FS_GlyphBMP();
}

UnicodeString FS_GlyphBMP::makeErrorMessage(FS_ERROR code, const UnicodeString& detail) {
    if (code != FS_ERROR_GLYPH_BITMAP)
        return UnicodeString("FontService unknown error. ");
    return UnicodeString("Cannot make raster image of glyph: ").append(detail);
}

} // namespace KWFontService_NS
