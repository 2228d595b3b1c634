#include <KWFontService17/FS_GlyphBMPStore.h>

#include <KWCommon15/KWChar.h>

#include <new>
#include <utility>

namespace KWFontService_NS {

namespace {

// General categories Zs, Zl, Zp, Cc and Cf follow each other in ICU's numbers.
constexpr int kSpaceSeparator = 12;
constexpr int kFormatCharacter = 16;

} // namespace

FS_GlyphBMPStore::FS_GlyphBMPStore() = default;
FS_GlyphBMPStore::~FS_GlyphBMPStore() = default;

bool FS_GlyphBMPStore::insertGlyph(unsigned short gid, float pointSize, unsigned int dpi,
                                   FS_FontInfo* font, const FS_GlyphBMPSetting& setting) {
    error.clear();
    glyphs.erase(gid);
    std::unique_ptr<FS_GlyphBMP> bitmap(new (std::nothrow) FS_GlyphBMP);
    if (!bitmap)
        return issueError("Ouf of Memory.");
    bitmap->draw(gid, pointSize, dpi, font, setting, error);
    if (error.isError())
        return false;
    glyphs.emplace(gid, std::move(bitmap));
    return true;
}

FS_GlyphBMP* FS_GlyphBMPStore::getGlyph(unsigned short gid) const {
    const auto found = glyphs.find(gid);
    return found != glyphs.end() ? found->second.get() : nullptr;
}

void FS_GlyphBMPStore::clear() {
    glyphs.clear();
}

bool FS_GlyphBMPStore::isValidCharacter(int ch) {
    const int category = KWCommonNS::KWChar::getCategory(ch);
    return category < kSpaceSeparator || category > kFormatCharacter;
}

bool FS_GlyphBMPStore::issueError(const char* detail) {
    error = KWCommonNS::KWError(
        FS_ERROR_GLYPH_BITMAP,
        FS_GlyphBMP::makeErrorMessage(FS_ERROR_GLYPH_BITMAP, UnicodeString(detail)),
        UnicodeString(), -1, -1, UnicodeString());
    return false;
}

} // namespace KWFontService_NS
