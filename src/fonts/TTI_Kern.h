#pragma once

#include "fonts/SfntReader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace KWFontService_NS {

/// The pair kerning of a face (OpenType `kern`): the pairs of its first format 0 subtable, kept as
/// the bytes of the file.
class TTI_Kern {
public:
    /// Reads the table once; a missing table is no failure. False after reporting what failed.
    bool read(SfntReader& reader);

    /// True when there are pairs for lines of that direction, kerning and not minimum values.
    bool hasPairs(bool vertical) const;
    /// Kerning of a pair in font units, whatever its direction; nothing when the pair is not
    /// listed.
    std::optional<std::int16_t> find(unsigned short left, unsigned short right) const;

    std::uint16_t kernCoverage = 0; ///< of the last subtable looked at
    int kernPairCount = -1; ///< -1 until the table was looked at, 0 when there is none to use
    std::vector<std::uint8_t> kernPairs; ///< 6 bytes a pair: left, right, value

private:
    bool readPairs(SfntReader& reader, std::uint64_t position, int index, std::uint16_t length);
    void indexLeftGlyphs();
    std::uint32_t pairKey(std::size_t index) const;

    /// Of each left glyph from `firstLeft_` on the index of its first pair, and the number of pairs
    /// at the end; empty when the pairs are not sorted or too few.
    std::vector<std::uint16_t> firstPairOfLeft_;
    std::uint16_t firstLeft_ = 0;
};

} // namespace KWFontService_NS
