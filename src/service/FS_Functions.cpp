#include <KWFontService17/FS_Functions.h>

#include "common/TagText.h"
#include "registry/FS_ExtraFontPool.h"
#include "registry/FS_FontService.h"
#include "registry/FolderScan.h"
#include "registry/FontEnumeration.h"
#include "service/FontConfigPath.h"

#include <KWFontService17/FS_ExtraFontManager.h>

namespace KWFontService_NS {

FS_ERROR FontServiceOpen(const char* configPath, const char* homePath, KWError* error) {
    KWError raised;
    try {
        getFontService(configPath, homePath, nullptr);
    } catch (const KWError& failure) {
        raised = failure;
    }
    if (error != nullptr)
        *error = raised;
    else if (raised.isError())
        throw raised;
    return static_cast<FS_ERROR>(raised.getCode());
}

FS_ERROR FontServiceOpen(const char* configPath, KWError* error) {
    return FontServiceOpen(configPath, nullptr, error);
}

FS_ERROR FontServiceClose() {
    return FS_ERROR_NONE;
}

int FS_GetFontError(KWError* error, int index) {
    try {
        const FS_FontService* const service = getFontService(nullptr, nullptr, nullptr);
        if (service == nullptr)
            return -1;
        if (error == nullptr)
            return static_cast<int>(service->errors.size());
        const auto entry = service->errors.get(static_cast<std::size_t>(index));
        if (index < 0 || !entry)
            return -1;
        *error = *entry;
        return index;
    } catch (const KWError&) {
        return -1;
    }
}

int FS_AddFontFolderPath(const KWUri& folder) {
    try {
        FS_FontService* const service = getFontService(nullptr, nullptr, nullptr);
        return service != nullptr ? addFontFolder(*service, folder) : 0;
    } catch (const KWError&) {
        return 0;
    }
}

bool FS_GetFontFoldPathVector(const char* configPath, const char* homePath,
                              std::vector<UnicodeString>& paths) {
    paths.clear();
    FS_FontService scratch;
    if (getFontService(configPath, homePath, &scratch) == nullptr)
        return false;
    bool hasAliases = false;
    for (const auto& folder : scratch.folders) {
        paths.push_back(folder->getLocalPath());
        hasAliases = hasAliases || !folder->fileAliases.empty();
    }
    return hasAliases;
}

bool FS_GetFontFoldPathVector(const char* configPath, std::vector<UnicodeString>& paths) {
    return FS_GetFontFoldPathVector(configPath, nullptr, paths);
}

int FS_EnumFontFamilies(const UnicodeString& family, FS_EnumFontFamiliesCallback callback,
                        void* userData, FS_ExtraFontManager* extraFonts, int) {
    try {
        FS_FontService* const service = getFontService(nullptr, nullptr, nullptr);
        const FontEnumeration enumeration(family, callback, userData);
        int result = 0;
        if (extraFonts != nullptr) {
            const FS_ExtraFontManager kept(*extraFonts); // the callback may assign to that one
            result = enumeration.walk(*kept.getExtraFonts(), FS_RESOURCE_EXTRA);
        }
        if (result == 0 && service != nullptr)
            result = enumeration.walk(service->aliasPool, FS_RESOURCE_ALIAS);
        if (result == 0 && service != nullptr)
            result = enumeration.walk(service->fontPool, FS_RESOURCE_FONT);
        return result;
    } catch (const KWError&) {
        return 1;
    }
}

UnicodeString FS_GetFontConfigPath(const char* configPath, bool mayBeMissing) {
    const KWUri uri = fontConfigUri(configPath);
    if (uri.isEmpty() || (!mayBeMissing && !uri.isFileExists()))
        return UnicodeString();
    return uri.getLocalPath();
}

UnicodeString getWinFontsPath() {
    return expandFontPath(UnicodeString(u"@@WINFONTS@@"));
}

UnicodeString getUserWinFontsPath() {
    return expandFontPath(UnicodeString(u"@@USERWINFONTS@@"));
}

unsigned int toTAG(const UnicodeString& text) {
    return KWCommonNS::tagOfText(text);
}

} // namespace KWFontService_NS
