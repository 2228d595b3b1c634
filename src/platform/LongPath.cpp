#include "platform/LongPath.h"

namespace KWPlatform {

namespace {

constexpr std::u16string_view kLongPrefix = u"\\\\?\\";
constexpr std::u16string_view kUnc = u"UNC\\";
constexpr std::u16string_view kVolume = u"Volume{";

bool isLetter(char16_t c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

bool startsWithDrive(std::u16string_view path) {
    return path.size() >= 3 && isLetter(path[0]) && path[1] == u':' && path[2] == u'\\';
}

} // namespace

std::optional<std::u16string> longPath(std::u16string_view fullPath) {
    if (fullPath.find(u'\0') != std::u16string_view::npos)
        return std::nullopt;
    if (fullPath.starts_with(kLongPrefix)) {
        const std::u16string_view rest = fullPath.substr(kLongPrefix.size());
        if (startsWithDrive(rest) || rest.starts_with(kUnc) || rest.starts_with(kVolume))
            return std::u16string(fullPath);
        return std::nullopt;
    }
    if (startsWithDrive(fullPath))
        return std::u16string(kLongPrefix).append(fullPath);
    if (fullPath.starts_with(u"\\\\") && !fullPath.starts_with(u"\\\\.\\"))
        return std::u16string(kLongPrefix).append(kUnc).append(fullPath.substr(2));
    return std::nullopt;
}

std::u16string pathIn(std::u16string_view folder, std::u16string_view name) {
    std::u16string path(folder);
    if (!path.ends_with(u'\\'))
        path += u'\\';
    return path.append(name);
}

} // namespace KWPlatform
