#include "fonts/FS_Type1.h"

#include "fonts/CodePoints.h"
#include "fonts/FS_FontFileOptions.h"
#include "fonts/FS_Type1PFA.h"
#include "fonts/FS_Type1PFB.h"
#include "fonts/FontStream.h"
#include "type1/GlyphNames.h"
#include "type1/NameKeys.h"
#include "type1/Type1Text.h"

#include <KWFontService17/FS_LogFont.h>

#include <unicode/uchar.h>

#include <cmath>

namespace KWFontService_NS {

using KWCommonNS::KWMutex;
using KWCommonNS::KWPtr;

namespace {

constexpr int kFirstSymbolCode = 32;
constexpr int kLastSymbolCode = 255;

/// The extension of a printer font, in capitals when that of the metrics file is.
UnicodeString printerExtension(const KWUri& metrics, const char* lower) {
    const UnicodeString extension = metrics.getExtension();
    UnicodeString result(lower);
    return extension.length() > 1 && u_isupper(extension.char32At(1))
               ? result.toUpper(icu::Locale::getRoot())
               : result;
}

template <class Printer>
KWPtr<FS_Type1Printer> findPrinterFont(const KWUri& metrics, const char* extension) {
    KWUri file = metrics;
    file.setExtension(printerExtension(metrics, extension));
    return KWPtr<FS_Type1Printer>(file.isFileExists() ? new Printer(file) : nullptr);
}

} // namespace

FS_Type1::FS_Type1(const KWUri& fontUri)
    : FS_BaseFont(fontUri), printerFont(findPrinterFont<FS_Type1PFB>(fontUri, ".pfb")) {
    if (!printerFont)
        printerFont = findPrinterFont<FS_Type1PFA>(fontUri, ".pfa");
    nextCode = kLastOwnCode;
}

unsigned int FS_Type1::getClassId() const {
    return FS_CLASSID_TYPE1;
}

bool FS_Type1::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_TYPE1 || FS_BaseFont::isKindOf(id);
}

bool FS_Type1::isType1Font(int) const {
    return true;
}
bool FS_Type1::isTrueTypeFont(int) const {
    return false;
}
bool FS_Type1::isType1OrNoCID(int) const {
    return true;
}
bool FS_Type1::isTrueTypeOrCID(int) const {
    return false;
}

// --- reading ------------------------------------------------------------------------------------

bool FS_Type1::finishScan(KWError& error) {
    standardFont = findStandardFont(normaliseFontName(metricsName()));
    if (!printerFont)
        return true;
    const std::unique_ptr<std::istream> stream = openFontStream(printerFont->getUri());
    const bool isUsable = stream ? printerFont->scanFont(error, *stream)
                                 : fontError(error, FS_ERROR_PRINTER_FONT, UnicodeString());
    if (!isUsable)
        printerFont = nullptr;
    return isUsable;
}

bool FS_Type1::loadFont(KWError& error, int, std::istream* stream) {
    KWMutex mutex(loadLock_);
    mutex.lock();
    if (!loaded) {
        loadResult_ = load(loadError_, stream);
        loaded = true;
    }
    if (!loadResult_)
        error = loadError_;
    return loadResult_;
}

bool FS_Type1::load(KWError& error, std::istream* stream) {
    initType1Tables();
    if (!loadMetrics(error, stream))
        return false;
    if (fontEntrySettings != nullptr) {
        skipGlyphNameMapping = fontEntrySettings->skipGlyphNameMapping;
        hasGlyphList = !fontEntrySettings->glyphList.isEmpty();
        if (hasGlyphList && !loadGlyphList(error, fontEntrySettings->glyphList))
            return false;
    }
    // One in hexadecimal text is left to the first that asks for a glyph: its names stay unknown.
    if (printerFont && printerFont->getFontFileType(0) == FS_FILETYPE_PFB)
        return printerFont->loadFont(error, 0, nullptr);
    return true;
}

bool FS_Type1::loadGlyphList(KWError& error, const KWUri& list) {
    const std::unique_ptr<std::istream> stream = openTextStream(list);
    if (!stream)
        return fontError(error, FS_ERROR_GLYPH_LIST_OPEN, UnicodeString());
    return readGlyphList(*stream, glyphList) ||
           fontError(error, FS_ERROR_GLYPH_LIST_READ, UnicodeString());
}

// --- names and style ----------------------------------------------------------------------------

UnicodeString FS_Type1::getSubFamilyName(KWLang::LanguageID language, int faceIndex) const {
    if (printerFont)
        return printerFont->getSubFamilyName(language, faceIndex);
    return type1SubFamilyName(getFullFontName(language, faceIndex),
                              getFamilyName(language, faceIndex), weightName());
}

UnicodeString FS_Type1::getPostScriptName(KWLang::LanguageID language, int faceIndex) const {
    return printerFont ? printerFont->getPostScriptName(language, faceIndex) : UnicodeString();
}

bool FS_Type1::getLogFont(FS_EnumLogFontEx& font, int faceIndex) const {
    font = FS_EnumLogFontEx(getFamilyName(0, faceIndex), getFullFontName(0, faceIndex),
                            getWeight(faceIndex), isItalic(faceIndex));
    return true;
}

bool FS_Type1::getNewTextMetricEx(FS_NewTextMetricEx& metric, int faceIndex) const {
    return getOutlineTextMetrics(metric, -kType1UnitsPerEm, faceIndex);
}

bool FS_Type1::getOutlineTextMetrics(FS_NewTextMetricEx& metric, int size, int faceIndex) const {
    FS_TextMetricSource source{.unitsPerEm = kType1UnitsPerEm,
                               .lineHeight = double{lineHeight()},
                               .symbolFont = isSymbolicFont(faceIndex),
                               .fontEntrySettings = getFontEntrySettings()};
    addTextMetrics(source);
    source.fill(metric, size);
    return true;
}

