#pragma once

#include "fonts/FS_Type1.h"
#include "type1/AFMFile.h"

namespace KWFontService_NS {

/// A Type 1 font by its Adobe Font Metrics file (.afm). The scan reads and checks the whole file
/// and keeps what describes the font; the load reads it again for the glyphs, since most fonts of a
/// pool are never used. A file that is gone by then, or has become an error, fails the load.
class FS_Type1AFM final : public FS_Type1 {
public:
    explicit FS_Type1AFM(const KWUri& uri);

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    FS_FontFileType getFontFileType(int faceIndex) const override;

    bool scanFont(KWError& error, std::istream& stream) override;

    UnicodeString getFamilyName(KWLang::LanguageID language, int faceIndex) const override;
    UnicodeString getFullFontName(KWLang::LanguageID language, int faceIndex) const override;
    UnicodeString getCopyright(KWLang::LanguageID language, int faceIndex) const override;
    int getWeight(int faceIndex) const override;
    bool isItalic(int faceIndex) const override;
    float getXHeight(int faceIndex) const override;
    FS_EncodingScheme getEncodingScheme(int faceIndex) const override;
    bool hasVerticalGlyph(int faceIndex) const override;
    /// True as well for the pairs of the metrics file, of which `getPairKerningValue` knows
    /// nothing.
    bool hasPairKerningInfo(bool vertical, int faceIndex) const override;

    const AFMHead& head() const { return head_; }
    /// Known after the load, as are the glyphs.
    const Type1KernPairs& kernPairs() const { return kernPairs_; }
    const Type1Metrics& metrics() const { return metrics_; }

protected:
    const UnicodeString& metricsName() const override { return head_.postScriptName; }
    UnicodeString weightName() const override { return head_.weightName; }
    bool loadMetrics(KWError& error, std::istream* stream) override;
    const Type1Metrics* glyphs() const override { return &metrics_; }
    float lineHeight() const override { return head_.fontBBox.height(); }
    void addTextMetrics(FS_TextMetricSource& source) const override;

private:
    AFMHead head_;
    Type1Metrics metrics_;
    Type1KernPairs kernPairs_;
};

} // namespace KWFontService_NS
