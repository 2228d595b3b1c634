#pragma once

namespace KWFontService_NS {
struct FS_GSUBGPOSInfo;
} // namespace KWFontService_NS

namespace KWFuzz {

/// Runs glyphs through all four processing calls with what a layout handle has first in its lookup
/// order, in every mode.
/// @param handle  may be null
void exerciseLayout(const KWFontService_NS::FS_GSUBGPOSInfo* handle);

} // namespace KWFuzz
