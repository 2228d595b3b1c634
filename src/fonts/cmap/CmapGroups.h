#pragma once

#include "fonts/SfntReader.h"
#include "fonts/cmap/CmapIndex.h"

#include "common/ByteView.h"

#include <KWFontService17/FS_Types.h>

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// The groups of `cmap` formats 12 and 13, searched in the bytes of the file.
class CmapGroups {
public:
    /// Makes lookups faster, of a table whose groups are in order.
    void buildIndex();
    /// The codes of all groups; sums wrap.
    unsigned int charCount() const;
    /// True when the first group starts in a block Fxxx.
    bool isSymbolRange() const;

protected:
    /// Reads the subtable at `offset` of the file. False after reporting what failed.
    /// @param format  12 or 13, for the messages
    bool read(SfntReader& reader, std::uint64_t offset, int format);

    /// The bytes of the group that holds a code, null when none does.
    const std::uint8_t* findGroup(std::int32_t code) const {
        std::size_t low = 0;
        std::size_t high = count_;
        if (!index_.empty()) {
            if (code < 0)
                return nullptr;
            const CmapIndex::Candidates candidates =
                index_.candidates(static_cast<std::uint32_t>(code));
            low = candidates.low;
            // The candidates end with a range that may hold the code.
            high = candidates.high < count_ ? candidates.high + 1 : count_;
        }
        while (low < high) {
            const std::size_t middle = (low + high) / 2;
            const std::uint8_t* group = bytes_.data() + kGroupSize * middle;
            if (code < loadI32(group))
                high = middle;
            else if (code > loadI32(group + 4))
                low = middle + 1;
            else
                return group;
        }
        return nullptr;
    }

private:
    static constexpr std::size_t kGroupSize = 12;

    static std::int32_t loadI32(const std::uint8_t* p) {
        return static_cast<std::int32_t>(KWCommonNS::ByteView::loadU32(p));
    }

    std::vector<std::uint8_t> bytes_;
    std::size_t count_ = 0;
    CmapIndex index_;
};

/// `cmap` format 12: the glyphs of a group count up with its codes.
class CmapFormat12 final : public CmapGroups {
public:
    bool read(SfntReader& reader, std::uint64_t offset) {
        return CmapGroups::read(reader, offset, 12);
    }
    /// Glyph of a code, 0xFFFF when missing.
    unsigned short lookup(int code, bool allowGlyphZero) const {
        const std::uint8_t* group = findGroup(code);
        if (!group)
            return FS_NO_GLYPH;
        const auto glyph = static_cast<unsigned short>(static_cast<unsigned int>(code) +
                                                       KWCommonNS::ByteView::loadU16(group + 10) -
                                                       KWCommonNS::ByteView::loadU16(group + 2));
        return glyph == 0 && !allowGlyphZero ? FS_NO_GLYPH : glyph;
    }
};

/// `cmap` format 13: one glyph for all codes of a group.
class CmapFormat13 final : public CmapGroups {
public:
    bool read(SfntReader& reader, std::uint64_t offset) {
        return CmapGroups::read(reader, offset, 13);
    }
    /// Glyph of a code, 0xFFFF when missing.
    unsigned short lookup(int code, bool allowGlyphZero) const {
        const std::uint8_t* group = findGroup(code);
        if (!group)
            return FS_NO_GLYPH;
        const unsigned short glyph = KWCommonNS::ByteView::loadU16(group + 10);
        return glyph == 0 && !allowGlyphZero ? FS_NO_GLYPH : glyph;
    }
};

} // namespace KWFontService_NS
