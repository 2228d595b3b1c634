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
    Iterator end() const { return Iterator(data_ + 2 * size_); }

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

/// The first of `size` ascending numbers that is not below `gid`, the last one when all are; only
/// where `size` is not 0. A search takes the same steps wherever it ends, so that the processor has
/// no branch to guess wrong.
/// @param numberAt  answers the number of an index below `size`
template <class NumberAt>
std::size_t lowerBound(std::size_t size, unsigned short gid, NumberAt numberAt) {
    std::size_t first = 0;
    while (size > 1) {
        const std::size_t half = size / 2;
        first += half * static_cast<std::size_t>(numberAt(first + half - 1) < gid);
        size -= half;
    }
    return first;
}

/// The range that a glyph is in, as a binary search comes to it.
/// @param rangeAt  answers the range of an index below `size`
template <class RangeAt>
std::optional<GlyphRange> findRange(std::size_t size, unsigned short gid, RangeAt rangeAt) {
    if (size == 0)
        return std::nullopt;
    const GlyphRange range =
        rangeAt(lowerBound(size, gid, [&](std::size_t i) { return rangeAt(i).end; }));
    if (gid < range.start || gid > range.end)
        return std::nullopt;
    return range;
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
    std::optional<GlyphRange> find(unsigned short gid) const {
        return findRange(size_, gid, [this](std::size_t i) { return (*this)[i]; });
    }

private:
    const std::uint8_t* data_ = nullptr;
    std::uint32_t size_ = 0;
};

} // namespace KWFontService_NS
