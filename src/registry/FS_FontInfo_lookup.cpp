#include "fonts/FS_ServiceContext.h"
#include "registry/FS_ExtraFontPool.h"
#include "registry/FS_FontService.h"

#include <KWFontService17/FS_FontInfo.h>

namespace KWFontService_NS {

namespace {

struct Found {
    FS_FontRef ref;
    bool isExtra = false; ///< one that a document brought, open already
};

/// Fonts of the document go first, then aliases, then all fonts.
Found search(const UnicodeString& family, const FS_FontKey& key, FS_ExtraFonts* extraFonts,
             bool skipAliases) {
    if (extraFonts != nullptr) {
        if (const FS_FontRef ref = extraFonts->findFont(family, key))
            return {ref, true};
    }
    FS_FontService* const service = getFontService(nullptr, nullptr, nullptr);
    if (service == nullptr)
        return {};
    bool foundInAlias = false;
    return {service->findFont(family, key, foundInAlias, skipAliases), false};
}

bool open(const FS_FontRef& ref) {
    KWError error;
    return ref.font->loadFont(error, ref.face, nullptr);
}

/// Opens the font that has the end-user-defined characters of another. A font that refuses once is
/// no longer linked, but asked a second time.
void openEudcLink(const FS_FontRef& main) {
    const FS_FontRef link = main.font->getEudcFont(main.face);
    if (!link)
        return;
    if (!open(link)) {
        main.font->setEudcFont({}, main.face);
        if (!open(link))
            return;
    }
    if (main.font->hasVerticalGlyph(main.face))
        link.font->setHasVerticalGlyph(link.face);
}

} // namespace

bool FS_FontInfo::createFont(const UnicodeString& family, int weight, bool italic, int stretch,
                             FS_ExtraFonts* extraFonts, bool skipAliases) {
    error = KWError();
    const Found found =
        search(family, FS_FontKey::ofRequest(weight, italic, stretch), extraFonts, skipAliases);
    if (!found.ref)
        return false;
    if (!found.isExtra && !found.ref.font->loadFont(error, found.ref.face, nullptr))
        return false;
    bind(found.ref.font, found.ref.face);
    openEudcLink(found.ref);
    return true;
}

bool FS_FontInfo::createFont(const UnicodeString& family, int weight, bool italic,
                             FS_ExtraFonts* extraFonts, bool skipAliases) {
    return createFont(family, weight, italic, 0, extraFonts, skipAliases);
}

KWUri FS_FontInfo::getFontFolderPath(const UnicodeString& family, int weight, bool italic,
                                     int stretch, FS_ExtraFonts* extraFonts) {
    const Found found =
        search(family, FS_FontKey::ofRequest(weight, italic, stretch), extraFonts, false);
    return found.ref ? found.ref.font->getUri() : KWUri();
}

UnicodeString FS_FontInfo::getFamilyName(KWLang::LanguageID language, const UnicodeString& family,
                                         FS_ExtraFonts* extraFonts) {
    const FS_FontRef ref = search(family, FS_FontKey(), extraFonts, false).ref;
    if (!ref)
        return UnicodeString();
    if (FS_ServiceContext::usePreferredFamily()) {
        UnicodeString preferred = ref.font->getPreferredFamily(language, ref.face);
        if (!preferred.isEmpty())
            return preferred;
    }
    return ref.font->getFamilyName(language, ref.face);
}

bool FS_FontInfo::getNewTextMetricEx(const UnicodeString& family, int weight, bool italic,
                                     int stretch, FS_NewTextMetricEx& metric,
                                     FS_ExtraFonts* extraFonts) {
    const FS_FontRef ref =
        search(family, FS_FontKey::ofRequest(weight, italic, stretch), extraFonts, false).ref;
    return ref && open(ref) && ref.font->getNewTextMetricEx(metric, ref.face);
}

bool FS_FontInfo::getNewTextMetricEx(const UnicodeString& family, int weight, bool italic,
                                     FS_NewTextMetricEx& metric, FS_ExtraFonts* extraFonts) {
    return getNewTextMetricEx(family, weight, italic, 0, metric, extraFonts);
}

} // namespace KWFontService_NS
