#include "registry/EudcFonts.h"

#include "common/TextView.h"
#include "platform/Platform.h"
#include "registry/FontFileLoader.h"

#include <KWCommon15/KWLang.h>
#include <KWCommon15/KWTokenizer.h>

#include <unicode/locid.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <optional>
#include <string>

namespace KWFontService_NS {

using KWCommonNS::KWLang;
using KWPlatform::RegistryHive;
using KWPlatform::RegistryText;
using KWPlatform::RegistryType;

namespace {

constexpr char16_t kSystemDefault[] = u"SystemDefaultEUDCFont";
constexpr char16_t kRangeKey[] =
    u"System\\CurrentControlSet\\Control\\NLS\\CodePage\\EUDCCodeRange";

std::u16string keyOf(const UnicodeString& codePage) {
    return u"EUDC\\" + std::u16string(KWCommonNS::toView(codePage));
}

/// Default locales carry a country and may carry a script, which these, but for the country that
/// tells the two Chinese ones apart, do not.
bool isLocale(const icu::Locale& locale, const icu::Locale& wanted) {
    return std::strcmp(locale.getLanguage(), wanted.getLanguage()) == 0 &&
           (wanted.getCountry()[0] == '\0' ||
            std::strcmp(locale.getCountry(), wanted.getCountry()) == 0);
}

UnicodeString codePageOfDefaultLocale() {
    const icu::Locale locale = KWLang::getDefaultLocale();
    if (isLocale(locale, icu::Locale::getTraditionalChinese()))
        return u"950";
    if (isLocale(locale, icu::Locale::getKorean()))
        return u"949";
    return isLocale(locale, icu::Locale::getSimplifiedChinese()) ? u"936" : u"932";
}

int clampedCodePoint(long value) {
    return static_cast<int>(std::clamp(value, -1L, 0x10000L));
}

/// A file of end-user-defined characters that is to be loaded.
struct EudcFile {
    FS_FontFile file;
    const FS_FontFolder& folder;

    FS_BaseFont* load(FS_FontService& service) const {
        return loadFont(service, folder, file, FS_LOAD_EUDC);
    }
};

/// Nothing for a file that the configuration leaves out, and for one whose type is neither TrueType
/// nor OpenType; an unknown extension is TrueType. Its folder joins those of the service.
std::optional<EudcFile> findEudcFile(FS_FontService& service, const KWUri& uri) {
    const FS_FontFile file(uri);
    const FS_FontFileType type =
        fontFileType(service, file.extension(), FS_FILETYPE_REQUEST_TRUETYPE, nullptr);
    if (type != FS_FILETYPE_TRUETYPE && type != FS_FILETYPE_OPENTYPE)
        return std::nullopt;
    const FS_FontFolder& folder = folderOfFile(service, uri);
    const FS_FontFileOptions* const options = folder.findOptions(file.lowerName);
    if (options != nullptr && options->fontExclude)
        return std::nullopt;
    return EudcFile{file, folder};
}

/// What an alias stands for; any other family is itself.
UnicodeString familyOf(FS_FontService& service, const UnicodeString& family) {
    bool isAlias = false;
    const FS_FontRef found = service.findFont(family, FS_FontKey(), isAlias, false);
    return isAlias ? found.font->getFamilyName(0, found.face) : family;
}

/// Empty when the system has none.
KWUri fontsFolderOfSystem() {
    const std::u16string path = KWPlatform::system().knownFolder(KWPlatform::KnownFolder::fonts);
    if (path.empty())
        return {};
    return FS_FontFolder(KWUri(KWCommonNS::toText(path), KWCommonNS::URISTR_LOCAL), false);
}

} // namespace

void readSystemDefaultEudc(FS_FontService& service, const KWUri& fontsFolder) {
    const auto value = KWPlatform::system().registryText(
        RegistryHive::currentUser, keyOf(codePageOfDefaultLocale()), kSystemDefault);
    if (!value || value->type != RegistryType::string)
        return;
    const KWUri file(KWCommonNS::toText(value->text), fontsFolder);
    if (file.isAbsolute() && file.isFile() && file.isFileExists())
        service.eudcSystemDefault = file;
}

void readEudcRanges(FS_FontService& service) {
    const auto value =
        KWPlatform::system().registryText(RegistryHive::localMachine, kRangeKey, u"Unicode");
    if (!value || value->type != RegistryType::string)
        return;
    KWCommonNS::KWTokenizer items(KWCommonNS::toText(value->text),
                                  KWCommonNS::TokenizerType::Plain);
    for (;;) {
        const UnicodeString item = items.nextSeparatedValue(L',', false).getStringValue();
        if (item.isEmpty())
            return;
        const std::wstring text(item.getBuffer(), item.getBuffer() + item.length());
        wchar_t* end = nullptr;
        const long first = std::wcstol(text.c_str(), &end, 16);
        if (*end != L'-')
            continue;
        const long last = std::wcstol(end + 1, nullptr, 16);
        service.addEudcRange(clampedCodePoint(first), clampedCodePoint(last));
        service.eudcRangeGiven = true;
    }
}

void readEudcLinks(FS_FontService& service, const UnicodeString& codePage,
                   const KWUri& fontsFolder) {
    const UnicodeString reserved(kSystemDefault);
    for (const RegistryText& value :
         KWPlatform::system().registryTexts(RegistryHive::currentUser, keyOf(codePage))) {
        const UnicodeString family = KWCommonNS::toText(value.name);
        if (value.type != RegistryType::string ||
            family.caseCompare(reserved, U_FOLD_CASE_DEFAULT) == 0)
            continue;
        service.eudcMap.emplace(family, KWUri(KWCommonNS::toText(value.text), fontsFolder));
    }
}

void readEudcRegistry(FS_FontService& service) {
    const KWUri fontsFolder = fontsFolderOfSystem();
    if (service.eudcSystemDefault.isEmpty())
        readSystemDefaultEudc(service, fontsFolder);
    if (!service.eudcRangeGiven)
        readEudcRanges(service);
    for (const char16_t* const codePage : {u"932", u"936", u"949", u"950"})
        readEudcLinks(service, codePage, fontsFolder);
}

void loadDefaultEudcFont(FS_FontService& service) {
    const std::optional<EudcFile> source = findEudcFile(service, service.eudcSystemDefault);
    if (!source)
        return;
    KWError error;
    const auto loadFor = [&](bool vertical, const UnicodeString& prefix, FS_FontRef& place) {
        FS_BaseFont* const font = source->load(service);
        if (font == nullptr || !font->loadFont(error, 0, nullptr))
            return false;
        if (vertical)
            font->setHasVerticalGlyph(0);
        place = {font, 0};
        service.fontPool.registerNamedFont(*font, prefix);
        return true;
    };
    if (loadFor(false, UnicodeString(), service.defaultEudcFont))
        loadFor(true, u"V", service.defaultEudcFontVertical);
    if (error.isError())
        service.errors.append(error);
}

void linkEudcMap(FS_FontService& service) {
    for (const auto& [entry, uri] : service.eudcMap) {
        const std::optional<EudcFile> source = findEudcFile(service, uri);
        FS_BaseFont* const font = source ? source->load(service) : nullptr;
        if (font == nullptr)
            continue;
        FS_FontFamilyMap* faces = nullptr;
        if (!service.fontPool.findName(familyOf(service, entry), faces))
            continue;
        const FS_FontRef base = faces->begin()->second;
        service.fontPool.registerNamedFont(*font, base.font->getPostScriptName(0, base.face));
        base.font->setEudcFont({font, 0}, base.face);
    }
}

} // namespace KWFontService_NS
