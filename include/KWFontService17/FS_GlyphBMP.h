#pragma once

#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_Export.h>
#include <KWFontService17/FS_GlyphBMPSetting.h>

#include <KWCommon15/KWError.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace KWFontService_NS {

class FS_FontInfo;

/// A drawn glyph: one byte a pixel, top row first, 0xFF for ink and 0 for none.
///
/// The offsets lead from the origin of the glyph to its first pixel, the top left one, in whole
/// pixels with rows counted downwards and columns to the right: from the origin on the horizontal
/// baseline, or from the origin of vertical lines.
///
/// Owns its pixels; can be moved, not copied. Used by one thread at a time.
class KWFONTSERVICE_API FS_GlyphBMP {
public:
    FS_GlyphBMP();
    ~FS_GlyphBMP();
    FS_GlyphBMP(FS_GlyphBMP&& other) noexcept;
    FS_GlyphBMP& operator=(FS_GlyphBMP&& other) noexcept;
    FS_GlyphBMP(const FS_GlyphBMP&) = delete;
    FS_GlyphBMP& operator=(const FS_GlyphBMP&) = delete;

    /// Draws a glyph of `font`, which is not null, into this bitmap. See `FS_FontInfo::drawGlyph`.
    bool draw(unsigned short gid, float pointSize, unsigned int dpi, FS_FontInfo* font,
              const FS_GlyphBMPSetting& setting, KWCommonNS::KWError& error);
    /// Frees the pixels; everything is 0 afterwards.
    void clear();

    bool hasBMP() const { return pixels != nullptr; }
    unsigned int getRows() const { return rows; }
    unsigned int getCols() const { return cols; }
    /// The byte of a pixel. Unchecked: `x` is below getCols() and `y` below getRows().
    std::uint8_t getPixel(unsigned int x, unsigned int y) const {
        return pixels[static_cast<std::size_t>(y) * cols + x];
    }

    int getRowsOffestFromHorizontalBaseLineToStartPoint() const { return rowsFromHorizontal; }
    int getColsOffestFromHorizontalBaseLineToStartPoint() const { return colsFromHorizontal; }
    int getRowsOffestFromVerticalBaseLineToStartPoint() const { return rowsFromVertical; }
    int getColsOffestFromVerticalBaseLineToStartPoint() const { return colsFromVertical; }

    /// The text of a drawing error.
    static UnicodeString makeErrorMessage(FS_ERROR code, const UnicodeString& detail);

private:
    friend class FS_FontInfo;

    std::unique_ptr<std::uint8_t[]> pixels;
    unsigned int rows = 0;
    unsigned int cols = 0;
    int rowsFromHorizontal = 0;
    int colsFromHorizontal = 0;
    int rowsFromVertical = 0;
    int colsFromVertical = 0;
};

} // namespace KWFontService_NS
