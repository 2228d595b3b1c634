#include "fonts/FS_ExtraFont.h"

#include <KWFontService17/FS_LogFont.h>

#include <utility>

namespace KWFontService_NS {

using KWCommonNS::KWPtr;

FS_ExtraFont::FS_ExtraFont(KWPtr<FS_BaseFont> inner)
    : FS_BaseFont(inner ? inner->getUri() : KWUri()), innerFont(std::move(inner)) {}
FS_ExtraFont::FS_ExtraFont(const KWUri& fontUri) : FS_BaseFont(fontUri) {}
FS_ExtraFont::~FS_ExtraFont() = default;

unsigned int FS_ExtraFont::getClassId() const {
    return FS_CLASSID_EXTRA_FONT;
}

bool FS_ExtraFont::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_EXTRA_FONT || FS_BaseFont::isKindOf(id);
}

UnicodeString FS_ExtraFont::getClassName() const {
    return UnicodeString("FS_ExtraFont");
}

const KWUri& FS_ExtraFont::getUri() const {
    return innerFont ? innerFont->getUri() : uri;
}

FS_FontFileType FS_ExtraFont::getFontFileType(int) const {
    return FS_FILETYPE_EXTRA;
}

FS_FontFileType FS_ExtraFont::getFontFileType2(int faceIndex) const {
    return innerFont ? innerFont->getFontFileType(faceIndex) : FS_FILETYPE_UNKNOWN;
}

bool FS_ExtraFont::isType1Font(int faceIndex) const {
    return innerFont && innerFont->isType1Font(faceIndex);
}
bool FS_ExtraFont::isTrueTypeFont(int faceIndex) const {
    return innerFont && innerFont->isTrueTypeFont(faceIndex);
}
bool FS_ExtraFont::isType1OrNoCID(int faceIndex) const {
    return innerFont && innerFont->isType1OrNoCID(faceIndex);
}
bool FS_ExtraFont::isTrueTypeOrCID(int faceIndex) const {
    return innerFont && innerFont->isTrueTypeOrCID(faceIndex);
}

bool FS_ExtraFont::isExtraFont(int* weight, bool* italic, int faceIndex) const {
    if (weight != nullptr)
        *weight = getWeight(faceIndex);
    if (italic != nullptr)
        *italic = isItalic(faceIndex);
    return true;
}

bool FS_ExtraFont::scanNamedFont(KWError& error, std::istream& stream, const UnicodeString& family,
                                 int weight, int italic) {
    familyName = family;
    weightDescriptor = weight;
    italicDescriptor = italic;
    return scanFont(error, stream);
}

bool FS_ExtraFont::scanFont(KWError& error, std::istream& stream) {
    return innerFont && innerFont->scanFont(error, stream);
}

bool FS_ExtraFont::loadFont(KWError& error, int faceIndex, std::istream* stream) {
    return innerFont && innerFont->loadFont(error, faceIndex, stream);
}

void FS_ExtraFont::declareStyle(const Style& style) {
    weightDescriptor = style.weight;
    italicDescriptor = style.italic;
}

int FS_ExtraFont::getWeight(int faceIndex) const {
    if (weightDescriptor != 0)
        return weightDescriptor;
    return innerFont ? innerFont->getWeight(faceIndex) : 0;
}

bool FS_ExtraFont::isItalic(int faceIndex) const {
    if (italicDescriptor != -1)
        return italicDescriptor == 1;
    return innerFont && innerFont->isItalic(faceIndex);
}

bool FS_ExtraFont::getLogFont(FS_EnumLogFontEx& font, int faceIndex) const {
    if (!innerFont)
        return false;
    font = FS_EnumLogFontEx(familyName, familyName, getWeight(faceIndex), isItalic(faceIndex));
    return true;
}

FT_FaceRec_* FS_ExtraFont::getFTFace(int faceIndex) {
    return innerFont ? innerFont->getFTFace(faceIndex) : nullptr;
}

} // namespace KWFontService_NS
