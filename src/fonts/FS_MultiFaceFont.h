#pragma once

#include "fonts/FS_TrueTypeInfo.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWLock.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace KWFontService_NS {

/// A font file with several sfnt faces, one table holder each. The scan reads what identifies every
/// face; each face is loaded on its own first use, and has a FreeType face of its own.
class FS_MultiFaceFont : public FS_BaseFont {
public:
    ~FS_MultiFaceFont() override;

    bool isType1Font(int faceIndex) const override;
    bool isTrueTypeFont(int faceIndex) const override;
    int getFontCount() const override;
    /// Fails once the faces loaded so far have had more than the file can justify.
    bool loadFont(KWError& error, int faceIndex, std::istream* stream) override;

    void registerFileName(FS_FontPool& pool, const KWUri& fileUri) override;
    void registerFontNames(FS_FontPool& pool) override;

    float getTypoDescender(int faceIndex) const override;
    /// The face as an sfnt of its own with all its tables: its file holds other faces, too.
    bool getEmbedFontStream(KWMemStream& output, std::istream* stream, int faceIndex) override;
    FT_FaceRec_* getFTFace(int faceIndex) override;

    /// Null for an index out of range.
    FS_TrueTypeInfo* face(int faceIndex);
    const FS_TrueTypeInfo* face(int faceIndex) const;

protected:
    using FS_BaseFont::FS_BaseFont;

    /// Forgets the faces of an earlier scan.
    void startScan(std::istream& stream);
    /// Adds a face and scans it from `offset` of the file on.
    bool scanFace(KWError& error, std::istream& stream, std::uint64_t offset, ScanBudget& budget);
    /// Gives every face its place for a FreeType face.
    void finishScan();

    int faceCount = 0;
    std::deque<FS_TrueTypeInfo> faces;                ///< holders do not move, and come one by one
    std::vector<std::optional<FS_FTFacePtr>> ftFaces; ///< without a value: not asked for yet

private:
    bool chargeLoad(int faceIndex);

    std::uint64_t fileSize_ = 0;
    std::uint64_t loadBytesLeft_ = 0;
    std::vector<bool> isCharged_;      ///< by face: its load is paid for
    KWCommonNS::KWLock loadBytesLock_; ///< each face may be loaded in a thread of its own
};

} // namespace KWFontService_NS
