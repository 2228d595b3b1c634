#include "Paths.h"

#include <algorithm>
#include <string>
#include <utility>

namespace KWTest {

icu::UnicodeString pathText(const std::filesystem::path& path) {
    const std::u8string utf8 = path.u8string();
    const std::string bytes(utf8.begin(), utf8.end());
    return icu::UnicodeString::fromUTF8(bytes);
}

std::string posixForm(std::string path) {
    if (std::filesystem::path::preferred_separator == '/')
        return path;
    std::ranges::replace(path, '\\', '/');
    return path.size() >= 2 && path[1] == ':' ? path.substr(2) : path;
}

std::string posixPath(const KWCommonNS::KWUri& uri) {
    std::string path;
    uri.getLocalPath().toUTF8String(path);
    return posixForm(std::move(path));
}

KWCommonNS::KWUri fileUri(const std::filesystem::path& path) {
    return KWCommonNS::KWUri(pathText(path), KWCommonNS::URISTR_LOCAL);
}

} // namespace KWTest
