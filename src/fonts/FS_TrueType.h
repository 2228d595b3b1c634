#pragma once

#include "fonts/FS_FaceForwarder.h"

namespace KWFontService_NS {

/// A font file that is one sfnt face with `glyf` outlines.
class FS_TrueType : public FS_FullFaceForwarder<FS_TrueType> {
public:
    explicit FS_TrueType(const KWUri& uri);
    ~FS_TrueType() override;

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;

    FS_FontFileType getFontFileType(int faceIndex) const override;
    bool isType1Font(int faceIndex) const override;
    bool isTrueTypeFont(int faceIndex) const override;
    bool isType1OrNoCID(int faceIndex) const override;
    bool isTrueTypeOrCID(int faceIndex) const override;

    bool scanFont(KWError& error, std::istream& stream) override;
    bool loadFont(KWError& error, int faceIndex, std::istream* stream) override;
    void registerFileName(FS_FontPool& pool, const KWUri& fileUri) override;
    void registerFontNames(FS_FontPool& pool) override;
    void setPostScriptName(const UnicodeString& name, int faceIndex) override;
    float getTypoDescender(int faceIndex) const override;
    bool getEmbedFontStream(KWMemStream& output, std::istream* stream, int faceIndex) override;
    void setHasVerticalGlyph(int faceIndex) override;

    /// As `scanFont`, tolerant of what a subset from a document lacks.
    virtual bool scanEmbeddedFont(KWError& error, std::istream& stream);
    /// As `loadFont`, tolerant of what a subset from a document lacks.
    virtual bool loadEmbeddedFont(KWError& error, std::istream* stream);
    /// False; kept for the order of the operations.
    virtual bool isEmbeddedFont() const;

    /// A single face answers for every index.
    FS_TrueTypeInfo* face(int) { return &info; }
    const FS_TrueTypeInfo* face(int) const { return &info; }

protected:
    FS_TrueTypeInfo info;
};

} // namespace KWFontService_NS
