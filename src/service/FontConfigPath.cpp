#include "service/FontConfigPath.h"

#include "common/TextView.h"
#include "platform/Platform.h"

#include <KWCommon15/KWCStr.h>

namespace KWFontService_NS {

namespace {

using KWPlatform::KnownFolder;

constexpr const char* kModuleName = "KWFontService17.dll";
constexpr const char* kDefaultConfig = "font-config.xml";

void replaceWithFolder(UnicodeString& text, const char16_t* word, KnownFolder folder) {
    const std::u16string path = KWPlatform::system().knownFolder(folder);
    if (!path.empty())
        text.findAndReplace(UnicodeString(word), KWCommonNS::toText(path));
}

/// The user's fonts as a path that has a macro word itself, replaced by a later step.
UnicodeString userFontsWord() {
    return KWPlatform::preferredSeparator() == u'\\'
               ? UnicodeString(u"@@LOCALAPPDATA@@\\Microsoft\\Windows\\Fonts")
               : UnicodeString(u"@@LOCALAPPDATA@@/fonts");
}

} // namespace

KWCommonNS::KWUri fontConfigUri(const char* configPath) {
    const bool given = configPath != nullptr && *configPath != '\0';
    return KWCommonNS::KWUri::getModuleUri(UnicodeString(kModuleName),
                                           KWCommonNS::KWCStr(given ? configPath : kDefaultConfig),
                                           nullptr);
}

UnicodeString expandFontPath(const UnicodeString& text) {
    UnicodeString result(text);
    replaceWithFolder(result, u"@@WINFONTS@@", KnownFolder::fonts);
    result.findAndReplace(UnicodeString(u"@@USERWINFONTS@@"), userFontsWord());
    replaceWithFolder(result, u"@@LOCALAPPDATA@@", KnownFolder::localAppData);
    return result;
}

} // namespace KWFontService_NS
