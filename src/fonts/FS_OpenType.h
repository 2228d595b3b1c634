#pragma once

#include "fonts/FS_TrueType.h"

namespace KWFontService_NS {

/// A font file that is one sfnt face with `CFF ` outlines.
class FS_OpenType final : public FS_CffFaceForwarder<FS_OpenType, FS_TrueType> {
public:
    explicit FS_OpenType(const KWUri& uri);

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;

    FS_FontFileType getFontFileType(int faceIndex) const override;
    bool isType1OrNoCID(int faceIndex) const override;
    bool isTrueTypeOrCID(int faceIndex) const override;
    bool isOpenType() const override;

    unsigned short getStringID(unsigned short gid, int faceIndex) const override;
};

} // namespace KWFontService_NS
