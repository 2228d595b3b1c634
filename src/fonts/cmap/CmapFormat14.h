#pragma once

#include "fonts/SfntReader.h"

#include "common/ByteView.h"

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// `cmap` format 14: variation sequences, searched in the bytes of the file.
class CmapFormat14 {
public:
    struct Answer {
        enum class Kind {
            NotListed,
            Default, ///< the glyph of the character alone
            Glyph,   ///< a glyph of its own
        };
        Kind kind = Kind::NotListed;
        unsigned short glyph = 0;
    };

    /// Reads the subtable at `offset` of the file. False after reporting what failed.
    bool read(SfntReader& reader, std::uint64_t offset);

    Answer lookup(int ch, int selector) const;

private:
    /// What stands at an offset from the start of the subtable.
    KWCommonNS::ByteView part(std::uint32_t offset) const;

    std::vector<std::uint8_t> bytes_; // from the selector records on
    std::size_t recordCount_ = 0;
};

} // namespace KWFontService_NS
