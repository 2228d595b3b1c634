#include "fonts/FS_MultiFaceFont.h"
#include "registry/FaceNames.h"

namespace KWFontService_NS {

void FS_MultiFaceFont::registerFileName(FS_FontPool& pool, const KWUri& fileUri) {
    for (int i = 0; face(i) != nullptr; ++i)
        pool.addFileName(fileUri, {this, static_cast<std::int16_t>(i)},
                         FS_FontKey::ofFace(*this, i));
}

void FS_MultiFaceFont::registerFontNames(FS_FontPool& pool) {
    for (int i = 0; face(i) != nullptr; ++i)
        registerFaceNames(pool, *this, i, face(i)->names());
}

} // namespace KWFontService_NS
