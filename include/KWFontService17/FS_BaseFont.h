#pragma once

#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_MathConstants.h>
#include <KWFontService17/FS_Types.h>

#include <KWCommon15/KWError.h>
#include <KWCommon15/KWLang.h>
#include <KWCommon15/KWLength.h>
#include <KWCommon15/KWRCObject.h>
#include <KWCommon15/KWUri.h>

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

struct FT_FaceRec_;

namespace KWCommonNS {
class KWMemStream;
}

namespace KWFontService_NS {

class FS_EnumLogFontEx;
class FS_FontPool;
class FS_NewTextMetricEx;
class FS_TTGlyphMap;
class Type1CMap;
struct FS_FontFileOptions;
struct FS_GSUBGPOSInfo;

using KWCommonNS::KWError;
using KWCommonNS::KWLang;
using KWCommonNS::KWLength;
using KWCommonNS::KWMemStream;
using KWCommonNS::KWUri;

/// Class identities, for `isKindOf`.
enum FS_ClassId : unsigned int {
    FS_CLASSID_BASE_FONT = 0x523A46D6,
    FS_CLASSID_TRUETYPE = 0xD8D7409B,
    FS_CLASSID_OPENTYPE = 0x0E4266F1,
    FS_CLASSID_COLLECTION = 0x0C261001,
    FS_CLASSID_DFONT = 0x972A6D12,
    FS_CLASSID_TYPE1 = 0xA76A5E02,
    FS_CLASSID_TYPE1_AFM = 0xE0D8C304,
    FS_CLASSID_TYPE1_PFM = 0xEE4D2140,
    FS_CLASSID_TYPE1_PRINTER = 0xCE603D8D,
    FS_CLASSID_TYPE1_PFA = 0xB5FC60DE,
    FS_CLASSID_TYPE1_PFB = 0x5D163695,
    FS_CLASSID_EXTRA_FONT = 0x2E8D3159,
    FS_CLASSID_LOCAL_FONT = 0x80E87634,
    FS_CLASSID_WOFF = 0x5726A54C,
};

/// Closes a FreeType face under the service's FreeType lock.
struct FS_FTFaceCloser {
    KWFONTSERVICE_API void operator()(FT_FaceRec_* face) const;
};
using FS_FTFacePtr = std::unique_ptr<FT_FaceRec_, FS_FTFaceCloser>;

/// A font file in memory: the one interface behind every format.
///
/// A font is constructed on a URI, scanned (names and style are known), then loaded on first use
/// (character maps and metrics are known). Fonts are shared between threads through a counted
/// reference; `loadFont` and `getFTFace` lock for themselves, queries after the load take no lock,
/// and the writers of one font are called by one thread at a time.
///
/// Most operations end in `faceIndex`, the face in a collection; a file with one face answers for
/// every index. In a collection an index out of range answers what a font without the data does.
///
/// Sizes: `size` 0 answers in font units; below 0 the value is multiplied by |size| / unitsPerEm;
/// above 0 by size / (usWinAscent + usWinDescent). Advances point along the writing direction.
class KWFONTSERVICE_API FS_BaseFont : public KWCommonNS::KWRCObject {
public:
    ~FS_BaseFont() override;

    // --- identity -------------------------------------------------------------------------------

    /// The fixed id of the concrete class, an `FS_ClassId`.
    unsigned int getClassId() const override;
    /// True for the id of the class itself and of each of its bases.
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;
    /// Where the font file is; a wrapped font answers for the font inside.
    virtual const KWUri& getUri() const;

    virtual FS_FontFileType getFontFileType(int faceIndex) const = 0;
    /// The type of the font inside a wrapper; of the font itself where nothing wraps it.
    virtual FS_FontFileType getFontFileType2(int faceIndex) const;
    virtual bool isType1Font(int faceIndex) const = 0;
    virtual bool isTrueTypeFont(int faceIndex) const = 0;
    /// Type 1, or `CFF ` without CIDs.
    virtual bool isType1OrNoCID(int faceIndex) const = 0;
    /// `glyf` outlines, or `CFF ` with CIDs.
    virtual bool isTrueTypeOrCID(int faceIndex) const = 0;
    virtual bool isOpenType() const;
    virtual bool isFontCollection() const;
    /// True for a font that the caller brought, with the style that the caller declared for it.
    virtual bool isExtraFont(int* weight, bool* italic, int faceIndex) const;

