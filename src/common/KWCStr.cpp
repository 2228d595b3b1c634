#include "KWCommon15/KWCStr.h"

#include "common/PlatformText.h"
#include "platform/Platform.h"

namespace KWCommonNS {

KWCStr::KWCStr(const char* bytes) : bytes_(bytes != nullptr ? bytes : "") {
    UnicodeString::operator=(textOfBytes(bytes_));
}

KWCStr::KWCStr(const UnicodeString& text) : UnicodeString(text) {
    std::optional<std::string> bytes = KWPlatform::narrowPath(toView(text));
    hasBytes_ = bytes.has_value();
    if (hasBytes_)
        bytes_ = std::move(*bytes);
}

KWCStr::KWCStr(const KWCStr& other) = default;
KWCStr& KWCStr::operator=(const KWCStr& other) = default;
KWCStr::~KWCStr() = default;

} // namespace KWCommonNS
