#include "fonts/FS_ExtraFont.h"
#include "registry/FS_FontPool.h"

namespace KWFontService_NS {

void FS_ExtraFont::registerFileName(FS_FontPool& pool, const KWUri& fileUri) {
    pool.addFileName(fileUri, {this, 0}, FS_FontKey::ofFace(*this, 0));
}

void FS_ExtraFont::registerFontNames(FS_FontPool& pool) {
    pool.addExtraFamilies(getFontAliases(), {this, 0}, FS_FontKey::ofFace(*this, 0));
}

} // namespace KWFontService_NS
