#pragma once

#include "support/FontBuilder.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphBMP.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace KWTest {

/// A created font from bytes, in a file of its own.
class CreatedFont {
public:
    explicit CreatedFont(const Bytes& file) {
        EXPECT_TRUE(
            info.createFont(folder_.uri(folder_.write("font.ttf", file).filename().string())))
            << messageOf(info.getError());
    }

    static std::string messageOf(const KWCommonNS::KWError& error) {
        std::string text;
        return error.getMessage().toUTF8String(text);
    }

    KWFontService_NS::FS_FontInfo info;

private:
    TempDir folder_;
};

/// The font with its outlines left as they are: FreeType takes it for one with instructions, and so
/// does not fit glyphs to pixels on its own.
inline TestFont unhinted(TestFont font) {
    font.maxp.maxSizeOfInstructions = 1;
    return font;
}

/// Glyph 1 of `squares` is a square of half an em on the baseline, a quarter from the left; 2 is
/// empty; 3 is a narrow bar; 4 lies below the baseline.
inline TestFont squares(std::uint16_t unitsPerEm = 1000) {
    TestFont font = TestFont::latin(unitsPerEm);
    const auto box = [&](int xMin, int yMin, int xMax, int yMax) {
        const auto em = [&](int v) { return static_cast<std::int16_t>(v * unitsPerEm / 1000); };
        return SimpleGlyph{.contours = {rectangle({em(xMin), em(yMin), em(xMax), em(yMax)})}};
    };
    font.outlines.glyphs.clear();
    font.outlines.add()
        .add(box(250, 0, 750, 500))
        .add()
        .add(box(0, 0, 100, 1000))
        .add(box(0, -500, 500, 0))
        .add()
        .add();
    const auto advance = static_cast<std::uint16_t>(unitsPerEm);
    const auto bearing = static_cast<std::int16_t>(unitsPerEm / 4);
    font.hmtx.metrics = {{advance, 0}, {advance, bearing}, {advance, 0},
                         {advance, 0}, {advance, 0},       {advance, 0}};
    return unhinted(font);
}

/// A bitmap as lines of "#" and ".".
inline std::vector<std::string> picture(const KWFontService_NS::FS_GlyphBMP& bitmap) {
    std::vector<std::string> lines;
    for (unsigned int y = 0; y < bitmap.getRows(); ++y) {
        std::string line;
        for (unsigned int x = 0; x < bitmap.getCols(); ++x) {
            const int pixel = bitmap.getPixel(x, y);
            line += pixel == 0xFF ? '#' : pixel == 0 ? '.' : '?';
        }
        lines.push_back(line);
    }
    return lines;
}

/// The four offsets: rows and columns from the horizontal, then from the vertical origin.
inline std::vector<int> offsets(const KWFontService_NS::FS_GlyphBMP& bitmap) {
    return {bitmap.getRowsOffestFromHorizontalBaseLineToStartPoint(),
            bitmap.getColsOffestFromHorizontalBaseLineToStartPoint(),
            bitmap.getRowsOffestFromVerticalBaseLineToStartPoint(),
            bitmap.getColsOffestFromVerticalBaseLineToStartPoint()};
}

} // namespace KWTest
