#pragma once

#include "cff/Type1CMap.h"

#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// Appends a `CFF ` table of the listed glyphs and glyph 0 that stands alone: glyphs, subrs, custom
/// strings and Font DICTs are packed and renumbered (Adobe Technical Note 5176).
///
/// Glyphs of a name-keyed font come in the order of the SIDs of their names, those of a CID-keyed
/// one in their own, with their old ids as CIDs. A font with StandardEncoding takes the parts of
/// accented glyphs along. `version` and Encoding are left out; of Font DICTs stay `FontName` and
/// `Private`. A font of charstring type 1 is copied whole.
/// @param table  where `font` was read from
/// @return false for an empty list, for a glyph that the font does not have, for FDSelect format 0,
///         on a short read, when the work passes what the table justifies, and when the output
///         takes no more
bool subsetCFFRenumbered(CFFStream& table, const Type1CMap& font,
                         const std::vector<unsigned short>& glyphs, KWMemStream& output);

} // namespace KWFontService_NS
