#pragma once

#include <KWFontService17/FS_Types.h>

#include <array>

namespace KWFontService_NS {

struct FS_FontFileOptions;
struct FS_TextMetricSource;

/// Bits of OpenType `OS/2` ulUnicodeRange1 to 4, counted through from 0: the blocks that the script
/// tests below look at. Any other bit number may be asked for as well.
enum UnicodeSubsetBitFields : unsigned int {
    USB_BasicLatin = 0,
    USB_Greek = 7,
    USB_Cyrillic = 9,
    USB_Armenian = 10,
    USB_Hebrew = 11,
    USB_Arabic = 13,
    USB_Devanagari = 15,
    USB_Bengali = 16,
    USB_Gurmukhi = 17,
    USB_Gujarati = 18,
    USB_Oriya = 19,
    USB_Tamil = 20,
    USB_Telugu = 21,
    USB_Kannada = 22,
    USB_Malayalam = 23,
    USB_Thai = 24,
    USB_Lao = 25,
    USB_Georgian = 26,
    USB_MathematicalOperators = 38,
    USB_CJKSymbols = 48,
    USB_Hiragana = 49,
    USB_Katakana = 50,
    USB_CJKMiscellaneous = 55,
    USB_Hangul = 56,
    USB_CJKIdeographs = 59,
    USB_CJKCompatibilityForms = 65,
    USB_Tibetan = 70,
    USB_Syriac = 71,
    USB_Sinhala = 73,
    USB_Myanmar = 74,
    USB_Ethiopic = 75,
    USB_Khmer = 80,
    USB_MathematicalAlphanumerics = 89,
};

/// The metrics of a face at one size, and what it declares to serve. A plain value; no operation
/// fails.
///
/// Lengths are in the unit that the size chose when the record was filled (`FS_FontInfo::
/// getOutlineTextMetrics`), in font units where the size was that of the em. A font without a value
/// has 0. Sources are OpenType `OS/2`, `hhea`, `vhea`, `head` and `post`, or the metrics file of a
/// Type 1 font.
class KWFONTSERVICE_API FS_NewTextMetricEx {
public:
    /// All 0, of variable pitch.
    FS_NewTextMetricEx() = default;
    /// From a Windows record (FS_WindowsRecords.h): its extents, widths, pitch and signature, and
    /// half of its internal leading on either side. What it does not have is 0.
    FS_NewTextMetricEx(const tagNEWTEXTMETRICEXW& metric);

    /// True when the record has an ascent.
    bool hasValue() const { return ascent != 0.0F; }
    /// True when the record has a typographic ascender.
    bool hasTypoInfo() const { return typoAscender != 0.0F; }
    /// True when the record has a vertical typographic ascender.
    bool hasVertTypoInfo() const { return vertTypoAscender != 0.0F; }
    /// By the italic angle alone.
    bool isItalic() const { return italicAngle != 0.0F; }

    /// Upwards from the baseline (usWinAscent).
    float getAscent() const { return ascent; }
    /// Downwards from the baseline, so above 0 (usWinDescent).
    float getDescent() const { return descent; }
    float getCapHeight() const { return capHeight; }
    /// The part of the ascent that lies outside of the em.
    float getInternalLeadingA() const { return internalLeadingA; }
    /// The part of the descent that lies outside of the em.
    float getInternalLeadingD() const { return internalLeadingD; }
    /// Typographic extents, y up; not set where the configuration asks for Windows metrics.
    float getTypoAscender() const { return typoAscender; }
    /// Not above 0.
    float getTypoDescender() const { return typoDescender; }
    float getTypoLineGap() const { return typoLineGap; }
    /// Extents of columns to the right and, not above 0, to the left of their centre line; not set
    /// where the configuration asks for Windows metrics.
    float getVertTypoAscender() const { return vertTypoAscender; }
    float getVertTypoDescender() const { return vertTypoDescender; }
    float getVertTypoLineGap() const { return vertTypoLineGap; }
    float getExternalLeading() const { return externalLeading; }
    float getAveCharWidth() const { return aveCharWidth; }
    /// The width of the font box; of Type 1 fonts the largest advance.
    float getMaxCharWidth() const { return maxCharWidth; }
    /// In degrees counter-clockwise from upright, so below 0 for a font that leans to the right.
    float getItalicAngle() const { return italicAngle; }
    /// xMin, yMin, xMax and yMax, y up.
    const std::array<float, 4>& getFontBBox() const { return fontBBox; }