    // --- reading --------------------------------------------------------------------------------

    /// `scanFont` for a font that the caller names and styles.
    /// @param weight  declared CSS weight, 0 for the font's own
    /// @param italic  1 italic, 0 upright, -1 for the font's own
    virtual bool scanNamedFont(KWError& error, std::istream& stream, const UnicodeString& family,
                               int weight, int italic);
    /// Reads what identifies the font, from the stream's position on. False with `error` set (or,
    /// for a file of another kind, unset) when this is not a usable font.
    virtual bool scanFont(KWError& error, std::istream& stream) = 0;
    /// Reads the rest, once; later calls answer the first result. A null stream means the font
    /// opens its own. Safe to call from several threads.
    virtual bool loadFont(KWError& error, int faceIndex, std::istream* stream);
    virtual int getFontCount() const;

    /// Enters the font in `pool` under its lower-cased file name, taken from `uri`.
    virtual void registerFileName(FS_FontPool& pool, const KWUri& uri);
    /// Enters the font in `pool` under every name it has.
    virtual void registerFontNames(FS_FontPool& pool);

    // --- names ----------------------------------------------------------------------------------
    // `language` is a Windows language id; 0 asks for the font's default-language name, any other
    // value for exactly that language. Empty where there is none. Source: OpenType `name`.

