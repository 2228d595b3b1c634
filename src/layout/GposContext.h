#pragma once

#include <vector>

namespace KWFontService_NS {

class GlyphIDPosition;
class LayoutCall;
class TTI_LookupList;
class TTI_SubTable;
struct TTI_Lookup;

/// The lookup flag by which a context passes glyphs over: its lookup's where the run is set from
/// right to left in strict mode, and otherwise none.
/// @param positions  not empty
unsigned int contextFlag(const TTI_Lookup& lookup, const std::vector<GlyphIDPosition>& positions,
                         bool rtl);

/// Positions by the lookups of the rule of `context` that matches at `index`. All of them
/// deliberately work there, or where the one before has moved it, whatever glyph of the input they
/// are for.
bool positionInContext(const TTI_SubTable& context, LayoutCall& call, const TTI_LookupList& lookups,
                       const TTI_Lookup& lookup, std::vector<GlyphIDPosition>& positions,
                       int& index, bool rtl);

} // namespace KWFontService_NS
