#include "registry/FaceNames.h"

#include "fonts/FS_ServiceContext.h"

#include <array>

namespace KWFontService_NS {

void registerFaceNames(FS_FontPool& pool, FS_BaseFont& font, int faceIndex,
                       const TTI_Names& names) {
    constexpr std::array kNames = {TTI_Names::Family, TTI_Names::Full, TTI_Names::PostScript,
                                   TTI_Names::PreferredFamily};
    const FS_FontRef ref{&font, static_cast<std::int16_t>(faceIndex)};
    const FS_FontKey key = FS_FontKey::ofFace(font, faceIndex);
    const bool preferred = FS_ServiceContext::usePreferredFamily();
    for (const TTI_Names::LanguageID language : names.languages()) {
        for (const TTI_Names::Which which : kNames) {
            if (which == TTI_Names::PreferredFamily && !preferred)
                continue;
            if (const UnicodeString* name = names.find(language, which))
                FS_FontPool::addName(pool.byName, normaliseFontName(*name), ref, key);
        }
    }
    pool.addExtraFamilies(font.getFontAliases(), ref, key);
}

} // namespace KWFontService_NS