bool FS_Type1::isSymbolicFont(int faceIndex) const {
    return printerFont && printerFont->isSymbolicFont(faceIndex);
}

bool FS_Type1::isFixedWidthFont(int faceIndex) const {
    return printerFont && printerFont->isFixedWidthFont(faceIndex);
}

// --- glyphs and widths --------------------------------------------------------------------------

Type1CodeSource FS_Type1::codeSource() const {
    return {.isSymbolic = isSymbolicFont(0),
            .skipGlyphNameMapping = skipGlyphNameMapping,
            .glyphList = hasGlyphList ? &glyphList : nullptr,
            .metrics = glyphs(),
            .builtInNames = printerFont ? &printerFont->builtInNames() : nullptr,
            .scheme = getEncodingScheme(0)};
}

std::int64_t FS_Type1::textUnits(const UnicodeString& text, int& firstMissing) const {
    const Type1Metrics* const records = glyphs();
    if (records == nullptr)
        return 0;
    const Type1CodeSource font = codeSource();
    const auto find = [&](int ch) {
        if (font.skipGlyphNameMapping)
            return records->findCode(ch);
        const Type1CharMetric* const record =
            font.isListed(ch) ? font.findListed(ch) : font.findNamed(ch);
        const bool isCode = font.isSymbolic && ch >= kFirstSymbolCode && ch <= kLastSymbolCode;
        return record == nullptr && isCode ? records->findCode(ch) : record;
    };
    const Type1CharMetric* const space =
        font.skipGlyphNameMapping ? records->findCode(kSpace) : font.findListed(kSpace);
    const char16_t* const units = text.getBuffer();
    std::int64_t sum = 0;
    for (std::int32_t next = 0; next < text.length();) {
        const std::int32_t index = next;
        const Type1CharMetric* record =
            find(font.settled(nextCodePoint(units, next, text.length())));
        if (record == nullptr) {
            if (firstMissing < 0)
                firstMissing = index;
            record = space;
        }
        if (record != nullptr)
            sum += record->WX;
    }
    return sum;
}

float FS_Type1::getTextWidth(const UnicodeString& text, int size, bool, int* firstMissing,
                             int) const {
    int missing = -1;
    const auto units = static_cast<double>(textUnits(text, missing));
    if (firstMissing != nullptr)
        *firstMissing = missing;
    const double divisor = size < 0 ? double{kType1UnitsPerEm} : double{lineHeight()};
    if (divisor == 0 || !std::isfinite(divisor))
        return 0;
    return static_cast<float>(units / divisor * std::fabs(static_cast<double>(size)));
}

unsigned short FS_Type1::getGlyphID(int ch, bool vertical, int faceIndex) const {
    return printerFont ? printerFont->getGlyphID(ch, vertical, faceIndex) : FS_NO_GLYPH;
}

float FS_Type1::getGlyphWidth(unsigned short gid, int size, bool vertical, int faceIndex) const {
    return printerFont ? printerFont->getGlyphWidth(gid, size, vertical, faceIndex) : 0;
}

unsigned int FS_Type1::getEmbedableCharCount(int faceIndex) const {
    return printerFont ? printerFont->getEmbedableCharCount(faceIndex) : 0;
}

bool FS_Type1::isEmbeddable(int faceIndex) const {
    return getEmbedStatus(faceIndex) == FS_EMBED_OUTLINES;
}

FS_EMBEDSTATUS FS_Type1::getEmbedStatus(int faceIndex) const {
    return printerFont ? FS_EMBED_OUTLINES : FS_BaseFont::getEmbedStatus(faceIndex);
}

int FS_Type1::getUnitsPerEm(int faceIndex) const {
    return printerFont ? printerFont->getUnitsPerEm(faceIndex) : kType1UnitsPerEm;
}

bool FS_Type1::hasPairKerningInfo(bool vertical, int faceIndex) const {
    return printerFont && printerFont->hasPairKerningInfo(vertical, faceIndex);
}

float FS_Type1::getPairKerningValue(unsigned short left, unsigned short right, int size,
                                    bool vertical, int faceIndex) const {
    return printerFont ? printerFont->getPairKerningValue(left, right, size, vertical, faceIndex)
                       : 0;
}

// --- codes --------------------------------------------------------------------------------------

unsigned short FS_Type1::getType1CharCode(int ch, int) {
    return findType1CharCode(*this, codeSource(), ch);
}

const FS_BaseFont::Type1CMapArray* FS_Type1::getType1CMapArray(unsigned char fontNumber,
                                                               int) const {
    return Type1CodeMap::getType1CMapArray(fontNumber);
}

bool FS_Type1::getType1CMapPair(unsigned char fontNumber, int index, unsigned char& code,
                                std::string& name, int) const {
    return Type1CodeMap::getType1CMapPair(fontNumber, index, code, name);
}

bool FS_Type1::getType1GlyphName(unsigned char fontNumber, unsigned char code, std::string& name,
                                 int) const {
    return Type1CodeMap::getType1GlyphName(fontNumber, code, name);
}

void FS_Type1::setEudcFont(const FS_FontRef& eudcFont, int) {
    eudcLink_.set(eudcFont);
}

FS_FontRef FS_Type1::getEudcFont(int) const {
    return eudcLink_.get();
}

FT_FaceRec_* FS_Type1::getFTFace(int faceIndex) {
    return printerFont ? printerFont->getFTFace(faceIndex) : nullptr;
}

} // namespace KWFontService_NS
