#include "fonts/cmap/CmapFormat14.h"

#include <algorithm>
#include <array>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kHeaderSize = 10;
constexpr std::size_t kSelectorSize = 11;
constexpr std::size_t kRangeSize = 4;
constexpr std::size_t kMappingSize = 5;

/// The record that holds `value`, null when none does. Records begin with a 24-bit number.
/// @param span  how many numbers after its own a record holds, from its bytes
template <class Span>
const std::uint8_t* findRecord(const std::uint8_t* records, std::size_t count, std::size_t size,
                               std::uint32_t value, Span span) {
    std::size_t low = 0;
    std::size_t high = count;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const std::uint8_t* record = records + size * middle;
        const std::uint32_t first = ByteView::loadU24(record);
        if (value < first)
            high = middle;
        else if (value > first + span(record))
            low = middle + 1;
        else
            return record;
    }
    return nullptr;
}

constexpr auto kAlone = [](const std::uint8_t*) { return 0U; };

/// `findRecord` in a list that begins with its 32-bit count; of a list that is cut off, what it
/// holds counts.
template <class Span>
const std::uint8_t* findInList(ByteView list, std::size_t size, std::uint32_t value, Span span) {
    const ByteView records = list.from(4);
    const std::size_t count = std::min<std::size_t>(list.u32(0).value_or(0), records.size() / size);
    return findRecord(records.data(), count, size, value, span);
}

} // namespace

bool CmapFormat14::read(SfntReader& reader, std::uint64_t offset) {
    std::array<std::uint8_t, kHeaderSize> header;
    if (!reader.read(offset, header))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format 14 read error");
    const std::uint32_t length = ByteView::loadU32(&header[2]);
    if (length < kHeaderSize + 1)
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format 14 header error");
    if (!reader.read(offset + kHeaderSize, length - kHeaderSize, bytes_))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' variation selector read error");
    recordCount_ =
        std::min<std::size_t>(ByteView::loadU32(&header[6]), bytes_.size() / kSelectorSize);
    return true;
}

ByteView CmapFormat14::part(std::uint32_t offset) const {
    if (offset < kHeaderSize)
        return {};
    return ByteView(bytes_).from(offset - kHeaderSize);
}

CmapFormat14::Answer CmapFormat14::lookup(int ch, int selector) const {
    const auto wanted = static_cast<std::uint32_t>(selector);
    const std::uint8_t* record =
        findRecord(bytes_.data(), recordCount_, kSelectorSize, wanted, kAlone);
    if (!record)
        return {};
    const auto code = static_cast<std::uint32_t>(ch);
    // An offset of 0 has no part.
    const auto additionalCount = [](const std::uint8_t* range) { return std::uint32_t{range[3]}; };
    if (findInList(part(ByteView::loadU32(record + 3)), kRangeSize, code, additionalCount))
        return {Answer::Kind::Default, 0};
    if (const std::uint8_t* mapping =
            findInList(part(ByteView::loadU32(record + 7)), kMappingSize, code, kAlone))
        return {Answer::Kind::Glyph, ByteView::loadU16(mapping + 3)};
    return {};
}

} // namespace KWFontService_NS
