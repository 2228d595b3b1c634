#pragma once

#include "fonts/FS_ExtraFont.h"

namespace KWFontService_NS {

/// A font of a document that stands for a font of the registry: `src: local(...)` of a CSS
/// `@font-face` rule. It keeps that font alive.
class FS_LocalFont final : public FS_ExtraFont {
public:
    explicit FS_LocalFont(KWCommonNS::KWPtr<FS_BaseFont> local);
    ~FS_LocalFont() override;

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;
    FS_FontFileType getFontFileType(int faceIndex) const override;

    /// 1 for one that stands for a font of the registry, 2 for one that stands for such a one ...
    int depth() const { return depth_; }

    /// Reads nothing: the font inside was scanned before, and others are using it.
    /// @return  false without a font inside, which is no error
    bool scanFont(KWError& error, std::istream& stream) override;

private:
    int depth_ = 1;
};

} // namespace KWFontService_NS
