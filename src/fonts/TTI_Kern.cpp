#include "fonts/TTI_Kern.h"

#include <array>
#include <string>
#include <utility>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kSubtableHeaderSize = 6;
constexpr std::size_t kFormat0HeaderSize = 8;
constexpr std::size_t kPairSize = 6;

// The format, without the bit that some tables set for a variation.
constexpr std::uint16_t kFormatMask = 0x7F00;
constexpr std::uint16_t kDirectionMask = 0x0003;
constexpr std::uint16_t kHorizontal = 0x0001;

UnicodeString subtableDetail(int index, const char* what) {
    return UnicodeString::fromUTF8("'kern' subtable " + std::to_string(index) + what);
}

/// Whether the pairs fit the subtable's length, in the 16 bits that the length has. More pairs than
/// 16 bits can tell are taken on trust, as are lengths that do not even hold the headers.
bool lengthAllows(std::uint16_t length, std::size_t pairBytes) {
    if (pairBytes > 0xFFFF)
        return true;
    return pairBytes <=
           static_cast<std::uint16_t>(length - (kSubtableHeaderSize + kFormat0HeaderSize));
}

} // namespace

bool TTI_Kern::read(SfntReader& reader) {
    if (kernPairCount >= 0)
        return true;
    kernPairCount = 0;
    const TTI_TableRecord* table = reader.table(sfntTag("kern"));
    if (table == nullptr)
        return true;

    std::uint64_t position = table->offset;
    std::array<std::uint8_t, kHeaderSize> header;
    if (!reader.read(position, header))
        return reader.fail(FS_ERROR_FONT_READ, "'kern' table read error");
    position += header.size();
    const int subtables = ByteView::loadU16(&header[2]);
    for (int i = 0; i < subtables; ++i) {
        std::array<std::uint8_t, kSubtableHeaderSize> subtable;
        if (!reader.read(position, subtable))
            return reader.fail(FS_ERROR_FONT_READ, subtableDetail(i, " read error"));
        position += subtable.size();
        kernCoverage = ByteView::loadU16(&subtable[4]);
        if ((kernCoverage & kFormatMask) == 0)
            return readPairs(reader, position, i, ByteView::loadU16(&subtable[2]));
        // A body of another format is not stepped over: the bytes right behind the header are the
        // next header, as documents measured with these fonts expect.
    }
    return true;
}

bool TTI_Kern::readPairs(SfntReader& reader, std::uint64_t position, int index,
                         std::uint16_t length) {
    std::array<std::uint8_t, kFormat0HeaderSize> header;
    if (!reader.read(position, header))
        return reader.fail(FS_ERROR_FONT_READ, subtableDetail(index, " format0 read error"));
    const std::uint16_t pairs = ByteView::loadU16(header.data());
    const std::size_t pairBytes = pairs * kPairSize;
    if (!lengthAllows(length, pairBytes))
        return reader.fail(FS_ERROR_FONT_FILE, subtableDetail(index, " invalid pairs size"));
    if (!reader.read(position + header.size(), pairBytes, kernPairs)) {
        kernPairs.clear();
        kernPairs.shrink_to_fit();
        return reader.fail(FS_ERROR_FONT_READ, subtableDetail(index, " pairs read error"));
    }
    kernPairCount = pairs;
    indexLeftGlyphs();
    return true;
}

bool TTI_Kern::hasPairs(bool vertical) const {
    return kernPairCount > 0 && (kernCoverage & kDirectionMask) == (vertical ? 0 : kHorizontal);
}

std::uint32_t TTI_Kern::pairKey(std::size_t index) const {
    return ByteView::loadU32(&kernPairs[index * kPairSize]);
}

void TTI_Kern::indexLeftGlyphs() {
    const auto count = static_cast<std::size_t>(kernPairCount);
    const auto leftOf = [this](std::size_t index) { return std::size_t{pairKey(index) >> 16}; };
    if (count == 0 || leftOf(count - 1) < leftOf(0))
        return;
    const std::size_t first = leftOf(0);
    const std::size_t lefts = leftOf(count - 1) - first + 1;
    // Not for a few pairs of glyphs far apart: the index is never larger than the pairs.
    if ((lefts + 1) * sizeof(std::uint16_t) > kernPairs.size())
        return;
    std::vector<std::uint16_t> starts;
    starts.reserve(lefts + 1);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t left = leftOf(i);
        if (left < first || left - first >= lefts || left - first + 1 < starts.size())
            return; // not sorted
        starts.resize(left - first + 1, static_cast<std::uint16_t>(i));
    }
    starts.push_back(static_cast<std::uint16_t>(count));
    firstLeft_ = static_cast<std::uint16_t>(first);
    firstPairOfLeft_ = std::move(starts);
}

std::optional<std::int16_t> TTI_Kern::find(unsigned short left, unsigned short right) const {
    int low = 0;
    int high = kernPairCount - 1;
    if (!firstPairOfLeft_.empty()) {
        const std::size_t at = std::size_t{left} - firstLeft_;
        if (left < firstLeft_ || at + 1 >= firstPairOfLeft_.size())
            return std::nullopt;
        low = firstPairOfLeft_[at];
        high = firstPairOfLeft_[at + 1] - 1;
    }
    const std::uint32_t key = (std::uint32_t{left} << 16) | right;
    while (low <= high) {
        const int middle = (low + high) / 2;
        const std::uint32_t found = pairKey(static_cast<std::size_t>(middle));
        if (found == key)
            return ByteView::loadI16(&kernPairs[static_cast<std::size_t>(middle) * kPairSize + 4]);
        if (found < key)
            low = middle + 1;
        else
            high = middle - 1;
    }
    return std::nullopt;
}

} // namespace KWFontService_NS
