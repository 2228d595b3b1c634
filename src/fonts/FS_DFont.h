#pragma once

#include "fonts/FS_FaceForwarder.h"
#include "fonts/FS_MultiFaceFont.h"

namespace KWFontService_NS {

/// A Macintosh font file whose data fork is a resource fork: the faces are its resources of type
/// `sfnt` (Inside Macintosh, "Resource File Format"). Other resources are not looked at.
class FS_DFont final : public FS_FaceForwarder<FS_DFont, FS_MultiFaceFont> {
public:
    explicit FS_DFont(const KWUri& uri);

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;

    FS_FontFileType getFontFileType(int faceIndex) const override;
    bool isType1OrNoCID(int faceIndex) const override;
    bool isTrueTypeOrCID(int faceIndex) const override;

    /// Failures have a code and no detail.
    bool scanFont(KWError& error, std::istream& stream) override;

private:
    bool failScan(KWError& error, FS_ERROR code) const;
};

} // namespace KWFontService_NS
