#include "Paths.h"

#include <string>

namespace KWTest {

icu::UnicodeString pathText(const std::filesystem::path& path) {
    const std::u8string utf8 = path.u8string();
    const std::string bytes(utf8.begin(), utf8.end());
    return icu::UnicodeString::fromUTF8(bytes);
}

KWCommonNS::KWUri fileUri(const std::filesystem::path& path) {
    return KWCommonNS::KWUri(pathText(path), KWCommonNS::URISTR_LOCAL);
}

} // namespace KWTest
