#pragma once

namespace KWFontService_NS {

/// The `OtherSubrs` of a Type 1 Private dictionary, as a definition in PostScript: flex (0 to 2),
/// hint replacement (3) and counter control (12, 13), for interpreters that do not have them built
/// in (Adobe Type 1 Font Format, chapter 8; Adobe Technical Note 5015, section 2).
extern const char* const kOtherSubrs;

} // namespace KWFontService_NS
