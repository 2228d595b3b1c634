#include "fonts/cmap/CmapGroups.h"

#include <array>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr std::uint64_t kHeaderSize = 16;

UnicodeString formatDetail(int format, const char* what) {
    UnicodeString detail("'cmap' table format ");
    detail.append(UnicodeString(format == 12 ? "12" : "13")).append(UnicodeString(what));
    return detail;
}

} // namespace

bool CmapGroups::read(SfntReader& reader, std::uint64_t offset, int format) {
    std::array<std::uint8_t, kHeaderSize> header;
    if (!reader.read(offset, header))
        return reader.fail(FS_ERROR_FONT_READ, formatDetail(format, " read error"));
    const std::uint64_t length = ByteView::loadU32(&header[4]);
    const std::uint64_t nGroups = ByteView::loadU32(&header[12]);
    if (length < kHeaderSize + nGroups * kGroupSize)
        return reader.fail(FS_ERROR_FONT_FILE, formatDetail(format, " length error"));
    if (!reader.read(offset + kHeaderSize, static_cast<std::size_t>(nGroups) * kGroupSize, bytes_))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table group read error");
    count_ = static_cast<std::size_t>(nGroups);
    return true;
}

void CmapGroups::buildIndex() {
    const auto start = [this](std::size_t i) { return loadI32(&bytes_[kGroupSize * i]); };
    const auto end = [this](std::size_t i) { return loadI32(&bytes_[kGroupSize * i + 4]); };
    bool sorted = count_ != 0 && start(0) >= 0;
    for (std::size_t i = 0; i < count_ && sorted; ++i)
        sorted = start(i) <= end(i) && (i == 0 || end(i - 1) < start(i));
    if (sorted)
        index_.build(count_, [&end](std::size_t i) { return static_cast<std::uint32_t>(end(i)); });
}

unsigned int CmapGroups::charCount() const {
    unsigned int count = 0;
    for (std::size_t i = 0; i < count_; ++i) {
        const std::uint8_t* group = &bytes_[kGroupSize * i];
        count += ByteView::loadU32(group + 4) - ByteView::loadU32(group) + 1;
    }
    return count;
}

bool CmapGroups::isSymbolRange() const {
    return count_ != 0 && (ByteView::loadU16(&bytes_[2]) & 0xF000) == 0xF000;
}

} // namespace KWFontService_NS
