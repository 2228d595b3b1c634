#pragma once

#include <KWFontService17/FS_BaseFont.h>

#include <memory>
#include <vector>

namespace KWFontService_NS {

class FS_ExtraFontPool;
/// The fonts that a document brings along, as the by-name operations take them.
using FS_ExtraFonts = FS_ExtraFontPool;

class FS_GlyphBMP;
class GlyphIDArray;
class GlyphIDArray2;
class GlyphIDPosition;
struct FS_GlyphBMPSetting;
struct FS_GlyphDrawInfo;

/// One font, one face of it, and the last error: what a host works with.
///
/// A value to be made on the stack. It keeps a plain pointer to a font that the service keeps
/// alive, so a copy is a second view of the same font and destroying it frees nothing of the font.
/// Use one object from one thread at a time; any number of objects may stand for the same font.
///
/// No operation throws unless it says so. Without a created font each answers false, 0, 0xFFFF, an
/// empty text or null unless it says otherwise. Sizes follow one rule: 0 answers in font units,
/// below 0 the value is multiplied by |size| / unitsPerEm, above 0 by size / (usWinAscent +
/// usWinDescent).
class KWFONTSERVICE_API FS_FontInfo {
public:
    FS_FontInfo();
    FS_FontInfo(const FS_FontInfo& other);
    FS_FontInfo& operator=(const FS_FontInfo& other);
    ~FS_FontInfo();

    // --- the font -------------------------------------------------------------------------------

    /// Binds this object to a font file, without any search: the file's signature, not its name,
    /// decides how it is read. The font then lives as long as the service.
    /// @return false when the file is not a usable font, with `getError` set unless the file is of
    ///         another kind altogether (its version word is that of no single sfnt)
    bool createFont(const KWUri& file);
    /// Binds this object to the font that a name and a style mean: among the fonts that the
    /// document brought, then the aliases of the configuration, then all fonts. The name may be
    /// any name of the font in any language; case, blanks, hyphens and ideographic spaces do not
    /// count. It may be the name of the font's file as well, with its extension or without; there
    /// only case does not count. A style that the family lacks is filled from its other faces as
    /// CSS does it; no face is slanted or emboldened.
    /// @param weight       CSS weight; 0 is 400
    /// @param stretch      1 ultra-condensed to 9 ultra-expanded; 0 is 5, normal
    /// @param extraFonts   fonts that are searched first; may be null
    /// @param skipAliases  leaves the aliases of the configuration out
    /// @return false when there is no such font: `getError` is then empty and this object as it
    ///         was. False also when the font does not open, with the reason in `getError`
    /// @throws KWCommonNS::KWError  what a reader of the font throws outright; and when this call
    ///         is the one that opens the service, what is wrong with the configuration
    bool createFont(const UnicodeString& family, int weight, bool italic, int stretch,
                    FS_ExtraFonts* extraFonts, bool skipAliases);
    /// The same with the normal stretch.
    bool createFont(const UnicodeString& family, int weight, bool italic, FS_ExtraFonts* extraFonts,
                    bool skipAliases);
    /// Where the file of a font is, in spite of its name: that of the font which `createFont`
    /// would bind to, aliases included. Nothing is opened.
    /// @return  the empty URI when there is no such font
    static KWUri getFontFolderPath(const UnicodeString& family, int weight, bool italic,
                                   int stretch, FS_ExtraFonts* extraFonts);
    /// The family name, in a language, of the font that a name means in its normal style; the
    /// typographic family name where the service prefers that and the font has one.
    /// @param language  a Windows language id; 0 for the font's default
    /// @return          empty when there is no such font
    static UnicodeString getFamilyName(KWLang::LanguageID language, const UnicodeString& family,
                                       FS_ExtraFonts* extraFonts);
    /// Forgets the font; copies of this object stay valid. `getError` keeps the last error.
    void deleteFont();
    bool isCreatedFont() const { return font != nullptr; }
    FS_BaseFont* getFont() const { return font; }
    const KWError& getError() const { return error; }

    // --- file -----------------------------------------------------------------------------------

    /// URI of the font file; empty without a font.
    KWUri getFontFileName() const;
    FS_FontFileType getFontFileType() const;
    FS_FontFileType getFontFileType2() const;
    bool isFontCollection() const;
    bool isExtraFont(int* weight, bool* italic) const;
    bool isTrueTypeFont() const;
    bool isTrueTypeOrCID() const;
    bool isType1Font() const;
    bool isType1OrNoCID() const;

