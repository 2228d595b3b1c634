#include "cff/Type1CMap.h"
#include "fonts/FS_FontFileOptions.h"
#include "fonts/FS_OperationMacros.h"
#include "fonts/FS_ServiceContext.h"
#include "fonts/FontErrors.h"
#include "fonts/FontStream.h"
#include "fonts/FontTyping.h"

#include <KWFontService17/FS_FontInfo.h>

#include <KWCommon15/KWChar.h>
#include <KWCommon15/KWUtil.h>

namespace KWFontService_NS {

using KWCommonNS::KWPtr;

FS_FontInfo::FS_FontInfo() = default;
FS_FontInfo::FS_FontInfo(const FS_FontInfo& other) = default;
FS_FontInfo& FS_FontInfo::operator=(const FS_FontInfo& other) = default;
FS_FontInfo::~FS_FontInfo() = default;

bool FS_FontInfo::createFont(const KWUri& file) {
    error = KWError();
    const std::unique_ptr<std::istream> stream = openFontStream(file);
    if (!stream) {
        error = cannotReadFontError(file);
        return false;
    }
    const KWPtr<FS_BaseFont> created = createFontObject(file, sfntTypeOf(*stream));
    if (!created->scanFont(error, *stream) || !created->loadFont(error, 0, stream.get()))
        return false;
    FS_ServiceContext::keepFont(*created);
    bind(created.get(), 0);
    return true;
}

void FS_FontInfo::deleteFont() {
    bind(nullptr, 0);
}

void FS_FontInfo::bind(FS_BaseFont* newFont, int newFaceIndex) {
    font = newFont;
    faceIndex = newFaceIndex;
    vertOriginCache.reset();
}

// --- file ---------------------------------------------------------------------------------------

KWUri FS_FontInfo::getFontFileName() const {
    return font ? font->getUri() : KWUri();
}

FS_FontFileType FS_FontInfo::getFontFileType() const {
    return font ? font->getFontFileType(faceIndex) : FS_FILETYPE_UNKNOWN;
}

FS_FontFileType FS_FontInfo::getFontFileType2() const {
    return font ? font->getFontFileType2(faceIndex) : FS_FILETYPE_UNKNOWN;
}

bool FS_FontInfo::isFontCollection() const {
    return font && font->isFontCollection();
}

bool FS_FontInfo::isExtraFont(int* weight, bool* italic) const {
    return font && font->isExtraFont(weight, italic, faceIndex);
}

bool FS_FontInfo::isTrueTypeFont() const {
    return font && font->isTrueTypeFont(faceIndex);
}
bool FS_FontInfo::isTrueTypeOrCID() const {
    return font && font->isTrueTypeOrCID(faceIndex);
}
bool FS_FontInfo::isType1Font() const {
    return font && font->isType1Font(faceIndex);
}
bool FS_FontInfo::isType1OrNoCID() const {
    return font && font->isType1OrNoCID(faceIndex);
}

// --- the operations that only add the face index ------------------------------------------------

#define FS_FACADE_FORWARD(result, name, parameters, arguments, qualifier, missing)                 \
    result FS_FontInfo::name parameters const {                                                    \
        return font ? font->name(FS_PARAMETERS arguments faceIndex) : missing;                     \
    }
#define FS_FACADE_APART(...)
#define FS_OPERATION(faces, wrapper, facade, ...) FS_FACADE_##facade(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_FACADE_FORWARD
#undef FS_FACADE_APART

// --- style --------------------------------------------------------------------------------------

void FS_FontInfo::getFontStyle(int* weight, bool* italic, int* width) const {
    if (weight != nullptr)
        *weight = font ? font->getWeight(faceIndex) : 0;
    if (italic != nullptr)
        *italic = font && font->isItalic(faceIndex);
    if (width != nullptr)
        *width = font ? font->getWidth(faceIndex) : 5;
}

// --- glyphs and metrics -------------------------------------------------------------------------

unsigned short FS_FontInfo::getGlyphIDfromCID(unsigned short cid) const {
    const Type1CMap* cff = font ? font->getCFFInfo(faceIndex) : nullptr;
    return cff != nullptr ? cff->getGlyphOfCID(cid) : FS_NO_GLYPH;
}

bool FS_FontInfo::hasVerticalGlyph(int ch) const {
    const unsigned short vertical = getGlyphID(ch, true);
    return vertical != FS_NO_GLYPH && vertical != getGlyphID(ch, false);
}

bool FS_FontInfo::isNoVerticalGlyph(int ch, bool* hasVertical) const {
    *hasVertical = false;
    if (!KWCommonNS::KWChar::isNoVerticalChar(ch))
        return false;
    *hasVertical = hasVerticalGlyph(ch);
    return !*hasVertical;
}

float FS_FontInfo::getTextWidth(const UnicodeString& text, int size, bool vertical,
                                int* firstMissing) const {
    if (firstMissing != nullptr)
        *firstMissing = -1;
    if (font == nullptr || text.isEmpty())
        return 0.0F;
    return font->getTextWidth(text, size, vertical, firstMissing, faceIndex);
}

float FS_FontInfo::getTextWidth(int ch, int size, bool vertical, int* firstMissing) const {
    return getTextWidth(UnicodeString(static_cast<UChar32>(ch)), size, vertical, firstMissing);
}

float FS_FontInfo::getBaselindAdjust() const {
    const FS_FontFileOptions* settings = font ? font->getFontEntrySettings() : nullptr;
    return settings != nullptr ? settings->baselineAdjust : 0.0F;
}

float FS_FontInfo::getFontSizeAdjust() const {
    const FS_FontFileOptions* settings = font ? font->getFontEntrySettings() : nullptr;
    return settings != nullptr ? settings->fontSizeAdjust : 1.0F;
}

// --- embedding: the font opens its own stream ---------------------------------------------------

bool FS_FontInfo::getEmbedFont(const std::vector<unsigned short>& glyphs,
                               KWMemStream& output) const {
    return font && font->getEmbedFont(glyphs, output, nullptr, faceIndex);
}

bool FS_FontInfo::getEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                               const unsigned int* tags) const {
    return font && font->getEmbedFont(glyphs, output, tags, nullptr, faceIndex);
}

