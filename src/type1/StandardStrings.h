#pragma once

#include <cstdint>
#include <string_view>

namespace KWFontService_NS {

/// How many string ids every font has in common (Adobe Technical Note 5176, appendix A).
inline constexpr std::uint16_t kStandardStringCount = 391;

/// The string of an id below `kStandardStringCount`; empty for any other.
std::string_view standardString(std::uint16_t sid);

/// The string id of the glyph name that StandardEncoding has for a code (appendix B); 0, .notdef,
/// where it has none.
std::uint16_t standardEncodingSID(std::uint8_t code);

} // namespace KWFontService_NS
