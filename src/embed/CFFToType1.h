#pragma once

#include "cff/Type1CMap.h"

#include <KWCommon15/KWMemStream.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// Glyphs of a `CFF ` table as Type 1 charstrings, one after the other, not enciphered.
struct Type1Glyphs {
    struct Glyph {
        std::size_t end; ///< of its charstring in `glyphData`
        std::uint8_t fontDict;
    };

    std::vector<Glyph> glyphs;
    std::vector<std::size_t> subrEnds; ///< in `subrData`
    std::vector<KWValue> privates;     ///< of each Font DICT, of a name-keyed font the one
    KWMemStream glyphData{nullptr, kCapacity};
    KWMemStream subrData{nullptr, kCapacity};

    static constexpr std::size_t kCapacity = 8192;
};

/// Translates glyph 0 and the listed glyphs in the order of the list; a 0 in it and an id that
/// repeats the one before it are passed over. All glyphs share one pool of Subrs, which begins with
/// the four that every Type 1 font has.
/// @param table  where `font` was read from
/// @param out    empty
/// @return false for a glyph that the font does not have or that Type 1 has no form for, for an
///         FDSelect of format 0, for charstrings that are of type 1 already, on a short read, when
///         the work passes what the table justifies, and when memory runs out
bool convertToType1(CFFStream& table, const Type1CMap& font,
                    const std::vector<unsigned short>& glyphs, Type1Glyphs& out);

} // namespace KWFontService_NS
