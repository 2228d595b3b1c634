#pragma once

#include "fonts/SfntReader.h"

#include <array>
#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// `cmap` format 2: one- and two-byte codes of the East Asian encodings, by their high byte.
class CmapFormat2 {
public:
    /// Reads the subtable at `offset` of the file. False after reporting what failed.
    bool read(SfntReader& reader, std::uint64_t offset);

    /// Glyph of a code; glyph 0 is always missing. A one-byte code has high byte 0.
    unsigned short lookup(int code) const;
    /// The codes that the sub-headers cover.
    unsigned int charCount() const;

private:
    struct SubHeader {
        std::uint16_t firstCode = 0;
        std::uint16_t entryCount = 0; // 0 also for a high byte without sub-header
        std::uint16_t idDelta = 0;
        /// Place in `glyphIndexArray` of the glyph of `firstCode`, plus one; 0 without glyphs.
        std::int32_t glyphArrayIndex = 0;
    };

    std::array<SubHeader, 256> subHeaders_{};
    std::vector<std::uint16_t> glyphIndexArray_;
};

} // namespace KWFontService_NS
