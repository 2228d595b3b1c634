#pragma once

#include "type1/PrinterFontHead.h"
#include "type1/Type1CharCode.h"
#include "type1/Type1Metrics.h"
#include "type1/Type1Sections.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWLock.h>

#include <optional>
#include <string_view>

namespace KWFontService_NS {

struct Type1CodeNames;

/// Where the lengths of the segments of a program go.
struct Type1SegmentLengths {
    int& length1; ///< clear text
    int& length2; ///< encrypted section
    int& length3; ///< closing text
};

/// The font program of a Type 1 font, in a file of its own beside the font's metrics. The scan
/// reads the clear text at its head; the load asks FreeType for the glyphs, whose ids are
/// FreeType's. No outlines are kept.
///
/// A printer font is not found by itself: the font of the metrics file owns it.
class FS_Type1Printer : public FS_BaseFont {
public:
    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;

    bool isType1Font(int faceIndex) const override;
    bool isTrueTypeFont(int faceIndex) const override;
    bool isType1OrNoCID(int faceIndex) const override;
    bool isTrueTypeOrCID(int faceIndex) const override;

    bool scanFont(KWError& error, std::istream& stream) override;
    /// `stream` is not read: FreeType opens the file.
    bool loadFont(KWError& error, int faceIndex, std::istream* stream) override;

    UnicodeString getFamilyName(KWLang::LanguageID language, int faceIndex) const override;
    /// The weight name of a font that is called like its family; else what the full name has behind
    /// the family name.
    UnicodeString getSubFamilyName(KWLang::LanguageID language, int faceIndex) const override;
    UnicodeString getFullFontName(KWLang::LanguageID language, int faceIndex) const override;
    /// FreeType's, of the face.
    UnicodeString getPostScriptName(KWLang::LanguageID language, int faceIndex) const override;
    int getWeight(int faceIndex) const override;
    bool isItalic(int faceIndex) const override;
    bool isFixedWidthFont(int faceIndex) const override;
    bool isSymbolicFont(int faceIndex) const override;

    unsigned short getGlyphID(int ch, bool vertical, int faceIndex) const override;
    /// A size above 0 counts for the height of the font box. There is no vertical writing, and so
    /// the horizontal advance stands for the vertical one.
    float getGlyphWidth(unsigned short gid, int size, bool vertical, int faceIndex) const override;
    /// 1000 as long as the face is not open.
    int getUnitsPerEm(int faceIndex) const override;
    bool hasPairKerningInfo(bool vertical, int faceIndex) const override;
    /// Multiplied by |`size`| / unitsPerEm for every size, so 0 for 0.
    float getPairKerningValue(unsigned short left, unsigned short right, int size, bool vertical,
                              int faceIndex) const override;
    /// How many codes lead to a glyph.
    unsigned int getEmbedableCharCount(int faceIndex) const override;

    /// Loads a glyph into FreeType's slot, in units of the font. Call with the glyph rendering lock
    /// held, and read the slot under it.
    /// @param unscaled  true asks for the metrics of vertical writing. A second try without the
    ///                  font's global advances would end as the first: FreeType has come to ignore
    ///                  the flag for it.
    /// @return          whether FreeType could
    virtual bool loadGlyph(unsigned int index, bool unscaled) const;

    /// Appends the font program in segments, as a PFB file is. The file is read anew; the font need
    /// not be loaded, but without a load `names` has no built-in ones.
    /// @param codes    of the font program that `names` is for; nothing for the whole font
    /// @param lengths  of the three segments; those that were not reached stay as they were
    /// @return false when the file cannot be read, is cut short, or has no CharStrings to select of
    bool writeProgram(const std::optional<std::string_view>& codes, const Type1CodeNames& names,
                      KWMemStream& output, const Type1SegmentLengths& lengths) const;

    /// What the scan read.
    const PrinterFontHead& head() const { return head_; }
    /// What the load read: a record for each glyph, in the order of their ids; those without a code
    /// are empty, and so are those that are more work than a load may be.
    const Type1Metrics& metrics() const { return metrics_; }
    /// The names that the font's own Encoding has for its codes, known after the load; none for a
    /// font with StandardEncoding.
    const Type1BuiltInNames& builtInNames() const { return builtInNames_; }

protected:
    explicit FS_Type1Printer(const KWUri& uri);

    virtual std::optional<Type1FileError> scanHead(std::istream& stream,
                                                   PrinterFontHead& head) const = 0;
    /// See `Type1Sections.h`.
    virtual bool readSections(std::istream& stream, Type1Sections& sections) const = 0;

private:
    FT_FaceRec_* openFace() const;
    bool readGlyphs(KWError& error);
    void readEncodedGlyphs(FT_FaceRec_* face, bool isCustom);

    PrinterFontHead head_;
    Type1Metrics metrics_;
    Type1BuiltInNames builtInNames_;
    unsigned int encodedGlyphs_ = 0;

    mutable KWCommonNS::KWLock loadLock_;
    std::optional<bool> loaded_;
    KWError loadError_;
};

} // namespace KWFontService_NS
