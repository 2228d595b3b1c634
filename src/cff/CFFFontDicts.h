#pragma once

#include "cff/CFFIndex.h"

#include <KWCommon15/KWValue.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace KWFontService_NS {

/// The glyphs of one Font DICT (Adobe Technical Note 5176, FDSelect).
struct FDRange {
    std::uint16_t first;
    std::uint16_t last;
    std::uint8_t fontDict;

    friend bool operator==(const FDRange&, const FDRange&) = default;
};

/// The Font DICT of a glyph; `missing` where no range holds the glyph.
std::uint8_t getFDOfGlyph(const std::vector<FDRange>& ranges, std::uint16_t gid,
                          std::uint8_t missing);

/// One entry of FDArray with what it leads to. Entries that lead to the same bytes share them.
struct CFFFontDict {
    KWCommonNS::KWValue dict;                   ///< `FontName` and `Private` at most
    KWCommonNS::KWValue privateDict;            ///< null when the Font DICT names none
    std::shared_ptr<const CFFIndex> localSubrs; ///< never null
};

} // namespace KWFontService_NS
