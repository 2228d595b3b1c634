#pragma once

#include "fonts/FS_FaceForwarder.h"
#include "fonts/FS_MultiFaceFont.h"

namespace KWFontService_NS {

/// A TrueType or OpenType collection (OpenType, "Font Collections"). Its faces have `glyf` outlines
/// all of them, or all `CFF ` outlines.
class FS_TrueTypeCollection final
    : public FS_CffFaceForwarder<FS_TrueTypeCollection,
                                 FS_FullFaceForwarder<FS_TrueTypeCollection, FS_MultiFaceFont>> {
public:
    explicit FS_TrueTypeCollection(const KWUri& uri);

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;

    /// 6 for a face with `glyf` outlines and for an index out of range, 7 for a face with
    /// name-keyed `CFF ` outlines, 8 for one with CID-keyed outlines, which only a load tells.
    FS_FontFileType getFontFileType(int faceIndex) const override;
    bool isType1OrNoCID(int faceIndex) const override;
    bool isTrueTypeOrCID(int faceIndex) const override;
    bool isFontCollection() const override;

    bool scanFont(KWError& error, std::istream& stream) override;

private:
    bool scanFaces(KWError& error, std::istream& stream, const std::vector<std::uint8_t>& offsets);
};

} // namespace KWFontService_NS
