#pragma once

#include "KWCommon15/KWExport.h"
#include "platform/PathText.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace KWCommonNS {

// UnicodeString and the UTF-16 of the platform seam hold the same code units.

inline UnicodeString toText(std::u16string_view text) {
    return UnicodeString(text.data(), static_cast<std::int32_t>(text.size()));
}

inline std::u16string_view toView(const UnicodeString& text) {
    return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

inline std::u16string toPath(const UnicodeString& text) {
    return std::u16string(toView(text));
}

inline UnicodeString textOfBytes(std::string_view bytes) {
    return toText(KWPlatform::decodeBytes(bytes));
}

} // namespace KWCommonNS
