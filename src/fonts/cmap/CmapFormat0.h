#pragma once

#include "fonts/SfntReader.h"

#include <KWFontService17/FS_Types.h>

#include <array>
#include <cstdint>

namespace KWFontService_NS {

/// `cmap` format 0: one glyph for each byte.
class CmapFormat0 {
public:
    /// Reads the subtable at `offset` of the file. False after reporting what failed.
    bool read(SfntReader& reader, std::uint64_t offset);

    /// Glyph of a code; glyph 0 is always missing.
    unsigned short lookup(int code) const {
        if (code < 0 || code > 0xFF)
            return FS_NO_GLYPH;
        const std::uint8_t glyph = glyphs_[static_cast<std::size_t>(code)];
        return glyph == 0 ? FS_NO_GLYPH : glyph;
    }
    /// One more than the codes with a glyph.
    unsigned int charCount() const;

private:
    std::array<std::uint8_t, 256> glyphs_{};
};

} // namespace KWFontService_NS
