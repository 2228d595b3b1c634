#include "KWCommon15/KWCStr.h"

#include "common/PlatformText.h"

#include <optional>
#include <string_view>
#include <utility>

namespace KWCommonNS {

KWCStr::KWCStr(const char* bytes) : bytes_(bytes != nullptr ? bytes : "") {
    UnicodeString::operator=(textOfBytes(bytes_));
}

KWCStr::KWCStr(const UnicodeString& text) : UnicodeString(text) {
    const std::u16string_view units = toView(text);
    std::optional<std::string> bytes;
    if (units.find(u'\0') == std::u16string_view::npos)
        bytes = KWPlatform::encodeBytes(units);
    hasBytes_ = bytes.has_value();
    if (hasBytes_)
        bytes_ = std::move(*bytes);
}

KWCStr::KWCStr(const KWCStr& other) = default;
KWCStr& KWCStr::operator=(const KWCStr& other) = default;
KWCStr::~KWCStr() = default;

} // namespace KWCommonNS
