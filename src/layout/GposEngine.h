#pragma once

#include <vector>

namespace KWFontService_NS {

class GlyphIDPosition;
class LayoutCall;
class TTI_LookupList;
struct TTI_Lookup;

/// Tries the subtables of a positioning lookup in order at one position, until one applies.
/// @param lookups  where contexts find the lookups that they name
/// @param index    below 0 or past the end nothing applies; moved when further glyphs are taken
bool positionAt(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                std::vector<GlyphIDPosition>& positions, int& index, bool rtl);

} // namespace KWFontService_NS
