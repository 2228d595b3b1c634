#pragma once

#include "fonts/FS_ExtraFont.h"

#include <KWCommon15/KWLock.h>
#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace KWFontService_NS {

/// A WOFF 1.0 file (W3C, "WOFF File Format 1.0"). The scan unpacks the sfnt into memory, where it
/// stays as long as the font, and hands it to a font object of its kind.
class FS_WOFF final : public FS_ExtraFont {
public:
    explicit FS_WOFF(const KWUri& uri);
    ~FS_WOFF() override;

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;
    FS_FontFileType getFontFileType(int faceIndex) const override;

    bool scanFont(KWError& error, std::istream& stream) override;
    /// Reads the unpacked sfnt, whatever `stream` is.
    bool loadFont(KWError& error, int faceIndex, std::istream* stream) override;
    FT_FaceRec_* getFTFace(int faceIndex) override;
    KWMemStream* getFontStream() override;
    bool makePostScriptCIDFontType0(const std::vector<unsigned short>& glyphs, KWMemStream& output,
                                    UnicodeString& fontName, FS_CIDSystemInfo& info,
                                    int faceIndex) override;
    /// Of the unpacked font a copy: nothing that the caller holds of this font would keep it alive,
    /// and other threads move about in it.
    bool getEmbedFontStream(KWMemStream& output, std::istream* stream, int faceIndex) override;
    using FS_ExtraFont::getType1EmbedFont; // one of the two is written anew

#define FS_WRAP_INNER(...)
#define FS_WRAP_SOURCE(result, name, parameters, arguments, qualifier, missing)                    \
    result name(FS_PARAMETERS parameters int faceIndex) qualifier override {                       \
        KWCommonNS::KWMutex mutex(streamLock_);                                                    \
        if (stream == nullptr) {                                                                   \
            mutex.lock();                                                                          \
            stream = sfntStream.get();                                                             \
        }                                                                                          \
        return innerFont ? innerFont->name(FS_PARAMETERS arguments faceIndex) : missing;           \
    }
#define FS_WRAP_WOFF FS_WRAP_SOURCE
#define FS_WRAP_FILE(...)
#define FS_WRAP_OWN(...)
#define FS_OPERATION(faces, wrapper, facade, ...) FS_WRAP_##wrapper(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_WRAP_INNER
#undef FS_WRAP_SOURCE
#undef FS_WRAP_WOFF
#undef FS_WRAP_FILE
#undef FS_WRAP_OWN

private:
    struct Unpacking;

    bool unpack(KWError& error, std::istream& stream);
    bool unpackTable(KWError& error, Unpacking& state, std::size_t index);
    bool failRead(KWError& error) const;
    bool failFile(KWError& error, const char* detail) const;

    std::unique_ptr<KWMemStream> sfntStream;
    /// Loading, embedding and opening a FreeType face read the one stream, each in its own thread.
    KWCommonNS::KWLock streamLock_;
};

} // namespace KWFontService_NS
