#pragma once

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>

namespace KWFontService_NS {

/// Where the glyphs of a `glyf` table lie, as its `loca` says (OpenType `loca`).
class GlyphLocator {
public:
    /// @param loca             the whole table, which must outlive this object
    /// @param indexToLocFormat of `head`: 1 long entries, any other value short ones
    /// @param glyfLength       of the table's directory record
    /// @param numGlyphs        of `maxp`, 0 where it does not say
    GlyphLocator(KWCommonNS::ByteView loca, std::int16_t indexToLocFormat, std::uint32_t glyfLength,
                 std::uint16_t numGlyphs)
        : loca_(loca), glyfLength_(glyfLength), numGlyphs_(numGlyphs),
          isLong_(indexToLocFormat == 1) {}

    bool isLong() const { return isLong_; }
    std::size_t entrySize() const { return isLong_ ? 4 : 2; }
    std::size_t entryCount() const { return loca_.size() / entrySize(); }
    std::size_t locaSize() const { return loca_.size(); }

    /// Start of a glyph in `glyf`; past the last entry the length of `glyf`.
    std::uint32_t offset(std::size_t gid) const;
    /// Bytes of a glyph; 0 for one without outline, for an entry that is below the one before, and
    /// for the entry behind the last glyph, which only ends it.
    std::uint32_t length(std::size_t gid) const;

private:
    KWCommonNS::ByteView loca_;
    std::uint32_t glyfLength_;
    std::uint16_t numGlyphs_;
    bool isLong_;
};

} // namespace KWFontService_NS
