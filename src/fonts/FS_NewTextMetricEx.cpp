#include <KWFontService17/FS_NewTextMetricEx.h>

#include "fonts/FS_FontFileOptions.h"

#include <KWFontService17/FS_WindowsRecords.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace KWFontService_NS {

namespace {

/// Bits of OpenType `OS/2` ulCodePageRange1.
enum CodePage : unsigned int {
    Latin1 = 0,
    Cyrillic = 2,
    Greek = 3,
    Hebrew = 5,
    Arabic = 6,
    Thai = 16,
    Japanese = 17,
    ChineseSimplified = 18,
    Korean = 19,
    ChineseTraditional = 20,
};

} // namespace

FS_NewTextMetricEx::FS_NewTextMetricEx(const tagNEWTEXTMETRICEXW& metric)
    : ascent(static_cast<float>(metric.ntmTm.tmAscent)),
      descent(static_cast<float>(metric.ntmTm.tmDescent)),
      internalLeadingA(static_cast<float>(metric.ntmTm.tmInternalLeading) / 2),
      internalLeadingD(internalLeadingA),
      aveCharWidth(static_cast<float>(metric.ntmTm.tmAveCharWidth)),
      maxCharWidth(static_cast<float>(metric.ntmTm.tmMaxCharWidth)),
      pitchAndFamily(metric.ntmTm.tmPitchAndFamily) {
    std::copy(std::begin(metric.ntmFontSig.fsUsb), std::end(metric.ntmFontSig.fsUsb),
              unicodeRanges.begin());
    std::copy(std::begin(metric.ntmFontSig.fsCsb), std::end(metric.ntmFontSig.fsCsb),
              codePages.begin());
}

bool FS_NewTextMetricEx::checkUSB(UnicodeSubsetBitFields n) const {
    const std::size_t word = static_cast<unsigned int>(n) / 32;
    return word < unicodeRanges.size() &&
           ((unicodeRanges[word] >> (static_cast<unsigned int>(n) % 32)) & 1) != 0;
}

bool FS_NewTextMetricEx::isInUnicodeRange(int ch) const {
    return fontEntrySettings == nullptr || fontEntrySettings->unicodeRange == nullptr ||
           fontEntrySettings->unicodeRange->inRange(ch);
}

bool FS_NewTextMetricEx::isLatin1() const {
    return checkUSB(USB_BasicLatin) || hasCodePage(Latin1);
}
bool FS_NewTextMetricEx::isGreek() const {
    return checkUSB(USB_Greek) || hasCodePage(Greek);
}
bool FS_NewTextMetricEx::isCyrillic() const {
    return checkUSB(USB_Cyrillic) || hasCodePage(Cyrillic);
}
bool FS_NewTextMetricEx::isArmenian() const {
    return checkUSB(USB_Armenian);
}
bool FS_NewTextMetricEx::isHebrew() const {
    return checkUSB(USB_Hebrew) || hasCodePage(Hebrew);
}
bool FS_NewTextMetricEx::isArabic() const {
    return checkUSB(USB_Arabic) || hasCodePage(Arabic);
}
bool FS_NewTextMetricEx::isDevanagari() const {
    return checkUSB(USB_Devanagari);
}
bool FS_NewTextMetricEx::isBengali() const {
    return checkUSB(USB_Bengali);
}
bool FS_NewTextMetricEx::isGurmukhi() const {
    return checkUSB(USB_Gurmukhi);
}
bool FS_NewTextMetricEx::isGujarati() const {
    return checkUSB(USB_Gujarati);
}
bool FS_NewTextMetricEx::isOriya() const {
    return checkUSB(USB_Oriya);
}
bool FS_NewTextMetricEx::isTamil() const {
    return checkUSB(USB_Tamil);
}
bool FS_NewTextMetricEx::isTelugu() const {
    return checkUSB(USB_Telugu);
}
bool FS_NewTextMetricEx::isKannada() const {
    return checkUSB(USB_Kannada);
}
bool FS_NewTextMetricEx::isMalayalam() const {
    return checkUSB(USB_Malayalam);
}
bool FS_NewTextMetricEx::isThai() const {
    return checkUSB(USB_Thai) || hasCodePage(Thai);
}
bool FS_NewTextMetricEx::isLao() const {
    return checkUSB(USB_Lao);
}
bool FS_NewTextMetricEx::isGeorgian() const {
    return checkUSB(USB_Georgian);
}
bool FS_NewTextMetricEx::isHiragana() const {
    return checkUSB(USB_Hiragana) || hasCodePage(Japanese);
}
bool FS_NewTextMetricEx::isKatakana() const {
    return checkUSB(USB_Katakana) || hasCodePage(Japanese);
}
bool FS_NewTextMetricEx::isKorean() const {
    return checkUSB(USB_Hangul) || hasCodePage(Korean);
}
bool FS_NewTextMetricEx::isMathOperator() const {
    return checkUSB(USB_MathematicalOperators) || checkUSB(USB_MathematicalAlphanumerics);
}
bool FS_NewTextMetricEx::isTibetan() const {
    return checkUSB(USB_Tibetan);
}
bool FS_NewTextMetricEx::isSyriac() const {
    return checkUSB(USB_Syriac);
}
bool FS_NewTextMetricEx::isSinhala() const {
    return checkUSB(USB_Sinhala);
}
bool FS_NewTextMetricEx::isMyanmar() const {
    return checkUSB(USB_Myanmar);
}
bool FS_NewTextMetricEx::isEthiopic() const {
    return checkUSB(USB_Ethiopic);
}
bool FS_NewTextMetricEx::isKhmer() const {
    return checkUSB(USB_Khmer);
}

bool FS_NewTextMetricEx::hasIdeographs() const {
    return checkUSB(USB_CJKIdeographs) || checkUSB(USB_CJKMiscellaneous) ||
           checkUSB(USB_CJKSymbols);
}

bool FS_NewTextMetricEx::isChineseSimp() const {
    return hasCodePage(ChineseSimplified) && hasIdeographs();
}
bool FS_NewTextMetricEx::isChineseTrad() const {
    return hasCodePage(ChineseTraditional) && hasIdeographs();
}
bool FS_NewTextMetricEx::isJapanese() const {
    return hasCodePage(Japanese) && (hasIdeographs() || checkUSB(USB_Hiragana) ||
                                     checkUSB(USB_Katakana) || checkUSB(USB_CJKCompatibilityForms));
}

bool FS_NewTextMetricEx::isChineseSimpEncoding() const {
    return isChineseSimp() && (codePages[0] & 0xFFFBFFFF) == 0;
}
bool FS_NewTextMetricEx::isChineseTradEncoding() const {
    return isChineseTrad() && (codePages[0] & 0xFFEFFFFF) == 0;
}
bool FS_NewTextMetricEx::isJapaneseEncoding() const {
    return isJapanese() && (codePages[0] & 0xFFFDFFFF) == 0;
}
bool FS_NewTextMetricEx::isKoreanEncoding() const {
    return isKorean() && (codePages[0] & 0xFFF7FFFF) == 0;
}

} // namespace KWFontService_NS
