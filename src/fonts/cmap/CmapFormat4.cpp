#include "fonts/cmap/CmapFormat4.h"

#include <algorithm>
#include <array>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {
constexpr std::size_t kHeaderSize = 14;
constexpr std::uint16_t kLastCode = 0xFFFF;
} // namespace

bool CmapFormat4::read(SfntReader& reader, std::uint64_t offset) {
    std::array<std::uint8_t, kHeaderSize> header;
    if (!reader.read(offset, header))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format 4 read error");
    const std::size_t length = ByteView::loadU16(&header[2]);
    const std::size_t segCount = ByteView::loadU16(&header[6]) / 2U;
    if (length < segCount * 8 + 2 || length % 2 != 0)
        return reader.fail(FS_ERROR_FONT_FILE, "'cmap' table format length error");
    // `length` counts the header too: what is read beyond the table may be missing.
    reader.readUpTo(offset + kHeaderSize, length, bytes_);
    if (bytes_.size() + kHeaderSize < length)
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table segment read error");

    startCodes_ = 2 * segCount + 2; // a padding word follows the end codes
    idDeltas_ = startCodes_ + 2 * segCount;
    idRangeOffsets_ = idDeltas_ + 2 * segCount;
    if (bytes_.size() > idRangeOffsets_)
        heldSegments_ = std::min(segCount, (bytes_.size() - idRangeOffsets_) / 2);
    return true;
}

void CmapFormat4::buildIndex() {
    bool sorted = true;
    for (std::size_t i = 1; i < heldSegments_; ++i)
        sorted = sorted && endCode(i - 1) <= endCode(i);
    if (sorted)
        index_.build(heldSegments_, [this](std::size_t i) { return endCode(i); });
}

unsigned int CmapFormat4::charCount() const {
    unsigned int count = 0;
    for (std::size_t i = 0; i < heldSegments_ && endCode(i) != kLastCode; ++i)
        count += 1U + endCode(i) - startCode(i);
    return count;
}

bool CmapFormat4::isSymbolRange() const {
    return heldSegments_ != 0 && (startCode(0) & 0xF000) == 0xF000;
}

} // namespace KWFontService_NS