    virtual UnicodeString getFamilyName(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getSubFamilyName(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getFullFontName(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getPostScriptName(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getPreferredFamily(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getPreferredSubFamily(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getPostScriptCIDFindfontName(KWLang::LanguageID language,
                                                       int faceIndex) const;
    /// Replaces the language-neutral PostScript name, for a font that needs a unique one.
    virtual void setPostScriptName(const UnicodeString& name, int faceIndex);

    // --- style ----------------------------------------------------------------------------------

    /// CSS weight, 0 when the font declares none (OpenType `OS/2` usWeightClass).
    virtual int getWeight(int faceIndex) const;
    virtual bool isItalic(int faceIndex) const;
    /// 1 ultra-condensed to 9 ultra-expanded, 5 normal (OpenType `OS/2` usWidthClass).
    virtual int getWidth(int faceIndex) const;
    virtual UnicodeString getCopyright(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getManufacturer(KWLang::LanguageID language, int faceIndex) const;
    virtual UnicodeString getLicenseDescription(KWLang::LanguageID language, int faceIndex) const;

    // --- records --------------------------------------------------------------------------------

    /// Weight, italic flag, face name and full name, as a font dialog shows them.
    virtual bool getLogFont(FS_EnumLogFontEx& font, int faceIndex) const;
    /// The text metrics in font units. Known after the scan, as are those at a size; false, with
    /// `metric` as it was, where there are none.
    virtual bool getNewTextMetricEx(FS_NewTextMetricEx& metric, int faceIndex) const;
    /// See `FS_FontInfo::getOutlineTextMetrics`.
    virtual bool getOutlineTextMetrics(FS_NewTextMetricEx& metric, int size, int faceIndex) const;
    virtual FS_CodePageRange getCodePageRangeBitFields(int faceIndex) const;

    // --- text and vertical extents --------------------------------------------------------------

    /// Sum of the advances of a text. See `FS_FontInfo::getTextWidth`.
    virtual float getTextWidth(const UnicodeString& text, int size, bool vertical,
                               int* firstMissing, int faceIndex) const;
    /// Height of x above the baseline, in em; 0 when the font does not say (`OS/2` sxHeight).
    virtual float getXHeight(int faceIndex) const;
    /// Height of capitals above the baseline, in em; 0 when the font does not say.
    virtual float getCapHeight(int faceIndex) const;
    /// Typographic ascender, in em, y up (`OS/2` sTypoAscender).
    virtual float getTypoAscender(int faceIndex) const;
    /// Typographic descender, in em. A file with one face answers its ascender here, a face of a
    /// collection its descender, y up and so below 0: callers have come to rely on either.
    virtual float getTypoDescender(int faceIndex) const;

    // --- glyphs ---------------------------------------------------------------------------------

    /// Glyph of a code point, 0xFFFF when missing (OpenType `cmap`).
    /// @param vertical  true asks for the vertical form where the font has one
    virtual unsigned short getGlyphID(int ch, bool vertical, int faceIndex) const;
    /// Glyphs of a text, one for each code point. See `FS_FontInfo::getGlyphIDs`.
    virtual bool getGlyphIDs(const UnicodeString& text, unsigned short* glyphs, int& count,
                             bool vertical, int* firstMissing, int faceIndex) const;
    /// OpenType `GDEF` class of a glyph, `Unknown` when there is none.
    virtual GlyphClassDef getGlyphClassDef(unsigned short gid, int faceIndex) const;
    /// Advance of a glyph, horizontal or vertical; 0xFFFF answers 0 (OpenType `hmtx`, `vmtx`).
    virtual float getGlyphWidth(unsigned short gid, int size, bool vertical, int faceIndex) const;
    /// CFF string index of a glyph's name, 0 when there is none.
    virtual unsigned short getStringID(unsigned short gid, int faceIndex) const;
    /// What the font keeps of its `CFF ` table, with nothing in it for an sfnt that has none; null
    /// for other fonts and before a load.
    virtual const Type1CMap* getCFFInfo(int faceIndex) const;
    /// Layout handle for a script and a language, owned by the caller; null for a font that is no
    /// sfnt. See `FS_FontInfo::deleteGSUBGPOSInfo`.
    virtual FS_GSUBGPOSInfo* getGSUBGPOSInfo(unsigned int script, unsigned int language,
                                             int faceIndex) const;

    // --- mathematics (OpenType `MATH`) ----------------------------------------------------------

    /// True when the font has constants, glyph information or variants.
    virtual bool hasMATHInfo(int faceIndex) const;
    /// A percentage as a fraction, any other constant in em; not a number when the font does not
    /// say.
    virtual KWLength getMATHConstant(FS_MATHConstants constant, int faceIndex) const;
    /// In em; not a number when the font does not say.
    virtual KWLength getItalicsCorrection(unsigned short gid, int faceIndex) const;
    /// The glyph to take in the place of `gid` where it has to be taller (V) or wider (H); 0xFFFF
    /// when the font has none.
    /// @param size  in font units. 0: tall enough for an operator of a displayed formula; > 0: at
    ///              least that much, or the last variant; < 0: at most -`size`, never the last
    ///              variant
    virtual unsigned short getMATHVariantV(unsigned short gid, int size, int faceIndex) const;
    virtual unsigned short getMATHVariantH(unsigned short gid, int size, int faceIndex) const;

    // --- family traits --------------------------------------------------------------------------

    virtual bool isSymbolicFont(int faceIndex) const;
    virtual bool isFixedWidthFont(int faceIndex) const;
    virtual bool isSerifLikeFont(int faceIndex) const;
    virtual bool isScriptLikeFont(int faceIndex) const;

    // --- embedding ------------------------------------------------------------------------------
    // Writers append a font program to `output`, but for `getEmbedFontStream`, which turns it into
    // a stream over the file. A null stream means the font opens its own. False leaves partial
    // bytes, which the caller throws away.
    //
    // Fonts with `CFF ` outlines give that table, cut or whole, where fonts with `glyf` outlines
    // give an sfnt: see `FS_FontInfo`.

    /// The largest number of characters that a character map of the font covers.
    virtual unsigned int getEmbedableCharCount(int faceIndex) const;
    /// Subset with the tables of a zero-terminated list of tags.
    virtual bool getEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                              const unsigned int* tables, std::istream* stream, int faceIndex);
    /// Subset with the tables that a document needs.
    virtual bool getEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                              std::istream* stream, int faceIndex);
    /// The same with the font's `cmap`, copied whole.
    virtual bool getEmbedFontWithCmap(const std::vector<unsigned short>& glyphs,
                                      KWMemStream& output, std::istream* stream, int faceIndex);
    /// The font file itself.
    virtual bool getEmbedFontStream(KWMemStream& output, std::istream* stream, int faceIndex);
    /// Subset without glyphs for PostScript; the glyphs go to `glyphMap`.
    virtual bool getPSEmbedFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                FS_TTGlyphMap& glyphMap, std::istream* stream, int faceIndex);
    /// Subset with every table, as WOFF.
    virtual bool makeWebFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                             std::istream* stream, int faceIndex);
    /// Subset with every table.
    virtual bool makeSubsetFont(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                std::istream* stream, int faceIndex);
    /// True exactly when `getEmbedStatus` is `FS_EMBED_OUTLINES`.
    virtual bool isEmbeddable(int faceIndex) const;
    virtual FS_EMBEDSTATUS getEmbedStatus(int faceIndex) const;
    /// OpenType `OS/2` fsType.
    virtual unsigned short getFontEmbeddingLicence(int faceIndex) const;
    virtual FS_EncodingScheme getEncodingScheme(int faceIndex) const;
    virtual bool getCIDSystemInfo(FS_CIDSystemInfo& info, int faceIndex) const;

    // --- vertical writing, em, variation sequences ----------------------------------------------

    /// True when the font can substitute vertical forms.
    virtual bool hasVerticalGlyph(int faceIndex) const;
    virtual bool hasVerticalMetrics(int faceIndex) const;
    /// Makes the font count as one with vertical forms.
    virtual void setHasVerticalGlyph(int faceIndex);
    virtual int getUnitsPerEm(int faceIndex) const;
    virtual bool hasVariationSelector(int faceIndex) const;
    /// Glyph of a code point with a variation selector, 0xFFFF when the sequence is not listed.
    virtual unsigned short variationSequence(int ch, int selector, int faceIndex) const;
    /// The advance that most glyphs share.
    virtual float getDefaultCharWidth(int size, int faceIndex) const;

    // --- kerning (OpenType `kern`) --------------------------------------------------------------

    virtual bool hasPairKerningInfo(bool vertical, int faceIndex) const;
    /// Added to the advance of the left glyph; below 0 draws the pair together. In font units, also
    /// for `size` above 0; for `size` below 0 multiplied by |size| / unitsPerEm.
    virtual float getPairKerningValue(unsigned short left, unsigned short right, int size,
                                      bool vertical, int faceIndex) const;

    // --- family class (OpenType `OS/2` sFamilyClass, panose) ------------------------------------

    virtual unsigned char getFamilyClass(int faceIndex) const;
    virtual unsigned char getFamilySubclass(int faceIndex) const;
    /// Null when the font has no `OS/2`. Lives as long as the font.
    virtual const PANOSE* getPanose(int faceIndex) const;

    // --- Type 1 codes and programs --------------------------------------------------------------
    // A code has two bytes: the number of a font program, and a code in that program. Codes are
    // handed out on first use and stay for the life of the font: see `FS_FontInfo`.

    using Type1CMapArray = std::vector<std::pair<unsigned char, std::string>>;

    /// 0 when the character has no code.
    virtual unsigned short getType1CharCode(int ch, int faceIndex);
    /// The code of a glyph of a name-keyed font with `CFF ` outlines; 0 for other fonts and for a
    /// glyph without a name.
    virtual unsigned short getType1GlyphIDCode(unsigned short gid, int faceIndex);
    /// The codes of a font program that have to be named, with their glyph names; null when there
    /// are none.
    virtual const Type1CMapArray* getType1CMapArray(unsigned char fontNumber, int faceIndex) const;
    /// An entry of that array, counted from 0; false when there is none.
    virtual bool getType1CMapPair(unsigned char fontNumber, int index, unsigned char& code,
                                  std::string& name, int faceIndex) const;
    /// The name that the array has for a code; false when it has none.
    virtual bool getType1GlyphName(unsigned char fontNumber, unsigned char code, std::string& name,
                                   int faceIndex) const;
    /// Subset of the glyphs behind these codes of a font with `CFF ` outlines: that table.
    virtual bool getType1EmbedFont(const std::vector<unsigned short>& codes, KWMemStream& output,
                                   std::istream* stream, int faceIndex);
    /// Subset of a Type 1 font as a PFB file: the glyphs behind some codes of one font program.
    /// @param codes    `count` bytes
    /// @param length1  set to the bytes of the clear text
    /// @param length2  set to those of the encrypted section
    /// @param length3  set to those of the closing text; on failure they keep what was not reached
    virtual bool getType1EmbedFont(unsigned char fontNumber, const char* codes, int count,
                                   KWMemStream& output, int& length1, int& length2, int& length3,
                                   int faceIndex);
    /// A whole Type 1 font as a PFB file.
    virtual bool getType1FontStream(KWMemStream& output, int& length1, int& length2, int& length3,
                                    int faceIndex);

    // --- end-user-defined characters ------------------------------------------------------------

    virtual void setEudcFont(const FS_FontRef& eudcFont, int faceIndex);
    /// The font that holds this font's end-user-defined characters; null when there is none.
    virtual FS_FontRef getEudcFont(int faceIndex) const;
    /// Glyph of an end-user-defined character; one without an advance counts as missing, 0xFFFF.
    virtual unsigned short getEudcGlyphID(int ch, int faceIndex) const;

    // --- rendering and PostScript ---------------------------------------------------------------

    /// The FreeType face, opened once and owned by the font; null when FreeType refuses the file.
    /// The library draws with the same face under a lock of its own: a host that sizes it or loads
    /// glyphs into it must not do so while the library draws.
    virtual FT_FaceRec_* getFTFace(int faceIndex);
    /// CID-keyed PostScript font of the listed glyphs; see FS_FontInfo.
    virtual bool makePostScriptCIDFontType0(const std::vector<unsigned short>& glyphs,
                                            KWMemStream& output, UnicodeString& fontName,
                                            FS_CIDSystemInfo& info, int faceIndex);
    /// The sfnt that was unpacked from the file; null for a font that is read as it stands.
    virtual KWMemStream* getFontStream();

    // --- vertical origins (OpenType `VORG`) -----------------------------------------------------

    virtual float getDefaultVertOriginY(int size, int faceIndex) const;
    /// y of the vertical origin above the baseline; 0 when the font does not say.
    virtual float getGlyphVertOriginY(unsigned short gid, int size, int faceIndex) const;

    // --------------------------------------------------------------------------------------------

    /// Sets `error` to the message of `code`, completed by `detail` and the path of the font file.
    /// Answers false, so that a reader can return what this returns.
    bool fontError(KWError& error, FS_ERROR code, const UnicodeString& detail) const;

    /// The settings that the configuration has for this file; null when it has none.
    const FS_FontFileOptions* getFontEntrySettings() const { return fontEntrySettings; }
    void setFontEntrySettings(const FS_FontFileOptions* settings) { fontEntrySettings = settings; }

    /// How the font came into the service, bits of `FS_FontMark`.
    std::uint32_t getMarks() const { return marks; }
    void setMarks(std::uint32_t bits) { marks = bits; }

    /// The family names that were given to the font besides its own.
    const std::set<UnicodeString>& getFontAliases() const { return fontAliases; }
    void addFontAlias(const UnicodeString& name) { fontAliases.insert(name); }

protected:
    explicit FS_BaseFont(const KWUri& uri);

    KWUri uri;
    FS_FTFacePtr ftFace;
    std::unique_ptr<std::uint8_t[]> fontBytes;
    std::uint64_t fontByteCount = 0;
    bool ftFaceTried = false;
    std::uint32_t marks = 0;
    const FS_FontFileOptions* fontEntrySettings = nullptr;
    std::set<UnicodeString> fontAliases;
};

} // namespace KWFontService_NS
