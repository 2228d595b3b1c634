#include <KWFontService17/FS_Functions.h>

#include "service/FS_FontService.h"
#include "service/FontConfigPath.h"

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
        const int count = static_cast<int>(service->errors.size());
        if (error == nullptr)
            return count;
        if (index < 0 || index >= count)
            return -1;
        *error = service->errors[static_cast<std::size_t>(index)];
        return index;
    } catch (const KWError&) {
        return -1;
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
    constexpr std::int32_t kTagLength = 4;
    if (text.length() > kTagLength)
        return 0;
    unsigned int tag = 0;
    for (std::int32_t i = 0; i < kTagLength; ++i) {
        const char16_t unit = i < text.length() ? text.charAt(i) : u' ';
        if (unit < 0x20 || unit > 0x7E)
            return 0;
        tag = tag << 8 | unit;
    }
    return tag;
}

} // namespace KWFontService_NS
