#include "service/FS_Startup.h"

#include "platform/Platform.h"
#include "registry/EudcFonts.h"
#include "registry/FS_FontService.h"
#include "registry/FolderScan.h"
#include "registry/RegisteredFonts.h"
#include "service/FontConfigReader.h"

namespace KWFontService_NS {

namespace {

using Kind = FS_StartupStep::Kind;

struct ExtensionRow {
    const char* extension;
    FS_FontFileType type;
};

/// No printer fonts (".pfa", ".pfb"): those are found through their metrics files only.
constexpr ExtensionRow kExtensions[] = {
    {".afm", FS_FILETYPE_AFM},      {".pfm", FS_FILETYPE_PFM},
    {".ttf", FS_FILETYPE_TRUETYPE}, {".ttc", FS_FILETYPE_COLLECTION},
    {".otf", FS_FILETYPE_OPENTYPE}, {".dfont", FS_FILETYPE_DFONT},
    {".woff", FS_FILETYPE_WOFF},
};

constexpr int kFirstPrivateUse = 0xE000;
constexpr int kLastPrivateUse = 0xF8FF;

void readConfigurationFile(FS_FontService& service, const FS_OpenArguments& arguments) {
    readFontConfig(service, arguments.configPath, arguments.homePath);
}

void scanAllFolders(FS_FontService& service, const FS_OpenArguments&) {
    scanFolders(service);
}

void loadRegisteredFonts(FS_FontService& service, const FS_OpenArguments&) {
    if (!service.useWindowsRegistry)
        return;
    const KWPlatform::RegisteredFontFiles files = KWPlatform::system().registeredFontFiles();
    readRegistryFonts(service, files.fonts);
    readRegistryFonts(service, files.type1);
}

void setUpEudc(FS_FontService& service, const FS_OpenArguments&) {
    if (!service.eudcProcessing)
        return;
    if (service.useWindowsRegistry)
        readEudcRegistry(service);
    if (!service.eudcRangeGiven)
        service.addEudcRange(kFirstPrivateUse, kLastPrivateUse);
    if (!service.eudcSystemDefault.isEmpty())
        loadDefaultEudcFont(service);
    linkEudcMap(service);
}

constexpr FS_StartupStep kSteps[] = {
    {Kind::configuration, readConfigurationFile},
    {Kind::later, scanAllFolders},
    {Kind::later, loadRegisteredFonts},
    {Kind::later, setUpEudc},
};

std::span<const FS_StartupStep> g_steps = kSteps;

} // namespace

void startUp(FS_FontService& service, const FS_OpenArguments& arguments) {
    for (const ExtensionRow& row : kExtensions)
        service.fileTypeByExtension.emplace(UnicodeString(row.extension), row.type);
    for (const FS_StartupStep& step : g_steps) {
        try {
            step.run(service, arguments);
        } catch (const KWError& error) {
            if (step.kind == Kind::configuration)
                throw;
            service.errors.append(error);
            return;
        }
    }
}

bool readConfiguration(FS_FontService& scratch, const FS_OpenArguments& arguments) {
    try {
        for (const FS_StartupStep& step : g_steps) {
            if (step.kind == Kind::configuration)
                step.run(scratch, arguments);
        }
    } catch (const KWError& error) {
        scratch.errors.append(error);
        return false;
    }
    return true;
}

FS_StartupOverride::FS_StartupOverride(std::span<const FS_StartupStep> replacement)
    : previous_(g_steps) {
    g_steps = replacement;
}

FS_StartupOverride::~FS_StartupOverride() {
    g_steps = previous_;
}

} // namespace KWFontService_NS
