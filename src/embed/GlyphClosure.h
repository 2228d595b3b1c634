#pragma once

#include "embed/GlyphReader.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace KWFontService_NS {

/// The glyphs of a subset: those wanted, glyph 0, and the components of composites (OpenType
/// `glyf`), by ascending id. Ids of no glyph stay, 0xFFFF is dropped.
/// @return nothing when glyphs cannot be read
std::optional<std::vector<std::uint16_t>>
collectGlyphClosure(GlyphReader& reader, const std::vector<unsigned short>& wanted);

} // namespace KWFontService_NS