    // --- names: 0 for the default language, else exactly that Windows language id ----------------

    UnicodeString getFamilyName(KWLang::LanguageID language) const;
    UnicodeString getSubFamilyName(KWLang::LanguageID language) const;
    UnicodeString getFullFontName(KWLang::LanguageID language) const;
    UnicodeString getPostScriptName(KWLang::LanguageID language) const;
    UnicodeString getPreferredFamily(KWLang::LanguageID language) const;
    UnicodeString getPreferredSubFamily(KWLang::LanguageID language) const;
    UnicodeString getPostScriptCIDFindfontName(KWLang::LanguageID language) const;
    UnicodeString getCopyright(KWLang::LanguageID language) const;
    UnicodeString getManufacturer(KWLang::LanguageID language) const;
    UnicodeString getLicenseDescription(KWLang::LanguageID language) const;
    /// True when two font names count as one: they differ at most in case, blanks, hyphens and
    /// ideographic spaces. Needs no font; may be called from any thread.
    static bool isSameFontName(const UnicodeString& a, const UnicodeString& b);

    // --- style ----------------------------------------------------------------------------------

    /// Fills what is not null: CSS weight, italic flag, width class 1 to 9. 0, false, 5 without a
    /// font.
    void getFontStyle(int* weight, bool* italic, int* width) const;
    unsigned char getFamilyClass() const;
    unsigned char getFamilySubclass() const;
    const PANOSE* getPanose() const;
    bool isFixedWidthFont() const;
    bool isSerifLikeFont() const;
    bool isScriptLikeFont() const;
    bool isSymbolicFont() const;
    FS_CodePageRange getCodePageRangeBitFields() const;

    // --- glyphs ---------------------------------------------------------------------------------

    /// Glyph of a code point, 0xFFFF when missing.
    /// @param vertical  true asks for the vertical form where the font has one
    unsigned short getGlyphID(int ch, bool vertical) const;
    /// Glyphs of a text, one for each code point.
    /// @param glyphs        room for one glyph for each code point of `text`; 0xFFFF marks a
    ///                      missing one, 0 one that an end-user-defined character font has
    /// @param count         number of glyphs stored
    /// @param firstMissing  null, or set to the UTF-16 index of the first missing character, -1
    ///                      when there is none
    bool getGlyphIDs(const UnicodeString& text, unsigned short* glyphs, int& count, bool vertical,
                     int* firstMissing) const;
    /// Glyph of a CID of a CID-keyed font, in a name-keyed one with `CFF ` outlines of a string id;
    /// 0xFFFF when there is none and for any other font (Adobe Technical Note 5176, charset).
    unsigned short getGlyphIDfromCID(unsigned short cid) const;
    GlyphClassDef getGlyphClassDef(unsigned short gid) const;
    unsigned short getStringID(unsigned short gid) const;
    unsigned short variationSequence(int ch, int selector) const;
    bool hasVariationSelector() const;
    /// True when the font can substitute vertical forms.
    bool hasVerticalGlyph() const;
    /// True when this character has a vertical form of its own.
    bool hasVerticalGlyph(int ch) const;
    /// True for a character that stands as it is in vertical text: by its kind it has no vertical
    /// form, and neither has it one in this font.
    /// @param hasVertical  set to whether the font has a vertical form for such a character; not
    ///                     null
    bool isNoVerticalGlyph(int ch, bool* hasVertical) const;

    // --- metrics --------------------------------------------------------------------------------

