#include "Service.h"

#include "Utf8.h"

#include <KWFontService17/FS_Functions.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace examples {

using namespace KWFontService_NS;
using KWCommonNS::KWError;

std::string configPath(const std::string& config) {
    return config.empty() ? config : std::filesystem::absolute(config).string();
}

const char* homePath() {
    return std::getenv("HOME");
}

std::vector<std::string> openService(const std::string& config) {
    const std::string path = configPath(config);
    // Without its configuration the service opens all the same, with the fonts of the system.
    if (!path.empty() && FS_GetFontConfigPath(path.c_str(), false).isEmpty())
        throw std::runtime_error("there is no configuration file " + path);
    KWError error;
    if (FontServiceOpen(path.c_str(), homePath(), &error) != FS_ERROR_NONE)
        throw std::runtime_error(toUtf8(error.getMessage()));

    std::vector<std::string> notes;
    for (int i = 0, count = FS_GetFontError(nullptr, 0); i < count; ++i) {
        FS_GetFontError(&error, i);
        notes.push_back(toUtf8(error.getMessage()));
    }
    return notes;
}

} // namespace examples
