#pragma once

#include "cff/CFFIndex.h"

#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// A `CFF ` table to go back into its OpenType file: glyph ids stay, and only CharStrings shrinks.
/// It ends behind the highest glyph that is listed; glyphs between that are not have the charstring
/// of the space, which is no more than `endchar` in a font without. Charset, strings, subrs and
/// FDSelect are those of the source.
class CFFInPlaceSubset {
public:
    explicit CFFInPlaceSubset(CFFStream& table) : table_(table) {}

    /// Finds out what is to be written.
    /// @param space  glyph of U+0020; one that the font does not have where it has none
    /// @return false for an empty list, for a glyph that the font does not have, on a short read,
    ///         when sections overlap, and for an offset of a Font DICT that its form does not hold
    bool plan(const std::vector<unsigned short>& glyphs, std::uint16_t space);

    /// The length of the new table.
    std::uint32_t size() const { return size_; }
    /// Appends it; false on a short read and when the output takes no more.
    bool write(KWMemStream& output);

private:
    /// An operand of the Top DICT that holds the offset of something behind that DICT.
    struct Offset {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::uint32_t value = 0;
    };
    /// The same of `Private` in a Font DICT.
    struct PrivateOffset {
        std::size_t fontDict = 0;
        std::size_t begin = 0;
        std::size_t end = 0;
        std::uint32_t value = 0;
    };

    bool readTopDict();
    bool readFDArray(std::uint32_t at);
    bool planCharStrings(const std::vector<unsigned short>& glyphs, std::uint16_t space);
    bool fillFontDicts();
    bool patchFontDicts();
    bool fillTopDict(bool rewrite);
    std::int64_t moved(std::int64_t offset) const;
    bool writeCharStrings(KWMemStream& output);
    bool writeFontDicts(KWMemStream& output);
    bool copyUpTo(std::uint64_t& from, std::uint64_t to, KWMemStream& output) const;

    CFFStream& table_;
    std::vector<std::uint8_t> sourceTopDict_;
    std::vector<std::uint8_t> topDict_; ///< as it is written
    std::uint8_t topOffSize_ = 1;
    std::uint64_t topDictsAt_ = 0;
    std::uint64_t topDictsEnd_ = 0;
    std::vector<Offset> offsets_;

    std::uint32_t charStringsAt_ = 0;
    CFFIndexHead charStrings_;
    std::vector<std::uint16_t> glyphs_; ///< ascending, from 0 on
    std::vector<std::uint8_t> filler_;
    std::vector<std::uint32_t> newOffsets_;

    std::uint32_t fontDictsAt_ = 0; ///< 0: none
    std::uint64_t fontDictsEnd_ = 0;
    CFFIndex fontDicts_;
    std::vector<PrivateOffset> privateOffsets_;
    std::vector<std::vector<std::uint8_t>> newFontDicts_;

    // How far what lies behind a section moves.
    std::int64_t behindTopDict_ = 0;
    std::int64_t behindFontDicts_ = 0;
    std::int64_t behindCharStrings_ = 0;
    std::uint32_t size_ = 0;
};

/// Plans and appends such a table.
bool subsetCFFInPlace(CFFStream& table, const std::vector<unsigned short>& glyphs,
                      std::uint16_t space, KWMemStream& output);

} // namespace KWFontService_NS
