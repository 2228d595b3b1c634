#include "fonts/FS_MultiFaceFont.h"
#include "fonts/FS_ServiceContext.h"
#include "raster/FTFace.h"

#include <KWCommon15/KWLock.h>

namespace KWFontService_NS {

FT_FaceRec_* FS_MultiFaceFont::getFTFace(int faceIndex) {
    const auto place = static_cast<std::size_t>(faceIndex);
    if (faceIndex < 0 || place >= ftFaces.size())
        return nullptr;
    KWCommonNS::KWMutex mutex(FS_ServiceContext::freeTypeLock());
    mutex.lock();
    std::optional<FS_FTFacePtr>& opened = ftFaces[place];
    if (!opened)
        opened = openFTFace(*this, {fontBytes, fontByteCount}, faceIndex);
    return opened->get();
}

} // namespace KWFontService_NS
