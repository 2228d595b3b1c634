#include "fonts/FS_Type1PFM.h"

#include "fonts/CodePoints.h"
#include "type1/Type1CodePage.h"

#include <algorithm>
#include <utility>

namespace KWFontService_NS {

namespace {

// Values of `dfCharSet` that name an encoding.
constexpr std::uint8_t kAnsiCharSet = 0;
constexpr std::uint8_t kSymbolCharSet = 2;

} // namespace

FS_Type1PFM::FS_Type1PFM(const KWUri& fontUri) : FS_Type1(fontUri) {}

unsigned int FS_Type1PFM::getClassId() const {
    return FS_CLASSID_TYPE1_PFM;
}

bool FS_Type1PFM::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_TYPE1_PFM || FS_Type1::isKindOf(id);
}

FS_FontFileType FS_Type1PFM::getFontFileType(int) const {
    return FS_FILETYPE_PFM;
}

bool FS_Type1PFM::scanFont(KWError& error, std::istream& stream) {
    PFMFile file;
    if (const auto failure = readPFM(stream, !error.isError(), file))
        return fontError(error, failure->code, failure->detail);
    file_ = std::move(file);
    return finishScan(error) || standardFont != nullptr;
}

UnicodeString FS_Type1PFM::getFamilyName(KWLang::LanguageID, int) const {
    return file_.faceName;
}

UnicodeString FS_Type1PFM::getFullFontName(KWLang::LanguageID language, int faceIndex) const {
    const UnicodeString name =
        printerFont ? printerFont->getFullFontName(language, faceIndex) : UnicodeString();
    return name.isEmpty() ? file_.faceName : name;
}

UnicodeString FS_Type1PFM::getCopyright(KWLang::LanguageID, int) const {
    return file_.copyright;
}

int FS_Type1PFM::getWeight(int) const {
    return file_.dfWeight;
}
bool FS_Type1PFM::isItalic(int) const {
    return file_.dfItalic;
}
float FS_Type1PFM::getXHeight(int) const {
    return file_.xHeight;
}

FS_EncodingScheme FS_Type1PFM::getEncodingScheme(int) const {
    if (printerFont)
        return encodingSchemeOf(printerFont->head().encodingName);
    switch (file_.dfCharSet) {
    case kAnsiCharSet:
        return FS_ENCODING_WINANSI;
    case kSymbolCharSet:
        return FS_ENCODING_FONT;
    default:
        return FS_ENCODING_STANDARD;
    }
}

const Type1Metrics* FS_Type1PFM::glyphs() const {
    return printerFont ? &printerFont->metrics() : nullptr;
}

float FS_Type1PFM::lineHeight() const {
    return printerFont ? printerFont->head().fontBBox.height() : file_.dfAscent;
}

void FS_Type1PFM::addTextMetrics(FS_TextMetricSource& source) const {
    source.ascent = double{file_.dfAscent};
    source.descent = std::max(0.0, file_.dfPixHeight - source.ascent);
    source.internalLeading = double{file_.dfInternalLeading};
    source.aveCharWidth = double{file_.dfAvgWidth};
    source.maxCharWidth = double{file_.dfMaxWidth};
    source.pitchAndFamily = file_.dfPitchAndFamily;
    source.codePages[0] = Type1CodePage::rangeBitOfCharSet(file_.dfCharSet);
    if (printerFont) {
        source.italicAngle = printerFont->head().italicAngle;
        source.fontBBox = printerFont->head().fontBBox.corners();
    }
}

std::int64_t FS_Type1PFM::textUnits(const UnicodeString& text, int& firstMissing) const {
    const bool isByCodePage =
        !printerFont || (standardFont != nullptr && getEncodingScheme(0) != FS_ENCODING_STANDARD);
    return isByCodePage ? codePageUnits(text, firstMissing)
                        : FS_Type1::textUnits(text, firstMissing);
}

std::int64_t FS_Type1PFM::codePageUnits(const UnicodeString& text, int& firstMissing) const {
    const Type1CodePage& page = Type1CodePage::ofCharSet(file_.dfCharSet);
    const char16_t* const units = text.getBuffer();
    std::int64_t sum = 0;
    for (std::int32_t next = 0; next < text.length();) {
        const std::int32_t index = next;
        int code = page.codeOf(nextCodePoint(units, next, text.length()));
        if (!file_.hasCode(code)) {
            if (firstMissing < 0)
                firstMissing = index;
            code = kSpace;
        }
        sum += file_.widthOf(code);
    }
    return sum;
}

} // namespace KWFontService_NS
