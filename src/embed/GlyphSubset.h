#pragma once

#include "embed/GlyphReader.h"
#include "embed/TableSet.h"

#include <vector>

namespace KWFontService_NS {

/// Appends an sfnt of the tables in the set with `glyf` cut to the closure of `glyphs`. Glyph ids
/// stay: `loca` has the source's size, and glyphs outside the closure have no length. Glyphs follow
/// each other without padding.
/// @return false when the source is short or asked too often, when the result passes 4 GiB, and
///         when the output takes no more
bool subsetGlyphTables(EmbedSource& source, GlyphReader& reader,
                       const std::vector<unsigned short>& glyphs, KWMemStream& output,
                       const TableSet& tables);

} // namespace KWFontService_NS
