#include "fonts/FS_Type1AFM.h"

#include "fonts/FontErrors.h"
#include "fonts/FontStream.h"

#include <utility>

namespace KWFontService_NS {

FS_Type1AFM::FS_Type1AFM(const KWUri& fontUri) : FS_Type1(fontUri) {}

unsigned int FS_Type1AFM::getClassId() const {
    return FS_CLASSID_TYPE1_AFM;
}

bool FS_Type1AFM::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_TYPE1_AFM || FS_Type1::isKindOf(id);
}

FS_FontFileType FS_Type1AFM::getFontFileType(int) const {
    return FS_FILETYPE_AFM;
}

bool FS_Type1AFM::scanFont(KWError& error, std::istream& stream) {
    AFMHead head;
    if (const auto failure = readAFM(stream, head, nullptr))
        return fontError(error, failure->code, failure->detail);
    head_ = std::move(head);
    // Without a printer font it is a font all the same; what was wrong with that one stays told.
    finishScan(error);
    return true;
}

bool FS_Type1AFM::loadMetrics(KWError& error, std::istream* stream) {
    std::unique_ptr<std::istream> own;
    if (stream == nullptr) {
        own = openTextStream(getUri());
        stream = own.get();
    } else {
        stream->clear();
        stream->seekg(0);
    }
    if (stream == nullptr || !*stream) {
        error = cannotReadFontError(getUri());
        return false;
    }
    AFMHead head; // known from the scan
    AFMGlyphs glyphs;
    if (const auto failure = readAFM(*stream, head, &glyphs))
        return fontError(error, failure->code, failure->detail);
    metrics_ = Type1Metrics(std::move(glyphs.charMetrics));
    metrics_.addAll();
    kernPairs_ = std::move(glyphs.kernPairs);
    return true;
}

UnicodeString FS_Type1AFM::getFamilyName(KWLang::LanguageID, int) const {
    return head_.familyName;
}
UnicodeString FS_Type1AFM::getFullFontName(KWLang::LanguageID, int) const {
    return head_.fullName;
}
UnicodeString FS_Type1AFM::getCopyright(KWLang::LanguageID, int) const {
    return head_.copyright;
}

int FS_Type1AFM::getWeight(int) const {
    return head_.weight;
}
bool FS_Type1AFM::isItalic(int) const {
    return head_.italicAngle != 0;
}
float FS_Type1AFM::getXHeight(int) const {
    return head_.xHeight;
}
FS_EncodingScheme FS_Type1AFM::getEncodingScheme(int) const {
    return head_.encodingScheme;
}
bool FS_Type1AFM::hasVerticalGlyph(int) const {
    return head_.metricsSet > 0;
}

void FS_Type1AFM::addTextMetrics(FS_TextMetricSource& source) const {
    const Type1Box& box = head_.fontBBox;
    source.ascent = double{box.top};
    source.descent = std::max(0.0, -double{box.bottom});
    source.capHeight = double{head_.capHeight};
    source.typoAscender = double{head_.ascender};
    source.typoDescender = double{head_.descender};
    source.externalLeading = double{head_.externalLeading};
    source.aveCharWidth = double{head_.averageWidth};
    source.maxCharWidth = double{head_.maximumWidth};
    source.italicAngle = head_.italicAngle;
    source.pitchAndFamily = head_.isFixedPitch ? 0 : 1;
    source.fontBBox = box.corners();
}

bool FS_Type1AFM::hasPairKerningInfo(bool vertical, int faceIndex) const {
    return head_.hasKernPairs || FS_Type1::hasPairKerningInfo(vertical, faceIndex);
}

} // namespace KWFontService_NS
