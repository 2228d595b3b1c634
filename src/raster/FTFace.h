#pragma once

#include <KWFontService17/FS_BaseFont.h>

#include <cstdint>
#include <memory>

namespace KWFontService_NS {

/// A font file in memory, for a face that cannot be opened by a path.
struct FTFaceBytes {
    std::unique_ptr<std::uint8_t[]>& bytes;
    std::uint64_t& count;
};

/// Opens one face of a font file with FreeType, from its path or else from memory; null when that
/// fails. Call with the service's FreeType lock held.
/// @param held       the file in memory, filled when needed; the face reads it until it is closed
/// @param faceIndex  face in the file, 0 and up
FS_FTFacePtr openFTFace(FS_BaseFont& font, FTFaceBytes held, int faceIndex);

} // namespace KWFontService_NS