bool FS_FontInfo::getEmbedFontWithCmap(const std::vector<unsigned short>& glyphs,
                                       KWMemStream& output) const {
    return font && font->getEmbedFontWithCmap(glyphs, output, nullptr, faceIndex);
}

bool FS_FontInfo::getEmbedFontStream(KWMemStream& output) const {
    return font && font->getEmbedFontStream(output, nullptr, faceIndex);
}

bool FS_FontInfo::getPSEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                 FS_TTGlyphMap& glyphMap) const {
    return font && font->getPSEmbedFont(glyphs, output, glyphMap, nullptr, faceIndex);
}

bool FS_FontInfo::getType1EmbedFont(const std::vector<unsigned short>& codes,
                                    KWMemStream& output) const {
    return font && font->getType1EmbedFont(codes, output, nullptr, faceIndex);
}

bool FS_FontInfo::makeSubsetFont(const std::vector<unsigned short>& glyphs,
                                 KWMemStream& output) const {
    return font && font->makeSubsetFont(glyphs, output, nullptr, faceIndex);
}

bool FS_FontInfo::makeWebFont(const std::vector<unsigned short>& glyphs,
                              KWMemStream& output) const {
    return font && font->makeWebFont(glyphs, output, nullptr, faceIndex);
}

FS_EMBEDSTATUS FS_FontInfo::getEmbedStatus() const {
    return font ? font->getEmbedStatus(faceIndex) : FS_EMBED_RESTRICTED;
}

} // namespace KWFontService_NS
