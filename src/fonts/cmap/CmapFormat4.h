#pragma once

#include "fonts/SfntReader.h"
#include "fonts/cmap/CmapIndex.h"

#include "common/ByteView.h"

#include <KWFontService17/FS_Types.h>

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// `cmap` format 4: segments of 16-bit codes, searched in the bytes of the file.
class CmapFormat4 {
public:
    /// Reads the subtable at `offset` of the file. False after reporting what failed.
    bool read(SfntReader& reader, std::uint64_t offset);
    /// Makes lookups faster, of a table whose segments are in order.
    void buildIndex();

    /// Glyph of a code, 0xFFFF when missing.
    unsigned short lookup(int code, bool allowGlyphZero) const {
        using KWCommonNS::ByteView;
        if (code < 0 || code > 0xFFFF)
            return FS_NO_GLYPH;
        const std::size_t segment = findSegment(static_cast<std::uint32_t>(code));
        if (segment >= heldSegments_)
            return FS_NO_GLYPH;
        const std::uint8_t* fields = bytes_.data() + 2 * segment;
        const int startCode = ByteView::loadU16(fields + startCodes_);
        if (code < startCode)
            return FS_NO_GLYPH;
        unsigned int glyph = static_cast<unsigned int>(code);
        if (const unsigned int rangeOffset = ByteView::loadU16(fields + idRangeOffsets_)) {
            // The offset counts from its own field, and may point anywhere behind it.
            const std::size_t place = idRangeOffsets_ + 2 * segment + rangeOffset +
                                      2 * static_cast<std::size_t>(code - startCode);
            if (place + 2 > bytes_.size())
                return FS_NO_GLYPH;
            glyph = ByteView::loadU16(bytes_.data() + place);
        }
        glyph = (glyph + ByteView::loadU16(fields + idDeltas_)) & 0xFFFF;
        return glyph == 0 && !allowGlyphZero ? FS_NO_GLYPH : static_cast<unsigned short>(glyph);
    }

    /// The codes of all segments before the closing one; sums wrap.
    unsigned int charCount() const;
    /// True when the first segment starts in a block Fxxx.
    bool isSymbolRange() const;

private:
    std::uint16_t endCode(std::size_t segment) const {
        return KWCommonNS::ByteView::loadU16(bytes_.data() + 2 * segment);
    }
    std::uint16_t startCode(std::size_t segment) const {
        return KWCommonNS::ByteView::loadU16(bytes_.data() + startCodes_ + 2 * segment);
    }
    /// The first segment that does not end before a code; the number of segments when all do.
    std::size_t findSegment(std::uint32_t code) const {
        std::size_t low = 0;
        std::size_t high = heldSegments_;
        if (!index_.empty()) {
            const CmapIndex::Candidates candidates = index_.candidates(code);
            low = candidates.low;
            high = candidates.high;
        }
        while (low < high) {
            const std::size_t middle = (low + high) / 2;
            if (code > endCode(middle))
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    }

    std::vector<std::uint8_t> bytes_; // from `endCode` on
    std::size_t heldSegments_ = 0;    // those of which every field is held
    std::size_t startCodes_ = 0;
    std::size_t idDeltas_ = 0;
    std::size_t idRangeOffsets_ = 0;
    CmapIndex index_;
};

} // namespace KWFontService_NS
