#pragma once

#include "fonts/FS_Type1.h"
#include "type1/PFMFile.h"

namespace KWFontService_NS {

/// A Type 1 font by its Windows metrics file (.pfm). That has widths by the codes of one code page;
/// of other characters the printer font has the widths.
class FS_Type1PFM final : public FS_Type1 {
public:
    explicit FS_Type1PFM(const KWUri& uri);

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    FS_FontFileType getFontFileType(int faceIndex) const override;

    /// A file without a usable printer font beside it is a font when it has none, or when its name
    /// is that of a standard font.
    bool scanFont(KWError& error, std::istream& stream) override;

    UnicodeString getFamilyName(KWLang::LanguageID language, int faceIndex) const override;
    /// The printer font's, since the metrics file has none; where that has none either, the family
    /// name.
    UnicodeString getFullFontName(KWLang::LanguageID language, int faceIndex) const override;
    UnicodeString getCopyright(KWLang::LanguageID language, int faceIndex) const override;
    int getWeight(int faceIndex) const override;
    bool isItalic(int faceIndex) const override;
    float getXHeight(int faceIndex) const override;
    /// By the name of the printer font's encoding; without one by the character set.
    FS_EncodingScheme getEncodingScheme(int faceIndex) const override;

    const PFMFile& file() const { return file_; }

protected:
    const UnicodeString& metricsName() const override { return file_.postScriptName; }
    const Type1Metrics* glyphs() const override;
    float lineHeight() const override;
    void addTextMetrics(FS_TextMetricSource& source) const override;
    std::int64_t textUnits(const UnicodeString& text, int& firstMissing) const override;

private:
    std::int64_t codePageUnits(const UnicodeString& text, int& firstMissing) const;

    PFMFile file_;
};

} // namespace KWFontService_NS
