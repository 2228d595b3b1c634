#pragma once

#include "common/TextView.h"
#include "platform/PathText.h"

#include <string>
#include <string_view>

namespace KWCommonNS {

// UnicodeString and the UTF-16 of the platform seam hold the same code units.

inline std::u16string toPath(const UnicodeString& text) {
    return std::u16string(toView(text));
}

inline UnicodeString textOfBytes(std::string_view bytes) {
    return toText(KWPlatform::decodeBytes(bytes));
}

} // namespace KWCommonNS
