#include "service/FontConfigReader.h"

#include "common/TextView.h"
#include "platform/Platform.h"
#include "service/ConfigElement.h"
#include "service/ConfigErrors.h"
#include "service/ConfigEudcReader.h"
#include "service/ConfigFolderReader.h"
#include "service/ConfigValues.h"
#include "service/FontConfigPath.h"

#include <memory>
#include <utility>

namespace KWFontService_NS {

namespace {

using KWCommonNS::KWXmlEvent;
using KWCommonNS::KWXmlParser;

class RootReader {
public:
    explicit RootReader(const ConfigSource& source) : source_(source) {}

    ConfigResult read();

private:
    void readAttributes(const ConfigElement& element);
    ConfigResult readChild(FS_Word child);
    ConfigResult readNameProcessingMode() const;
    ConfigResult readOtfMetricsMode() const;
    ConfigResult readWindowsRegistry() const;
    ConfigResult skipAccFolder() const;

    const ConfigSource& source_;
    bool eudcProcessingGiven_ = false;
    bool nameProcessingModeGiven_ = false;
    bool otfMetricsModeGiven_ = false;
    bool windowsRegistryGiven_ = false;
    bool folderGiven_ = false;
};

ConfigResult RootReader::read() {
    const ConfigElement element(source_, FS_Word::fontConfig);
    readAttributes(element);
    element.checkAttributes({FS_Word::nameProcessingMode, FS_Word::otfMetricsMode,
                             FS_Word::usePreferredFamily, FS_Word::windowsRegistry});
    return element.readContent([this](FS_Word child) { return readChild(child); });
}

void RootReader::readAttributes(const ConfigElement& element) {
    FS_FontService& service = source_.service;
    nameProcessingModeGiven_ = element.find(FS_Word::nameProcessingMode) != nullptr;
    // Hosts know the complaint under the wrong attribute's name.
    setIfRead(service.otfMetricsWindows,
              element.value(FS_Word::otfMetricsMode, metricModeOf, FS_Word::nameProcessingMode));
    otfMetricsModeGiven_ = element.find(FS_Word::otfMetricsMode) != nullptr;
    setIfRead(service.usePreferredFamily, element.value(FS_Word::usePreferredFamily, booleanOf));
    setIfRead(service.useWindowsRegistry, element.value(FS_Word::windowsRegistry, switchOf));
    windowsRegistryGiven_ = element.find(FS_Word::windowsRegistry) != nullptr;
}

ConfigResult RootReader::readChild(FS_Word child) {
    switch (child) {
    case FS_Word::eudcProcessing:
        return std::exchange(eudcProcessingGiven_, true) ? ConfigResult::unexpected
                                                         : readEudcProcessing(source_);
    case FS_Word::fontFolder:
        folderGiven_ = true;
        return readFontFolder(source_);
    case FS_Word::accFolder:
        return skipAccFolder();
    case FS_Word::nameProcessingMode:
        if (folderGiven_ || std::exchange(nameProcessingModeGiven_, true))
            return ConfigResult::unexpected;
        return readNameProcessingMode();
    case FS_Word::otfMetricsMode:
        return std::exchange(otfMetricsModeGiven_, true) ? ConfigResult::unexpected
                                                         : readOtfMetricsMode();
    case FS_Word::windowsRegistry:
        return std::exchange(windowsRegistryGiven_, true) ? ConfigResult::unexpected
                                                          : readWindowsRegistry();
    default:
        return ConfigResult::unexpected;
    }
}

ConfigResult RootReader::readNameProcessingMode() const {
    return ConfigElement(source_, FS_Word::nameProcessingMode).finish({FS_Word::mode});
}

ConfigResult RootReader::readOtfMetricsMode() const {
    const ConfigElement element(source_, FS_Word::otfMetricsMode);
    if (element.find(FS_Word::mode) == nullptr)
        source_.service.otfMetricsWindows = false;
    else
        setIfRead(source_.service.otfMetricsWindows, element.value(FS_Word::mode, metricModeOf));
    return element.finish({FS_Word::mode});
}

ConfigResult RootReader::readWindowsRegistry() const {
    const ConfigElement element(source_, FS_Word::windowsRegistry);
    if (element.require(FS_Word::reference) == nullptr)
        return ConfigResult::stops;
    setIfRead(source_.service.useWindowsRegistry, element.value(FS_Word::reference, switchOf));
    return element.finish({FS_Word::reference});
}

/// Another program's folder: whatever stands in it, folders of its own kind included, is its
/// affair.
ConfigResult RootReader::skipAccFolder() const {
    const UnicodeString& name = FS_Keyword::text(FS_Word::accFolder);
    for (int depth = 1; depth > 0;) {
        const KWXmlEvent event = source_.parser.nextEvent();
        if (event == KWXmlEvent::endOfInput)
            break;
        if (source_.parser.getName() == name)
            depth += event == KWXmlEvent::startTag ? 1 : -1;
    }
    return ConfigResult::goesOn;
}

/// Reads the document up to the end of its root.
ConfigResult readDocument(const ConfigSource& source) {
    for (;;) {
        const KWXmlEvent event = source.parser.nextEvent();
        if (event == KWXmlEvent::endOfInput)
            return ConfigResult::goesOn;
        if (event != KWXmlEvent::startTag)
            continue;
        const UnicodeString& name = source.parser.getName();
        if (FS_Keyword::find(name) == FS_Word::fontConfig)
            return RootReader(source).read();
        configError(FS_ERROR_UNEXPECTED_START_TAG, name, source.file);
        return ConfigResult::goesOn;
    }
}

void readFile(FS_FontService& service, const char* homePath) {
    const KWPtr<KWXmlParser> parser = KWCommonNS::KWXmlUtil::createXmlParser(nullptr);
    const UnicodeString file = service.configUri.getLocalPath();
    UnicodeString reason;
    if (!parser->open(service.configUri, UnicodeString(), UnicodeString(), &reason))
        throw KWError(KWCommonNS::KWERR_XML_SYNTAX, file + u": " + reason, file);
    const ConfigResult result = readDocument({service, *parser, file, homePath});
    if (result != ConfigResult::stops && service.folders.empty())
        configError(FS_ERROR_NO_FONT_FOLDER, file);
}

void addSystemFolder(FS_FontService& service, const UnicodeString& path) {
    service.addFolder(
        std::make_unique<FS_FontFolder>(KWUri(path, KWCommonNS::URISTR_LOCAL), false));
}

void takeSystemFolders(FS_FontService& service, const char* configPath) {
    service.configUri = KWUri();
    addSystemFolder(service, expandFontPath(u"@@USERWINFONTS@@"));
    const UnicodeString fonts =
        KWCommonNS::toText(KWPlatform::system().knownFolder(KWPlatform::KnownFolder::fonts));
    if (fonts.isEmpty())
        configError(FS_ERROR_CONFIG_NOT_FOUND, fontConfigPath(configPath));
    addSystemFolder(service, fonts);
    service.useWindowsRegistry = true;
    service.eudcProcessing = true;
}

} // namespace

void readFontConfig(FS_FontService& service, const char* configPath, const char* homePath) {
    service.configUri = fontConfigUri(configPath);
    if (service.configUri.isFileExists())
        readFile(service, homePath);
    else
        takeSystemFolders(service, configPath);
}

} // namespace KWFontService_NS
