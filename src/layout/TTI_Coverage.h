#pragma once

#include "layout/GlyphDigest.h"
#include "layout/GlyphMemo.h"
#include "layout/LayoutArrays.h"

#include "common/ByteView.h"

#include <cstddef>
#include <optional>
#include <variant>

namespace KWFontService_NS {

/// A list of glyphs.
class TTI_CoverageFormat1 {
public:
    explicit TTI_CoverageFormat1(KWCommonNS::ByteView table)
        : glyphs_(table, 4, table.u16(2).value_or(0)) {}
    int coverageIndex(unsigned short gid) const {
        const std::size_t place = searchEntry(glyphs_.size(), [&](std::size_t i) {
            return compareToRange(gid, glyphs_[i], glyphs_[i]);
        });
        return place < glyphs_.size() ? static_cast<int>(place) : -1;
    }
    GlyphDigest digest() const;
    std::size_t entryCount() const { return glyphs_.size(); }
    std::size_t byteSize() const { return 4 + 2 * glyphs_.size(); }

private:
    U16List glyphs_;
};

/// A list of glyph ranges.
class TTI_CoverageFormat2 {
public:
    explicit TTI_CoverageFormat2(KWCommonNS::ByteView table)
        : ranges_(table, 4, table.u16(2).value_or(0)) {}
    int coverageIndex(unsigned short gid) const {
        const auto range = ranges_.find(gid);
        return range ? range->value + gid - range->start : -1;
    }
    GlyphDigest digest() const;
    std::size_t entryCount() const { return ranges_.size(); }
    std::size_t byteSize() const { return 4 + GlyphRangeList::kRecordSize * ranges_.size(); }

private:
    GlyphRangeList ranges_;
};

/// The glyphs that a subtable acts on (OpenType, Coverage Table), read in place: it is valid as
/// long as the bytes. It is a value, made where it is asked, so that a subtable with hundreds of
/// coverages keeps none and a search costs no virtual call.
class TTI_Coverage {
public:
    /// Nothing when the format is neither 1 nor 2. Of a table that is cut off, what it holds
    /// counts.
    static std::optional<TTI_Coverage> read(KWCommonNS::ByteView table) {
        switch (table.u16(0).value_or(0)) {
        case 1:
            return TTI_Coverage(TTI_CoverageFormat1(table));
        case 2:
            return TTI_Coverage(TTI_CoverageFormat2(table));
        default:
            return std::nullopt;
        }
    }

    /// Coverage index of a glyph, -1 when it is not covered.
    int coverageIndex(unsigned short gid) const {
        // No std::visit: the compiler would not look into it.
        const auto* list = std::get_if<TTI_CoverageFormat1>(&format_);
        return list != nullptr ? list->coverageIndex(gid)
                               : std::get_if<TTI_CoverageFormat2>(&format_)->coverageIndex(gid);
    }
    /// How many glyphs or ranges a search is among.
    std::size_t entryCount() const {
        const auto* list = std::get_if<TTI_CoverageFormat1>(&format_);
        return list != nullptr ? list->entryCount()
                               : std::get_if<TTI_CoverageFormat2>(&format_)->entryCount();
    }
    /// A superset of the covered glyphs, made anew at each call.
    GlyphDigest digest() const;
    /// How many bytes the table has.
    std::size_t byteSize() const;

private:
    using Format = std::variant<TTI_CoverageFormat1, TTI_CoverageFormat2>;
    explicit TTI_Coverage(const Format& format) : format_(format) {}

    Format format_;
};

/// Coverage index of a glyph in a table, -1 when it is not covered or the table is bad.
/// @param memo  remembers the answer; null searches anew
inline int coverageIndexIn(KWCommonNS::ByteView table, unsigned short gid,
                           GlyphMemo* memo = nullptr) {
    const auto coverage = TTI_Coverage::read(table);
    if (!coverage)
        return -1;
    if (memo == nullptr || coverage->entryCount() <= GlyphMemo::kNotWorthIt)
        return coverage->coverageIndex(gid);
    return memo->answer(GlyphMemo::Kind::Coverage, table.data(), gid,
                        [&] { return coverage->coverageIndex(gid); });
}

/// The coverages of a run of glyphs, one for each, which a table names by their offsets.
class TTI_CoverageList {
public:
    TTI_CoverageList() = default;
    /// @param base     what the offsets count from
    /// @param offsets  the offsets, in the order of the file
    TTI_CoverageList(KWCommonNS::ByteView base, U16List offsets) : base_(base), offsets_(offsets) {}

    std::size_t size() const { return offsets_.size(); }
    /// The bytes of a coverage, none when its offset is 0 or leads outside.
    /// @param i  below `size()`
    KWCommonNS::ByteView table(std::size_t i) const {
        const std::uint16_t offset = offsets_[i];
        return offset != 0 ? base_.from(offset) : KWCommonNS::ByteView();
    }
    /// False as well when the coverage is bad.
    /// @param i  below `size()`
    bool covers(std::size_t i, unsigned short gid, GlyphMemo* memo = nullptr) const {
        return coverageIndexIn(table(i), gid, memo) >= 0;
    }

private:
    KWCommonNS::ByteView base_;
    U16List offsets_;
};

} // namespace KWFontService_NS