    int getUnitsPerEm() const;
    /// Advance along the writing direction; 0xFFFF answers 0. `vertical` reads `vmtx` where the
    /// face has vertical metrics, else `hmtx`.
    float getGlyphWidth(unsigned short gid, int size, bool vertical) const;
    float getDefaultCharWidth(int size) const;
    /// Sum of the advances of a text; a missing character counts as glyph 0. There is no form in
    /// font units: size 0 answers 0.
    /// @param firstMissing  null, or set to the UTF-16 index of the first missing character, or -1
    float getTextWidth(const UnicodeString& text, int size, bool vertical, int* firstMissing) const;
    float getTextWidth(int ch, int size, bool vertical, int* firstMissing) const;
    bool hasPairKerningInfo(bool vertical) const;
    /// Added to the advance of the left glyph. In font units, also for `size` above 0; for `size`
    /// below 0 multiplied by |size| / unitsPerEm.
    float getPairKerningValue(unsigned short left, unsigned short right, int size,
                              bool vertical) const;
    float getXHeight() const;
    float getCapHeight() const;
    float getTypoAscender() const;
    float getTypoDescender() const;
    float getDefaultVertOriginY(int size) const;
    /// y of a glyph's vertical origin above the baseline, from `VORG` or, for a font that has only
    /// vertical advances, from the outline; 0 when there is nothing to adjust. A positive `size`
    /// counts as the em here when the outline answers.
    float getGlyphVertOriginY(unsigned short gid, int size) const;
    bool hasVerticalMetrics() const;
    /// Baseline shift that the configuration asks of the caller, 0 when it asks none.
    float getBaselindAdjust() const;
    /// Size factor that the configuration asks of the caller, 1 when it asks none.
    float getFontSizeAdjust() const;
    /// Extents, widths and leadings at a size, and what the font declares to serve.
    /// @param metric  filled; where the configuration asks for Windows metrics its typographic
    ///                fields stay as they are. As it was when the answer is false
    /// @param size    below 0 units per em, above 0 from ascent to descent; 0 makes every length 0:
    ///                unlike elsewhere it does not stand for font units
    bool getOutlineTextMetrics(FS_NewTextMetricEx& metric, int size) const;
    /// The text metrics, in font units, of the font that a name and a style mean (see
    /// `createFont`), which is opened for it.
    /// @return false when there is no such font, and when it does not open
    /// @throws KWCommonNS::KWError  as `createFont`
    static bool getNewTextMetricEx(const UnicodeString& family, int weight, bool italic,
                                   int stretch, FS_NewTextMetricEx& metric,
                                   FS_ExtraFonts* extraFonts);
    /// The same with the normal stretch.
    static bool getNewTextMetricEx(const UnicodeString& family, int weight, bool italic,
                                   FS_NewTextMetricEx& metric, FS_ExtraFonts* extraFonts);

    // --- mathematics ----------------------------------------------------------------------------

    using MATHConstants = FS_MATHConstants;

    // From OpenType `MATH`. A length that the font does not state is not a number: test it with
    // std::isnan.

    /// True when the font has any information for formulas.
    bool hasMATHInfo() const;
    /// A constant of the layout of formulas. Percentages (the first two and the last) come as a
    /// fraction, 0.7 for 70, all others as a length in em, upwards where they are heights.
    KWLength getMATHConstant(MATHConstants constant) const;
    /// How far a slanted glyph leans over its advance, in em.
    KWLength getItalicsCorrection(unsigned short gid) const;
    /// The glyph to take in the place of `gid` where it has to be wider, such as a brace over a
    /// formula.
    /// @param size  width in font units. > 0: the first variant at least that wide, or the last;
    ///              < 0: the one before the first that is wider than -`size`, never the last;
    ///              0: as if the constant `displayOperatorMinHeight` were asked for
    /// @return      0xFFFF when the font has no variants of the glyph or none is narrow enough
    unsigned short getMATHVariantH(unsigned short gid, int size) const;
    /// The same for a glyph that has to be taller, such as a parenthesis or a root. The size is a
    /// height, and 0 gives the form of an operator in a displayed formula.
    unsigned short getMATHVariantV(unsigned short gid, int size) const;

    // --- layout ---------------------------------------------------------------------------------

    // The queries of a handle may run on any number of threads. They answer false or 0 for a null
    // handle. Tags are OpenType tags, the first letter in the high byte.

