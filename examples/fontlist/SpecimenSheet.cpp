#include "SpecimenSheet.h"

#include "FaceTable.h"
#include "SampleText.h"
#include "shared/Picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <stdexcept>

namespace fontlist {

using namespace KWFontService_NS;
using examples::Picture;

namespace {

// In points.
constexpr double kPageWidth = 640;
constexpr double kMargin = 18;
constexpr double kSampleLeft = 230;
constexpr double kRowHeight = 29;
constexpr double kBaseline = 19; // in a row
constexpr float kSampleSize = 17;
constexpr float kFamilySize = 9.5F;
constexpr float kNoteSize = 6.5F;
constexpr double kNoteBelow = 9;

std::vector<unsigned short> glyphsOf(const FS_FontInfo& font, const icu::UnicodeString& text) {
    std::vector<unsigned short> glyphs;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const unsigned short gid = font.getGlyphID(text.char32At(i), false);
        glyphs.push_back(gid == FS_NO_GLYPH ? 0 : gid);
    }
    return glyphs;
}

class Sheet {
public:
    Sheet(double height, unsigned dpi)
        : finePerPoint_(dpi / 72.0 * Picture::kFiner), fineDpi_(dpi * Picture::kFiner),
          picture_(pixels(kPageWidth), pixels(height)) {}

    /// Sets glyphs from left to right, as far as the room goes. What a font refuses to draw stays
    /// blank.
    /// @param x, y   of the first origin, in points from the top left
    /// @param right  where the room ends
    void draw(const FS_FontInfo& font, const std::vector<unsigned short>& glyphs, float size,
              double x, double y, double right) {
        for (std::size_t i = 0; i < glyphs.size(); ++i) {
            if (i > 0)
                x += advance(font.getPairKerningValue(glyphs[i - 1], glyphs[i], kPerEm, false),
                             size);
            const double width = advance(font.getGlyphWidth(glyphs[i], kPerEm, false), size);
            if (x + width > right)
                return;
            FS_GlyphBMP bitmap;
            KWError ignored;
            if (font.drawGlyph(glyphs[i], size, fineDpi_, &bitmap, FS_GlyphBMPSetting(), ignored))
                picture_.add(bitmap, std::lround(x * finePerPoint_),
                             std::lround(y * finePerPoint_));
            x += width;
        }
    }

    std::vector<unsigned char> toPng() const { return picture_.toPng(); }

private:
    static constexpr int kPerEm = -1000;

    static double advance(float units, float size) {
        return static_cast<double>(units) * static_cast<double>(size) / -kPerEm;
    }
    unsigned pixels(double points) const {
        return static_cast<unsigned>(std::lround(points * finePerPoint_ / Picture::kFiner));
    }

    double finePerPoint_;
    unsigned fineDpi_;
    Picture picture_;
};

/// The face itself, bound by its full name. Nothing when another font goes by that, as one of two
/// copies of a file does.
std::optional<FS_FontInfo> openFace(const ListedFace& face, const FS_ExtraFontManager& document) {
    const bool isOfDocument = face.type == FS_RESOURCE_EXTRA;
    const icu::UnicodeString& name =
        face.font.getFullName().isEmpty() ? face.font.getFaceName() : face.font.getFullName();
    FS_FontInfo font;
    try {
        if (!font.createFont(name, face.font.getWeight(), face.font.isItalic(),
                             document.getExtraFonts(), true))
            return std::nullopt;
    } catch (const KWError&) {
        return std::nullopt;
    }
    const bool isNamed = isOfDocument || face.type == FS_RESOURCE_WOFF ||
                         font.getFullFontName(0) == face.font.getFullName();
    return isNamed ? std::optional(font) : std::nullopt;
}

/// Something plain for the labels.
std::optional<FS_FontInfo> openLabelFont(const std::vector<ListedFace>& faces,
                                         const FS_ExtraFontManager& document) {
    FS_FontInfo font;
    for (const char16_t* const name :
         {u"DejaVu Sans", u"Liberation Sans", u"Noto Sans", u"Arial"}) {
        if (font.createFont(name, 0, false, nullptr, false))
            return font;
    }
    for (const ListedFace& face : faces) {
        if (!face.metric.isLatin1() || face.metric.isSymbolFont())
            continue;
        std::optional<FS_FontInfo> listed = openFace(face, document);
        if (listed && covers(*listed, u"Regular"))
            return listed;
    }
    return std::nullopt;
}

/// The family with what the full name adds to it.
const icu::UnicodeString& nameOf(const ListedFace& face) {
    const icu::UnicodeString& family = face.font.getFaceName();
    const icu::UnicodeString& full = face.font.getFullName();
    return full.startsWith(family) ? full : family;
}

} // namespace

std::vector<unsigned char> drawSpecimens(const std::vector<ListedFace>& faces,
                                         const FS_ExtraFontManager& document,
                                         const SheetStyle& style) {
    const std::optional<FS_FontInfo> labels = openLabelFont(faces, document);
    if (!labels)
        throw std::runtime_error("there is no font for the labels of a sheet");
    Sheet sheet(2 * kMargin + kRowHeight * static_cast<double>(faces.size()), style.dpi);
    const double labelRight = kSampleLeft - kMargin / 2;
    const double right = kPageWidth - kMargin;
    const auto note = [&](const icu::UnicodeString& text, double x, double baseline, double end) {
        sheet.draw(*labels, glyphsOf(*labels, text), kNoteSize, x, baseline, end);
    };
    double y = kMargin + kBaseline;
    for (const ListedFace& face : faces) {
        const std::optional<FS_FontInfo> font = openFace(face, document);
        const icu::UnicodeString& name = nameOf(face);
        // A name that the labels cannot be set in has a face that can.
        const FS_FontInfo& nameFont = covers(*labels, name) || !font ? *labels : *font;
        sheet.draw(nameFont, glyphsOf(nameFont, name), kFamilySize, kMargin, y - kNoteBelow / 2,
                   labelRight);
        const std::string details = styleOf(face) + ", " + fileTypeOf(face) + ", " + sourceOf(face);
        note(icu::UnicodeString::fromUTF8(details), kMargin, y + kNoteBelow / 2, labelRight);

        if (!font) {
            note(u"(another font goes by this name, or it does not open)", kSampleLeft, y, right);
        } else {
            const icu::UnicodeString text =
                style.text.isEmpty() ? sampleText(*font, face.metric) : style.text;
            const std::vector<unsigned short> glyphs =
                text.isEmpty() ? firstGlyphs(*font) : glyphsOf(*font, text);
            sheet.draw(*font, glyphs, kSampleSize, kSampleLeft, y, right);
            if (glyphs.empty())
                note(u"(no outlines)", kSampleLeft, y, right);
        }
        y += kRowHeight;
    }
    return sheet.toPng();
}

} // namespace fontlist
