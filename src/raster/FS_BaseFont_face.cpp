#include "common/PlatformText.h"
#include "fonts/FS_ServiceContext.h"
#include "fonts/FontStream.h"
#include "platform/Platform.h"
#include "raster/FTFace.h"

#include <KWCommon15/KWLock.h>
#include <KWCommon15/KWMemStream.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <istream>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>

namespace KWFontService_NS {

using KWCommonNS::KWMutex;

namespace {

/// FreeType takes a face index of 16 bits; the bits above name instances of variable fonts.
constexpr int kMaxFaceIndex = 0xFFFF;

bool readAll(std::istream& stream, FTFaceBytes held) {
    stream.clear();
    stream.seekg(0, std::ios::end);
    const std::streamoff length = stream.tellg();
    if (length <= 0 || length > std::numeric_limits<FT_Long>::max())
        return false;
    held.bytes.reset(new (std::nothrow) std::uint8_t[static_cast<std::size_t>(length)]);
    if (!held.bytes)
        return false;
    stream.seekg(0);
    stream.read(reinterpret_cast<char*>(held.bytes.get()), length);
    held.count = static_cast<std::uint64_t>(stream.gcount());
    if (held.count == 0)
        held.bytes.reset();
    return held.count != 0;
}

bool readFile(FS_BaseFont& font, FTFaceBytes held) {
    if (KWMemStream* unpacked = font.getFontStream())
        return readAll(*unpacked, held);
    const std::unique_ptr<std::istream> file = openFontStream(font.getUri());
    return file && readAll(*file, held);
}

/// By its path. FreeType's failure to open the file at all is left to the other way.
FT_Error openPath(FT_Library library, const KWUri& uri, int faceIndex, FT_Face& face) {
    const std::optional<std::string> path =
        KWPlatform::narrowPath(KWCommonNS::toPath(uri.getLocalPath()));
    // The test keeps FreeType from waiting for a pipe that has taken the file's place.
    if (!path || !uri.isFileExists())
        return FT_Err_Cannot_Open_Resource;
    return FT_New_Face(library, path->c_str(), faceIndex, &face);
}

} // namespace

void FS_FTFaceCloser::operator()(FT_FaceRec_* face) const {
    KWMutex mutex(FS_ServiceContext::freeTypeLock());
    mutex.lock();
    // A font that outlives the service has lost its face with the library already.
    if (FS_ServiceContext::freeTypeLibrary() != nullptr)
        FT_Done_Face(face);
}

FS_FTFacePtr openFTFace(FS_BaseFont& font, FTFaceBytes held, int faceIndex) {
    FT_Library library = FS_ServiceContext::freeTypeLibrary();
    if (library == nullptr || faceIndex < 0 || faceIndex > kMaxFaceIndex)
        return nullptr;
    FT_Face face = nullptr;
    if (!held.bytes && font.getFontStream() == nullptr && font.getUri().isFile()) {
        const FT_Error error = openPath(library, font.getUri(), faceIndex, face);
        if (error == FT_Err_Ok)
            return FS_FTFacePtr(face);
        if (error != FT_Err_Cannot_Open_Resource)
            return nullptr;
    }
    if (!held.bytes && !readFile(font, held))
        return nullptr;
    if (FT_New_Memory_Face(library, held.bytes.get(), static_cast<FT_Long>(held.count), faceIndex,
                           &face) != FT_Err_Ok)
        return nullptr;
    return FS_FTFacePtr(face);
}

FT_FaceRec_* FS_BaseFont::getFTFace(int faceIndex) {
    KWMutex mutex(FS_ServiceContext::freeTypeLock());
    mutex.lock();
    if (!ftFaceTried && faceIndex >= 0 && faceIndex < getFontCount()) {
        ftFaceTried = true;
        ftFace = openFTFace(*this, {fontBytes, fontByteCount}, faceIndex);
    }
    return ftFace.get();
}

} // namespace KWFontService_NS