    /// Handle for a script and a language, to be freed by `deleteGSUBGPOSInfo` and valid as long as
    /// the font; null for a font that is no sfnt font. `GSUB` and `GPOS` are looked up apart. Only
    /// the script of exactly that tag counts: ask again for `DFLT` where that may stand in.
    /// @param language  0, and a language that the script does not list, take the script's default
    ///                  language system
    FS_GSUBGPOSInfo* getGSUBGPOSInfo(unsigned int script, unsigned int language) const;
    /// Frees a handle, or does nothing for null.
    static void deleteGSUBGPOSInfo(FS_GSUBGPOSInfo* info);
    /// True when `GSUB` has a language system for what the handle was asked for.
    static bool hasGSUBInfo(const FS_GSUBGPOSInfo* info);
    /// The same for `GPOS`.
    static bool hasGPOSInfo(const FS_GSUBGPOSInfo* info);
    /// True when `GSUB` has the script and the language was 0 or not among the script's, even if
    /// the script has no default language system.
    static bool isGSUBDefaultLangSys(const FS_GSUBGPOSInfo* info);
    /// The same for `GPOS`.
    static bool isGPOSDefaultLangSys(const FS_GSUBGPOSInfo* info);
    /// True when the language system of `GSUB` has a feature of this tag.
    static bool hasGSUBFeature(const FS_GSUBGPOSInfo* info, unsigned int tag);
    /// The same for `GPOS`.
    static bool hasGPOSFeature(const FS_GSUBGPOSInfo* info, unsigned int tag);
    /// Feature tag of an entry of the lookup order: each lookup of each feature of the `GSUB`
    /// language system, by ascending index in the font's lookup list.
    /// @param index  from 0; the answer 0 is the end of the order
    static unsigned int getGSUBFeatureTag(const FS_GSUBGPOSInfo* info, int index);
    /// The same for `GPOS`.
    static unsigned int getGPOSFeatureTag(const FS_GSUBGPOSInfo* info, int index);

    // Processing reads the font and writes the caller's arrays alone: any number of threads may
    // process runs of one font at once. Each call does a bounded amount of work, however its font
    // is made; see "Limits" in docs/architecture.md. When it is used up the lookup applies no
    // further.

    /// Applies a feature at one glyph of a run, by the first of its lookups that applies. Reverse
    /// chaining lookups are passed by.
    /// @param info       not null
    /// @param position   index of the glyph; moved behind the glyphs that were taken, and left when
    ///                   nothing applied
    /// @param out        set to the glyphs that come instead. After a context lookup it holds the
    ///                   run from the glyph on, substitutions made, of which the result counts the
    ///                   first. Left as it is when nothing applied. It may be `run` itself
    /// @param skipped    set by a ligature, and a context with one, to the glyphs that it passed
    ///                   over. It may be `run` itself, but not `out`
    /// @param alternate  which alternate to take, counted from 1
    /// @return           number of glyphs that come instead; 0 when nothing applied, and for a
    ///                   glyph that is deleted, which leaves `out` empty and moves `position`
    static int processGSUB(const FS_GSUBGPOSInfo* info, unsigned int tag, const GlyphIDArray& run,
                           int& position, GlyphIDArray& out, GlyphIDArray& skipped, int alternate);
    /// Applies one lookup of the lookup order of `GSUB` to a whole run.
    /// @param index      as for `getGSUBFeatureTag`
    /// @param in         no lookup starts at a glyph whose word is other than 0; glyphs without a
    ///                   word take part
    /// @param out        set to the resulting run, also when it is the same, with one word for each
    ///                   glyph: what it stands for (see `GlyphIDArray2`). Left as it is for an
    ///                   index outside and without a language system. It may be `in` itself
    /// @param alternate  which alternate to take, counted from 1; below 1 takes none
    /// @return           true when a glyph was substituted
    static bool processGSUB3(const FS_GSUBGPOSInfo* info, int index, const GlyphIDArray2& in,
                             GlyphIDArray2& out, int alternate);
    /// Applies a feature at one position: all its lookups in order; for script `arab` the last that
    /// applies and no other, for `hebr` the first.
    /// @param info       null has no features
    /// @param positions  changed in place
    /// @param rtl        true when the run is set from right to left
    /// @return           true when a lookup applied
    static bool processGPOS(const FS_GSUBGPOSInfo* info, unsigned int tag,
                            std::vector<GlyphIDPosition>& positions, int index, bool rtl);
    /// Applies one lookup of the lookup order of `GPOS` to all positions.
    /// @param index      as for `getGPOSFeatureTag`
    /// @param positions  changed in place
    /// @param rtl        true when the run is set from right to left; a lookup whose flag says so
    ///                   counts as such anyway
    /// @return           the position at which it first applied, or to which it moved on from
    ///                   there; -1 when it did not apply
    static int processGPOS3(const FS_GSUBGPOSInfo* info, int index,
                            std::vector<GlyphIDPosition>& positions, bool rtl);

    /// Always false: extended Apple morphing is not applied.
    static bool hasMorxInfo(const FS_GSUBGPOSInfo* info);
    /// Always false: extended Apple morphing is not applied.
    static bool processMorx(const FS_GSUBGPOSInfo* info, const GlyphIDArray& run,
                            GlyphIDArray& out);

