#include "service/FontConfigPath.h"

#include "common/TextView.h"
#include "platform/Platform.h"

#include <KWCommon15/KWCStr.h>

namespace KWFontService_NS {

namespace {

using KWPlatform::KnownFolder;

constexpr const char* kModuleName = "KWFontService17.dll";
constexpr const char* kDefaultConfig = "font-config.xml";

UnicodeString folderPath(KnownFolder folder) {
    return KWCommonNS::toText(KWPlatform::system().knownFolder(folder));
}

/// The user's fonts as a path that has a macro word itself, replaced by a later step.
UnicodeString userFontsWord() {
    return KWPlatform::preferredSeparator() == u'\\'
               ? UnicodeString(u"@@LOCALAPPDATA@@\\Microsoft\\Windows\\Fonts")
               : UnicodeString(u"@@LOCALAPPDATA@@/fonts");
}

/// Builds the text anew: replacing in place would move the rest of it at every word.
void replaceWord(UnicodeString& text, const UnicodeString& word, const UnicodeString& by) {
    std::int32_t at = text.indexOf(word);
    if (at < 0 || by.isEmpty())
        return;
    UnicodeString result;
    std::int32_t done = 0;
    for (; at >= 0; at = text.indexOf(word, done)) {
        result.append(text, done, at - done).append(by);
        done = at + word.length();
    }
    text = result.append(text, done, text.length() - done);
}

} // namespace

UnicodeString fontConfigPath(const char* configPath) {
    const bool given = configPath != nullptr && *configPath != '\0';
    return KWCommonNS::KWCStr(given ? configPath : kDefaultConfig);
}

KWCommonNS::KWUri fontConfigUri(const char* configPath) {
    return KWCommonNS::KWUri::getModuleUri(UnicodeString(kModuleName), fontConfigPath(configPath),
                                           nullptr);
}

UnicodeString expandFontPath(const UnicodeString& text, const char* homePath) {
    UnicodeString result(text);
    replaceWord(result, u"@@WINFONTS@@", folderPath(KnownFolder::fonts));
    replaceWord(result, u"@@USERWINFONTS@@", userFontsWord());
    replaceWord(result, u"@@APPDATA@@", folderPath(KnownFolder::appData));
    replaceWord(result, u"@@LOCALAPPDATA@@", folderPath(KnownFolder::localAppData));
    if (homePath != nullptr)
        replaceWord(result, u"@@HOME@@", KWCommonNS::KWCStr(homePath));
    return result;
}

} // namespace KWFontService_NS
