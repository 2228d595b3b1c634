#pragma once

#include "KWCommon15/KWExport.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace KWCommonNS {

/// The units of a text, valid until it changes.
inline std::u16string_view toView(const UnicodeString& text) {
    return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

/// A text of its own with these units.
inline UnicodeString toText(std::u16string_view units) {
    return UnicodeString(units.data(), static_cast<std::int32_t>(units.size()));
}

} // namespace KWCommonNS