    bool isFixedPitch() const { return (pitchAndFamily & 0x01) == 0; }
    bool isSerifLike() const { return (pitchAndFamily & 0x70) == 0x10; }
    bool isScriptLike() const { return (pitchAndFamily & 0x70) == 0x40; }
    bool isSymbolFont() const { return symbolFont; }

    /// Whether the font has a Unicode block (OpenType `OS/2` ulUnicodeRange1 to 4).
    bool checkUSB(UnicodeSubsetBitFields n) const;
    /// Whether the font has a code page of those in `mask` (OpenType `OS/2` ulCodePageRange1).
    bool checkFSCharSet(unsigned int mask) const { return (codePages[0] & mask) != 0; }
    unsigned int getCodePageBits0() const { return codePages[0]; }
    /// Adds the code pages in `mask`.
    void setCodePageBits0(unsigned int mask) { codePages[0] |= mask; }
    /// Whether the configuration lets the font serve a character (`unicode-range`); true where it
    /// does not say.
    bool isInUnicodeRange(int ch) const;

    // By a Unicode block or, where there is one for the script, its code page.
    bool isLatin1() const;
    bool isGreek() const;
    bool isCyrillic() const;
    bool isArmenian() const;
    bool isHebrew() const;
    bool isArabic() const;
    bool isDevanagari() const;
    bool isBengali() const;
    bool isGurmukhi() const;
    bool isGujarati() const;
    bool isOriya() const;
    bool isTamil() const;
    bool isTelugu() const;
    bool isKannada() const;
    bool isMalayalam() const;
    bool isThai() const;
    bool isLao() const;
    bool isGeorgian() const;
    bool isHiragana() const;
    bool isKatakana() const;
    bool isKorean() const;
    bool isMathOperator() const;
    bool isTibetan() const;
    bool isSyriac() const;
    bool isSinhala() const;
    bool isMyanmar() const;
    bool isEthiopic() const;
    bool isKhmer() const;

    // By the code page together with a Unicode block, so that one stray bit of a font for another
    // script does not count.
    bool isChineseSimp() const;
    bool isChineseTrad() const;
    bool isJapanese() const;

    // The same, for a font that declares no other code page of ulCodePageRange1.
    bool isChineseSimpEncoding() const;
    bool isChineseTradEncoding() const;
    bool isJapaneseEncoding() const;
    bool isKoreanEncoding() const;

private:
    friend struct FS_TextMetricSource; // what fonts fill the record from

    bool hasCodePage(unsigned int bit) const { return ((codePages[0] >> bit) & 1) != 0; }
    bool hasIdeographs() const;

    float ascent = 0;
    float descent = 0;
    float capHeight = 0;
    float internalLeadingA = 0;
    float internalLeadingD = 0;
    float typoAscender = 0;
    float typoDescender = 0;
    float typoLineGap = 0;
    float vertTypoAscender = 0;
    float vertTypoDescender = 0;
    float vertTypoLineGap = 0;
    float externalLeading = 0;
    float aveCharWidth = 0;
    float maxCharWidth = 0;
    float italicAngle = 0;
    int pitchAndFamily = 1;
    bool symbolFont = false;
    std::array<unsigned int, 4> unicodeRanges{};
    std::array<unsigned int, 2> codePages{};
    std::array<float, 4> fontBBox{};
    const FS_FontFileOptions* fontEntrySettings = nullptr; ///< not owned
};

} // namespace KWFontService_NS
