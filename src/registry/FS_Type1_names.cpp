#include "fonts/FS_Type1.h"
#include "registry/FS_FontPool.h"

namespace KWFontService_NS {

void FS_Type1::registerFileName(FS_FontPool& pool, const KWUri& fileUri) {
    pool.addFileName(fileUri, {this, 0}, FS_FontKey::ofFace(*this, 0));
}

void FS_Type1::registerFontNames(FS_FontPool& pool) {
    const FS_FontRef ref{this, 0};
    const FS_FontKey key = FS_FontKey::ofFace(*this, 0);
    for (const UnicodeString& name : {getFamilyName(0, 0), getFullFontName(0, 0), metricsName()})
        FS_FontPool::addName(pool.byName, normaliseFontName(name), ref, key);
    pool.addExtraFamilies(getFontAliases(), ref, key);
}

} // namespace KWFontService_NS
