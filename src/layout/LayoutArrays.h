#pragma once

#include "common/ByteView.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>

namespace KWFontService_NS {

/// How many of `count` records of `recordSize` bytes, from `offset` on, the view holds whole.
inline std::size_t heldRecords(KWCommonNS::ByteView view, std::size_t offset, std::size_t count,
                               std::size_t recordSize) {
    return std::min(count, view.from(offset).size() / recordSize);
}

/// The object whose 16-bit offset from the start of `base` stands at `field`; an empty view when
/// there is none, since the offset is 0 or leads outside.
inline KWCommonNS::ByteView offsetTo(KWCommonNS::ByteView base, std::size_t field) {
    const std::uint16_t offset = base.u16(field).value_or(0);
    return offset != 0 ? base.from(offset) : KWCommonNS::ByteView();
}

/// 16-bit numbers of a table, read in place.
class U16List {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = std::uint16_t;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = std::uint16_t;

        Iterator() = default;
        explicit Iterator(const std::uint8_t* at) : at_(at) {}
        std::uint16_t operator*() const { return KWCommonNS::ByteView::loadU16(at_); }
        Iterator& operator++() {
            at_ += 2;
            return *this;
        }
        Iterator operator++(int) {
            const Iterator old = *this;
            at_ += 2;
            return old;
        }
        bool operator==(const Iterator&) const = default;

    private:
        const std::uint8_t* at_ = nullptr;
    };

    U16List() = default;
    /// The `count` numbers from `offset` on, or as many as the view holds.
    U16List(KWCommonNS::ByteView view, std::size_t offset, std::size_t count)
        : data_(view.from(offset).data()),
          size_(static_cast<std::uint32_t>(heldRecords(view, offset, count, 2))) {}
    /// Of numbers that are known to be there.
    U16List(const std::uint8_t* data, std::size_t count)
        : data_(data), size_(static_cast<std::uint32_t>(count)) {}

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    /// @param i  below `size()`
    std::uint16_t operator[](std::size_t i) const {
        return KWCommonNS::ByteView::loadU16(data_ + 2 * i);
    }
    Iterator begin() const { return Iterator(data_); }
    Iterator end() const { return Iterator(data_ + std::size_t{2} * size_); }

private:
    const std::uint8_t* data_ = nullptr;
    std::uint32_t size_ = 0;
};

/// A range of glyphs, both ends included, with a number of its own.
struct GlyphRange {
    std::uint16_t start;
    std::uint16_t end;
    std::uint16_t value;
};

/// Index of the entry that a search ends at, `size` when there is none. Of entries out of order it
/// finds what this halving comes by: the middle of a half-open range, rounded down.
/// @param compare  tells of an index below `size` where what is wanted lies: below 0 before its
///                 entry, 0 in it, above 0 behind it
template <class Compare>
std::size_t searchEntry(std::size_t size, Compare compare) {
    std::size_t low = 0;
    std::size_t high = size;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const int order = compare(middle);
        if (order == 0)
            return middle;
        if (order < 0)
            high = middle;
        else
            low = middle + 1;
    }
    return size;
}

/// Whether a glyph lies before a range (< 0), in it (0) or behind it (> 0).
inline int compareToRange(unsigned short gid, std::uint16_t start, std::uint16_t end) {
    return gid < start ? -1 : gid > end ? 1 : 0;
}

/// Ranges of a table, read in place.
class GlyphRangeList {
public:
    static constexpr std::size_t kRecordSize = 6;

    GlyphRangeList() = default;
    /// The `count` ranges from `offset` on, or as many as the view holds.
    GlyphRangeList(KWCommonNS::ByteView view, std::size_t offset, std::size_t count)
        : data_(view.from(offset).data()),
          size_(static_cast<std::uint32_t>(heldRecords(view, offset, count, kRecordSize))) {}

    std::size_t size() const { return size_; }
    /// @param i  below `size()`
    GlyphRange operator[](std::size_t i) const {
        const std::uint8_t* p = data_ + kRecordSize * i;
        return {KWCommonNS::ByteView::loadU16(p), KWCommonNS::ByteView::loadU16(p + 2),
                KWCommonNS::ByteView::loadU16(p + 4)};
    }
    /// The range that a glyph is in.
    std::optional<GlyphRange> find(unsigned short gid) const {
        const std::size_t place = searchEntry(size_, [&](std::size_t i) {
            const GlyphRange range = (*this)[i];
            return compareToRange(gid, range.start, range.end);
        });
        return place < size_ ? std::optional((*this)[place]) : std::nullopt;
    }

private:
    const std::uint8_t* data_ = nullptr;
    std::uint32_t size_ = 0;
};

} // namespace KWFontService_NS