    // --- embedding ------------------------------------------------------------------------------
    // Glyph ids are those of this font, and in an sfnt they stay the same. False leaves partial
    // bytes in `output`. Embedding calls on one font are serialised by the caller.

    /// Subset with the tables that a document needs. Of a font with `CFF ` outlines it is a bare
    /// `CFF ` table (PDF `FontFile3`) whose glyphs are packed: in a CID-keyed font their CIDs are
    /// the old glyph ids, in a name-keyed one they keep their names and have StandardEncoding.
    /// Such a font needs a list that is not empty and names glyphs that it has.
    bool getEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output) const;
    /// Subset with the tables of a zero-terminated list of tags, the outlines besides; a null list
    /// stands for every table. `CFF ` outlines are not cut, and no list of glyphs is needed.
    bool getEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                      const unsigned int* tables) const;
    /// Subset that keeps the font's `cmap`. False for `CFF ` outlines.
    bool getEmbedFontWithCmap(const std::vector<unsigned short>& glyphs, KWMemStream& output) const;
    /// The font file itself; a collection member as a file of its own; of a WOFF file the font
    /// unpacked; of a font with `CFF ` outlines that table.
    bool getEmbedFontStream(KWMemStream& output) const;
    /// Subset for a PostScript Type 42 font whose glyphs are kept apart. False for `CFF ` outlines.
    bool getPSEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                        FS_TTGlyphMap& glyphMap) const;
    /// Subset of a name-keyed font with `CFF ` outlines by Type 1 codes: what `getEmbedFont` gives
    /// for the glyphs behind them. Codes that were not given out are passed over. False when no
    /// code is left, and for other fonts.
    /// @param codes  two-byte codes, of any font programs
    bool getType1EmbedFont(const std::vector<unsigned short>& codes, KWMemStream& output) const;
    /// Subset of a Type 1 font as a PFB file (PDF `FontFile` is the same without segment headers):
    /// the glyphs that some codes of one font program stand for, `.notdef`, and the parts of
    /// accented glyphs. Everything else stays as it is: Encoding, Subrs, the Private dictionary.
    /// The outlines come from the printer font, in either form.
    ///
    /// The name of a code is the one that program 0 of a font with an encoding of its own has for
    /// it; else that of `getType1CMapArray`; else that of the font's metrics; for program 0 at last
    /// that of StandardEncoding. A code without a glyph selects nothing.
    /// @param fontNumber  the high byte of the codes
    /// @param codes       their low bytes, `count` of them in any order; null takes all glyphs
    /// @param output      appended to
    /// @param length1     set to the length of the clear text in bytes (PDF `Length1`)
    /// @param length2     set to that of the encrypted section (PDF `Length2`)
    /// @param length3     set to that of the closing text (PDF `Length3`)
    /// @return false for other fonts, without a printer font, and when it cannot be read or has no
    ///         CharStrings; a length that was not reached is left as it was
    bool getType1EmbedFont(unsigned char fontNumber, const char* codes, int count,
                           KWMemStream& output, int& length1, int& length2, int& length3) const;
    /// A whole Type 1 font as a PFB file, whichever form its printer font has. Otherwise as above.
    bool getType1FontStream(KWMemStream& output, int& length1, int& length2, int& length3) const;
    /// Subset with every table of the font. `CFF ` outlines end behind the highest glyph listed.
    bool makeSubsetFont(const std::vector<unsigned short>& glyphs, KWMemStream& output) const;
    /// The same as WOFF 1.0.
    bool makeWebFont(const std::vector<unsigned short>& glyphs, KWMemStream& output) const;
    /// The glyphs of a font with `CFF ` outlines as a PostScript CIDFont of type 0, for a host's
    /// own CMap. CID 0 is glyph 0; the listed glyphs take the CIDs from 1 on in the order of the
    /// list, but for a 0 and an id that repeats the one before it.
    /// @param output    appended to; on failure untouched
    /// @param fontName  set to the name of the subset, which differs from call to call
    /// @param info      set to the character collection that the CMap must name
    /// @return false for other fonts, for a glyph that Type 1 charstrings cannot express, and when
    ///         the file cannot be read
    bool makePostScriptCIDFontType0(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                    UnicodeString& fontName, FS_CIDSystemInfo& info) const;
    /// `FS_EMBED_RESTRICTED` without a font.
    FS_EMBEDSTATUS getEmbedStatus() const;
    unsigned short getFontEmbeddingLicence() const;
    unsigned int getEmbedableCharCount() const;
    FS_EncodingScheme getEncodingScheme() const;
    bool getCIDSystemInfo(FS_CIDSystemInfo& info) const;

    // --- Type 1 data ----------------------------------------------------------------------------

    // A Type 1 font program has room for 256 codes, and a document may use more glyphs of a font.
    // So a code has two bytes: the number of a font program (high byte) and a code in that (low
    // byte, never 0). A host asks for the code of each character, then for a subset of each font
    // program that the codes name. Fonts hand out codes on first use, keep them as long as they
    // live, and share them among all that use the font; any thread may ask.

    /// The code of a character. In font program 0 that is the character itself where
    /// StandardEncoding, or the font, agrees; what is left gets the codes from 128 on of a Type 1
    /// font, those that StandardEncoding leaves of a `CFF ` font, and those from 0x0101 on of one
    /// with an encoding of its own.
    /// @return 0 when the font lacks the character; for CID-keyed fonts; for fonts that are neither
    ///         Type 1 fonts nor have `CFF ` outlines
    unsigned short getType1CharCode(int ch) const;
    /// The code of a glyph of a name-keyed font with `CFF ` outlines; 0 for a glyph without a name
    /// and for other fonts. It is the code of the characters that lead to the glyph, too.
    unsigned short getType1GlyphIDCode(unsigned short gid) const;
    /// The codes of a font program that a host has to name, with the names of their glyphs, in the
    /// order in which they were given: what goes into a `Differences` array. A code that is not in
    /// it has the glyph that StandardEncoding, or a Type 1 font itself, has for it.
    /// @return null when there are none. Alive as long as the font; another code may add to it
    const FS_BaseFont::Type1CMapArray* getType1CMapArray(unsigned char fontNumber) const;
    /// An entry of that array.
    /// @param index  from 0
    /// @return       false, with `code` and `name` as they were, when there is none
    bool getType1CMapPair(unsigned char fontNumber, int index, unsigned char& code,
                          std::string& name) const;
    /// The name that the array has for a code; false, with `name` as it was, when it has none.
    bool getType1GlyphName(unsigned char fontNumber, unsigned char code, std::string& name) const;

    // --- end-user-defined characters ------------------------------------------------------------

    // The font that this one is linked to is asked first, then the service's: for a font with
    // vertical glyphs the one for vertical text, and no other. Any thread may ask; the first call
    // of all opens the service.

    /// True for a code point that the service counts as end-user-defined.
    static bool isEUDC(int code);
    /// The font that has an end-user-defined character; untouched when none has.
    /// @param name  its PostScript name, by which `createFont` finds this font and no other
    bool getEudcFontName(int code, UnicodeString& name, int& weight, bool& italic) const;
    /// Glyph of an end-user-defined character in that font, 0xFFFF when none has it.
    unsigned short getEudcGlyphID(int code) const;

    // --- rendering ------------------------------------------------------------------------------

    /// Draws one glyph in black and white. See `FS_GlyphBMP`; `bitmap` must not be null.
    /// @param pointSize  in points, 1 or more
    /// @param error      set when the answer is false, which leaves `bitmap` empty
    bool drawGlyph(unsigned short gid, float pointSize, unsigned int dpi, FS_GlyphBMP* bitmap,
                   const FS_GlyphBMPSetting& setting, KWError& error) const;
    /// The outline and the metrics of one glyph, in font units, y up.
    bool getGlyphDrawInfo(unsigned short gid, FS_GlyphDrawInfo& info, bool vertical) const;
    bool isGlyphDrawInfoAvialable() const;

private:
    struct VertOriginCache;

    void bind(FS_BaseFont* newFont, int newFaceIndex);
    int vertOriginShift(unsigned short gid) const;
    int computeVertOriginShift(unsigned short gid) const;
    /// The font that has an end-user-defined character, and its glyph.
    FS_FontRef findEudcFont(int code, unsigned short& gid) const;

    FS_BaseFont* font = nullptr;
    int faceIndex = 0;
    KWError error;
    /// Shared by the copies of one object, which may work in other threads: it has its own lock.
    mutable std::shared_ptr<VertOriginCache> vertOriginCache;
};

} // namespace KWFontService_NS
