#pragma once

#include "fonts/EudcLink.h"
#include "fonts/FS_TextMetricSource.h"
#include "fonts/FS_Type1Printer.h"
#include "type1/GlyphListFile.h"
#include "type1/StandardFonts.h"
#include "type1/Type1CharCode.h"
#include "type1/Type1CodeMap.h"
#include "type1/Type1Metrics.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWLock.h>
#include <KWCommon15/KWPtr.h>

#include <cstdint>

namespace KWFontService_NS {

/// A Type 1 font as a user finds it: its metrics file, and beside that, in a file of the same name,
/// the printer font with the outlines. A font may do without a printer font; then it has names,
/// style and widths, and neither glyphs nor an outline.
///
/// Glyph ids are those of the printer font.
class FS_Type1 : public FS_BaseFont, public Type1CodeMap {
public:
    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;

    bool isType1Font(int faceIndex) const override;
    bool isTrueTypeFont(int faceIndex) const override;
    bool isType1OrNoCID(int faceIndex) const override;
    bool isTrueTypeOrCID(int faceIndex) const override;

    /// Reads the glyphs of the metrics file, the glyph list of the configuration, and the printer
    /// font if it is in segments.
    bool loadFont(KWError& error, int faceIndex, std::istream* stream) override;
    void registerFileName(FS_FontPool& pool, const KWUri& fileUri) override;
    void registerFontNames(FS_FontPool& pool) override;

    UnicodeString getSubFamilyName(KWLang::LanguageID language, int faceIndex) const override;
    UnicodeString getPostScriptName(KWLang::LanguageID language, int faceIndex) const override;
    bool getLogFont(FS_EnumLogFontEx& font, int faceIndex) const override;
    /// In thousandths of the em, which the files measure in.
    bool getNewTextMetricEx(FS_NewTextMetricEx& metric, int faceIndex) const override;
    /// A size above 0 counts as for `getTextWidth`.
    bool getOutlineTextMetrics(FS_NewTextMetricEx& metric, int size, int faceIndex) const override;

    /// A size above 0 counts for the height of the font box, or for `dfAscent` where a PFM file has
    /// no printer font beside it; 0 measures nothing. A character that is missing has the width of
    /// the space where the font knows of one by its code, or by the configuration's glyph list.
    float getTextWidth(const UnicodeString& text, int size, bool vertical, int* firstMissing,
                       int faceIndex) const override;
    unsigned short getGlyphID(int ch, bool vertical, int faceIndex) const override;
    float getGlyphWidth(unsigned short gid, int size, bool vertical, int faceIndex) const override;
    bool isSymbolicFont(int faceIndex) const override;
    bool isFixedWidthFont(int faceIndex) const override;
    unsigned int getEmbedableCharCount(int faceIndex) const override;
    bool isEmbeddable(int faceIndex) const override;
    /// `FS_EMBED_OUTLINES` with a printer font: the format has no word against it.
    FS_EMBEDSTATUS getEmbedStatus(int faceIndex) const override;
    /// 1000 without a printer font.
    int getUnitsPerEm(int faceIndex) const override;
    bool hasPairKerningInfo(bool vertical, int faceIndex) const override;
    float getPairKerningValue(unsigned short left, unsigned short right, int size, bool vertical,
                              int faceIndex) const override;

    unsigned short getType1CharCode(int ch, int faceIndex) override;
    const Type1CMapArray* getType1CMapArray(unsigned char fontNumber, int faceIndex) const override;
    bool getType1CMapPair(unsigned char fontNumber, int index, unsigned char& code,
                          std::string& name, int faceIndex) const override;
    bool getType1GlyphName(unsigned char fontNumber, unsigned char code, std::string& name,
                           int faceIndex) const override;

    using FS_BaseFont::getType1EmbedFont; // one of the two is written anew
    bool getType1EmbedFont(unsigned char fontNumber, const char* codes, int count,
                           KWMemStream& output, int& length1, int& length2, int& length3,
                           int faceIndex) override;
    bool getType1FontStream(KWMemStream& output, int& length1, int& length2, int& length3,
                            int faceIndex) override;

    void setEudcFont(const FS_FontRef& eudcFont, int faceIndex) override;
    FS_FontRef getEudcFont(int faceIndex) const override;
    /// The printer font's.
    FT_FaceRec_* getFTFace(int faceIndex) override;

    /// Null when there is none.
    FS_Type1Printer* getPrinterFont() const { return printerFont.get(); }
    /// The one of the 14 standard fonts that this one is by its name; null when it is none.
    const Type1StandardFont* getStandardFont() const { return standardFont; }

protected:
    /// Looks for the printer font without reading it.
    explicit FS_Type1(const KWUri& uri);

    /// The end of a scan: tells a standard font by its name, and scans the printer font, which is
    /// dropped when that fails. False when it was dropped.
    bool finishScan(KWError& error);

    /// The PostScript name that the metrics file has.
    virtual const UnicodeString& metricsName() const = 0;
    virtual UnicodeString weightName() const { return {}; }
    /// Reads what the scan left in the metrics file.
    /// @param stream  null: the font opens its own
    virtual bool loadMetrics(KWError&, std::istream*) { return true; }
    /// The glyphs by name and by code; null when nothing is known of them.
    virtual const Type1Metrics* glyphs() const = 0;
    /// What a size above 0 stands for, in units of the font.
    virtual float lineHeight() const = 0;
    /// The text metrics that the metrics file has, in a record with those of every font.
    virtual void addTextMetrics(FS_TextMetricSource& source) const = 0;
    /// The sum of the advances of a text, in units of the font.
    /// @param firstMissing  set to the index of the first character that is missing, or left
    virtual std::int64_t textUnits(const UnicodeString& text, int& firstMissing) const;

    KWCommonNS::KWPtr<FS_Type1Printer> printerFont;
    const Type1StandardFont* standardFont = nullptr;
    bool loaded = false;
    bool skipGlyphNameMapping = false;
    bool hasGlyphList = false;
    Type1GlyphList glyphList;

private:
    Type1CodeSource codeSource() const;
    bool load(KWError& error, std::istream* stream);
    bool loadGlyphList(KWError& error, const KWUri& list);

    KWCommonNS::KWLock loadLock_;
    bool loadResult_ = false;
    KWError loadError_;
    EudcLink eudcLink_;
};

} // namespace KWFontService_NS
