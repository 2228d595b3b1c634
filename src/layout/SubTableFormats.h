#pragma once

#include "layout/TTI_SubTable.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>

namespace KWFontService_NS {

class LayoutBudget;

/// A class of subtables: a lookup type in one of its formats.
struct SubTableFormat {
    std::uint16_t lookupType;
    std::uint16_t format;
    std::size_t size;
    /// Makes a subtable at a place of `size` bytes; null when its bytes are bad.
    TTI_SubTablePtr (*make)(void* place, KWCommonNS::ByteView table, LayoutBudget& budget);
};

/// What a subtable is to be made of.
struct SubTableSource {
    /// Null when the type or the format is unknown.
    const SubTableFormat* format = nullptr;
    KWCommonNS::ByteView table;
};

/// Finds the class of a GSUB subtable, inside extensions too.
/// @param type        the lookup's type in the file
/// @param lookupType  set to the last type that is read from an extension, and left else
SubTableSource findGsubSubTable(KWCommonNS::ByteView table, std::uint16_t type,
                                std::uint16_t& lookupType);
/// The same for GPOS, where the type in the file stays that of the lookup.
SubTableSource findGposSubTable(KWCommonNS::ByteView table, std::uint16_t type);

} // namespace KWFontService_NS
