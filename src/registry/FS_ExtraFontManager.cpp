#include <KWFontService17/FS_ExtraFontManager.h>

#include "fonts/FontErrors.h"
#include "registry/FS_ExtraFontPool.h"

#include <new>

namespace KWFontService_NS {

namespace {

/// Runs an append, which notes the path of its file; -1 with `error` set where it throws.
template <typename Append>
int tryAppend(Append append, KWError* error) {
    UnicodeString localPath;
    KWError raised;
    try {
        return append(localPath);
    } catch (const KWError& failure) {
        raised = failure;
    } catch (const std::bad_alloc&) {
        raised = makeFontError(FS_ERROR_FONT_FACE_CREATE, UnicodeString(), localPath);
    }
    if (error != nullptr)
        *error = raised;
    return -1;
}

bool isWrapper(FS_FontFileType type) {
    return type == FS_FILETYPE_WOFF || type == FS_FILETYPE_EXTRA || type == FS_FILETYPE_LOCAL;
}

} // namespace

FS_ExtraFontManager::FS_ExtraFontManager(const FS_ExtraFontManager* other)
    : extraFonts(other != nullptr ? std::make_shared<FS_ExtraFontPool>(*other->extraFonts)
                                  : std::make_shared<FS_ExtraFontPool>()) {}
FS_ExtraFontManager::FS_ExtraFontManager(const FS_ExtraFontManager& other) = default;
FS_ExtraFontManager& FS_ExtraFontManager::operator=(const FS_ExtraFontManager& other) = default;
FS_ExtraFontManager::~FS_ExtraFontManager() = default;

FS_ExtraFonts* FS_ExtraFontManager::getExtraFonts() const {
    return extraFonts.get();
}

int FS_ExtraFontManager::getFontsCount() const {
    return static_cast<int>(extraFonts->fonts.size());
}

int FS_ExtraFontManager::appendExtraFont(const UnicodeString& url, const UnicodeString& family,
                                         int weight, int italic, FS_FontFileType type,
                                         KWError* error) {
    // A fetcher of the host may assign to this manager meanwhile.
    const auto append = [&, pool = extraFonts](UnicodeString& localPath) {
        const KWUri uri(url, KWCommonNS::URISTR_URL);
        localPath = uri.getLocalPath();
        return pool->appendFile(uri, {family, weight, italic}, type);
    };
    return tryAppend(append, error);
}

int FS_ExtraFontManager::appendLocalFont(FS_FontInfo* local, const UnicodeString& family,
                                         int weight, int italic, KWError* error) {
    const auto append = [&](UnicodeString& localPath) {
        const KWPtr<FS_BaseFont> font(local != nullptr ? local->getFont() : nullptr);
        if (font)
            localPath = font->getUri().getLocalPath();
        return extraFonts->appendLocal(font, {family, weight, italic});
    };
    return tryAppend(append, error);
}

FS_FontFileType FS_ExtraFontManager::getExtraFontFaceName(int index, UnicodeString* name,
                                                          int* weight, bool* italic,
                                                          int* stretch) const {
    if (name != nullptr)
        name->remove();
    if (weight != nullptr)
        *weight = 0;
    if (italic != nullptr)
        *italic = false;
    if (stretch != nullptr)
        *stretch = 0;

    const FS_BaseFont* const font = extraFonts->fontAt(index);
    if (font == nullptr)
        return FS_FILETYPE_UNKNOWN;
    const FS_FontFileType type = font->getFontFileType(0);
    const std::set<UnicodeString>& families = font->getFontAliases();
    if (families.empty())
        return type;
    const bool wrapper = isWrapper(type);
    if (name != nullptr)
        *name = wrapper ? *families.begin() : font->getFamilyName(0, 0);
    if (wrapper && weight != nullptr)
        *weight = font->getWeight(0);
    if (wrapper && italic != nullptr)
        *italic = font->isItalic(0);
    if (wrapper && stretch != nullptr)
        *stretch = font->getWidth(0);
    return type;
}

const std::set<UnicodeString>* FS_ExtraFontManager::getExtraFontFamilies(int index) const {
    const FS_BaseFont* const font = extraFonts->fontAt(index);
    return font != nullptr ? &font->getFontAliases() : nullptr;
}

} // namespace KWFontService_NS
