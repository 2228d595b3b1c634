#include "platform/posix/FontconfigFonts.h"

#ifdef KW_WITH_FONTCONFIG

#include "platform/PathText.h"

#include <fontconfig/fontconfig.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

namespace KWPlatform {

namespace {

struct ConfigDeleter {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using Config = std::unique_ptr<FcConfig, ConfigDeleter>;

std::string_view textProperty(const FcPattern* pattern, const char* property) {
    FcChar8* value = nullptr;
    if (FcPatternGetString(pattern, property, 0, &value) != FcResultMatch || value == nullptr)
        return {};
    return reinterpret_cast<const char*>(value);
}

char lowerAscii(char ch) {
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
}

bool endsWith(std::string_view text, std::string_view lowerEnd) {
    return text.size() >= lowerEnd.size() &&
           std::equal(lowerEnd.begin(), lowerEnd.end(),
                      text.end() - static_cast<std::ptrdiff_t>(lowerEnd.size()),
                      [](char expected, char ch) { return expected == lowerAscii(ch); });
}

// fontconfig gives a WOFF file the format of the sfnt inside.
bool isSfnt(const FcPattern* pattern, std::string_view file) {
    const std::string_view format = textProperty(pattern, FC_FONTFORMAT);
    return (format == "TrueType" || format == "CFF") && !endsWith(file, ".woff") &&
           !endsWith(file, ".woff2");
}

bool isRegular(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// Path of the metrics file beside a printer font; empty when there is none. The font of a metrics
// file looks for its printer font by the same extensions; it would not find any other.
std::string metricsFileBeside(std::string_view printerFont) {
    const std::size_t dot = printerFont.rfind('.');
    if (dot == std::string_view::npos)
        return {};
    const std::string_view extension = printerFont.substr(dot);
    std::array<const char*, 2> candidates{};
    if (extension == ".pfb" || extension == ".pfa")
        candidates = {".afm", ".pfm"};
    else if (extension == ".PFB" || extension == ".PFA")
        candidates = {".AFM", ".PFM"};
    else
        return {};
    for (const char* candidate : candidates) {
        std::string path(printerFont.substr(0, dot));
        path += candidate;
        if (isRegular(path))
            return path;
    }
    return {};
}

} // namespace

RegisteredFontFiles fontconfigFontFiles() {
    RegisteredFontFiles files;
    const Config config(FcInitLoadConfigAndFonts());
    const FcFontSet* const fonts =
        config != nullptr ? FcConfigGetFonts(config.get(), FcSetSystem) : nullptr;
    if (fonts == nullptr)
        return files;
    std::unordered_set<std::string_view> seen;
    std::unordered_set<std::string> seenMetrics;
    for (int i = 0; i < fonts->nfont; ++i) {
        const FcPattern* const pattern = fonts->fonts[i];
        const std::string_view file = textProperty(pattern, FC_FILE);
        // The faces of a collection and the instances of a variable font share their file.
        if (file.empty() || !seen.insert(file).second)
            continue;
        if (isSfnt(pattern, file)) {
            files.fonts.push_back(decodeBytes(file));
        } else if (textProperty(pattern, FC_FONTFORMAT) == "Type 1") {
            // A font may have both forms of a printer font.
            const std::string metrics = metricsFileBeside(file);
            if (!metrics.empty() && seenMetrics.insert(metrics).second)
                files.type1.push_back(decodeBytes(metrics));
        }
    }
    return files;
}

} // namespace KWPlatform

#else

namespace KWPlatform {

RegisteredFontFiles fontconfigFontFiles() {
    return {};
}

} // namespace KWPlatform

#endif
