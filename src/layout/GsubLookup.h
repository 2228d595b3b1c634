#pragma once

#include "layout/LayoutArrays.h"

#include <optional>
#include <vector>

namespace KWFontService_NS {

class GlyphIDArray;
class LayoutCall;
struct TTI_Lookup;

// What a GSUB lookup answers at one glyph, by the first of its subtables that has an answer.

/// The glyph that replaces one glyph, 0xFFFF when none does.
unsigned short findSingle(LayoutCall& call, const TTI_Lookup& lookup, unsigned short gid);
/// One of the glyphs that may replace a glyph, 0xFFFF when there is none.
/// @param alternate  which, counted from 1
unsigned short findAlternate(LayoutCall& call, const TTI_Lookup& lookup, unsigned short gid,
                             int alternate);
/// The glyphs that replace one glyph, which may be none at all; nothing when it is not covered.
std::optional<U16List> findSequence(LayoutCall& call, const TTI_Lookup& lookup, unsigned short gid);
/// The ligature that starts at `position`, 0xFFFF when there is none.
/// @param position  below the length of the run; set behind the last component
/// @param skipped   set to the indices of the glyphs passed over, ascending. It may change without
///                  a ligature as well
unsigned short findLigature(LayoutCall& call, const TTI_Lookup& lookup, const GlyphIDArray& run,
                            int& position, std::vector<int>& skipped);
/// The glyph that replaces the one at `index` in its context, 0xFFFF when none does.
unsigned short findReverse(LayoutCall& call, const TTI_Lookup& lookup, const GlyphIDArray& run,
                           int index);

} // namespace KWFontService_NS
