#pragma once

#include "fonts/FS_OperationMacros.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWPtr.h>
#include <KWCommon15/KWUtil.h>

namespace KWFontService_NS {

/// A font that a document brings along: another font, under the family name and with the style that
/// the document declared. It answers by the font inside, but for names, which it has none of.
class FS_ExtraFont : public FS_BaseFont {
public:
    /// @param inner  the font inside, of which a reference is taken
    explicit FS_ExtraFont(KWCommonNS::KWPtr<FS_BaseFont> inner);
    ~FS_ExtraFont() override;

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;
    const KWUri& getUri() const override;

    FS_FontFileType getFontFileType(int faceIndex) const override;
    FS_FontFileType getFontFileType2(int faceIndex) const override;
    bool isType1Font(int faceIndex) const override;
    bool isTrueTypeFont(int faceIndex) const override;
    bool isType1OrNoCID(int faceIndex) const override;
    bool isTrueTypeOrCID(int faceIndex) const override;
    bool isExtraFont(int* weight, bool* italic, int faceIndex) const override;

    bool scanNamedFont(KWError& error, std::istream& stream, const UnicodeString& family,
                       int weight, int italic) override;
    bool scanFont(KWError& error, std::istream& stream) override;
    bool loadFont(KWError& error, int faceIndex, std::istream* stream) override;
    void registerFileName(FS_FontPool& pool, const KWUri& fileUri) override;
    /// Under the family names that were given to the font alone.
    void registerFontNames(FS_FontPool& pool) override;

    /// The style that the document declares.
    struct Style {
        int weight = 0;  ///< CSS weight; 0: the font's own
        int italic = -1; ///< 1 italic, -1: the font's own, anything else upright

        friend bool operator==(const Style&, const Style&) = default;
    };
    Style declaredStyle() const { return {weightDescriptor, italicDescriptor}; }
    void declareStyle(const Style& style);

    int getWeight(int faceIndex) const override;
    bool isItalic(int faceIndex) const override;
    bool getLogFont(FS_EnumLogFontEx& font, int faceIndex) const override;
    FT_FaceRec_* getFTFace(int faceIndex) override;

#define FS_WRAP_INNER(result, name, parameters, arguments, qualifier, missing)                     \
    result name(FS_PARAMETERS parameters int faceIndex) qualifier override {                       \
        return innerFont ? innerFont->name(FS_PARAMETERS arguments faceIndex) : missing;           \
    }
#define FS_WRAP_SOURCE FS_WRAP_INNER
#define FS_WRAP_FILE FS_WRAP_INNER
#define FS_WRAP_WOFF(...)
#define FS_WRAP_OWN(...)
#define FS_OPERATION(faces, wrapper, facade, ...) FS_WRAP_##wrapper(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_WRAP_INNER
#undef FS_WRAP_SOURCE
#undef FS_WRAP_FILE
#undef FS_WRAP_WOFF
#undef FS_WRAP_OWN

protected:
    /// A wrapper that makes its inner font by its scan.
    explicit FS_ExtraFont(const KWUri& uri);

    KWCommonNS::KWPtr<FS_BaseFont> innerFont;
    UnicodeString familyName;
    int weightDescriptor = 0;  ///< CSS weight; 0: the font's own
    int italicDescriptor = -1; ///< 1 italic, -1: the font's own, anything else upright
};

} // namespace KWFontService_NS
