#include "fonts/FS_TrueType.h"
#include "registry/FaceNames.h"

namespace KWFontService_NS {

void FS_TrueType::registerFileName(FS_FontPool& pool, const KWUri& fileUri) {
    pool.addFileName(fileUri, {this, 0}, FS_FontKey::ofFace(*this, 0));
}

void FS_TrueType::registerFontNames(FS_FontPool& pool) {
    registerFaceNames(pool, *this, 0, info.names());
}

} // namespace KWFontService_NS
