#include "cff/CFFIndex.h"

namespace KWFontService_NS {

namespace {

/// An offset of a width that the format does not have reads as 0.
std::uint32_t loadOffset(const std::uint8_t* bytes, std::uint8_t size) {
    switch (size) {
    case 1:
        return bytes[0];
    case 2:
        return ByteView::loadU16(bytes);
    case 3:
        return ByteView::loadU24(bytes);
    case 4:
        return ByteView::loadU32(bytes);
    default:
        return 0;
    }
}

} // namespace

std::optional<CFFIndexHead> CFFIndexHead::read(CFFStream& table, std::uint64_t at) {
    std::array<std::uint8_t, 3> start{};
    if (table.readUpTo(at, start) < 2)
        return std::nullopt;
    CFFIndexHead head;
    head.count_ = ByteView::loadU16(start.data());
    head.offSize_ = start[2];
    const std::size_t arraySize = (std::size_t{head.count_} + 1) * head.offSize_;
    head.dataStart_ = at + start.size() + arraySize;
    if (head.count_ == 0) {
        // An empty INDEX ends after its count, but it is stepped over like any other: three bytes,
        // one offset of the width that the third byte says, and the data. Where what follows has a
        // 0 there, the data ends a byte before it begins, and the steps come out right.
        std::array<std::uint8_t, 4> last{};
        if (head.offSize_ <= last.size())
            table.readUpTo(at + start.size(), std::span(last).first(head.offSize_));
        head.end_ = head.dataStart_ + loadOffset(last.data(), head.offSize_) - 1;
        return head;
    }
    if (head.offSize_ < 1 || head.offSize_ > 4 ||
        !table.read(at + start.size(), arraySize, head.offsets_))
        return std::nullopt;
    const std::uint32_t last = head.offset(head.count_);
    if (last < 1)
        return std::nullopt;
    head.end_ = head.dataStart_ + last - 1;
    return head;
}

std::uint32_t CFFIndexHead::offset(std::size_t index) const {
    return loadOffset(&offsets_[index * offSize_], offSize_);
}

std::optional<CFFIndexHead::Item> CFFIndexHead::item(std::size_t index) const {
    if (index >= count_)
        return std::nullopt;
    const std::uint32_t begin = offset(index);
    const std::uint32_t next = offset(index + 1);
    if (begin < 1 || next < begin || dataStart_ + next - 1 > end_)
        return std::nullopt;
    return Item{dataStart_ + begin - 1, next - begin};
}

std::optional<std::uint16_t> readIndexCount(CFFStream& table, std::uint32_t at) {
    std::array<std::uint8_t, 2> count;
    if (at == 0 || !table.read(at, count))
        return std::nullopt;
    return ByteView::loadU16(count.data());
}

std::optional<CFFIndex> CFFIndex::read(CFFStream& table, std::uint64_t at) {
    auto head = CFFIndexHead::read(table, at);
    if (!head)
        return std::nullopt;
    CFFIndex index;
    if (head->count() > 0 &&
        !table.read(head->dataStart(), static_cast<std::size_t>(head->end() - head->dataStart()),
                    index.data_))
        return std::nullopt;
    index.head_ = std::move(*head);
    return index;
}

ByteView CFFIndex::operator[](std::size_t index) const {
    const auto item = head_.item(index);
    if (!item)
        return {};
    return ByteView(data_.data(), data_.size())
        .sub(static_cast<std::size_t>(item->offset - head_.dataStart()), item->length);
}

std::string_view CFFIndex::text(std::size_t index) const {
    const ByteView bytes = (*this)[index];
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace KWFontService_NS
