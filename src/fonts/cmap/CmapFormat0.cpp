#include "fonts/cmap/CmapFormat0.h"

#include <algorithm>

namespace KWFontService_NS {

namespace {
constexpr std::size_t kHeaderSize = 6;
}

bool CmapFormat0::read(SfntReader& reader, std::uint64_t offset) {
    std::array<std::uint8_t, kHeaderSize + 256> table;
    if (!reader.read(offset, table))
        return reader.fail(FS_ERROR_FONT_READ, "'cmap' table format 0 read error");
    std::copy(table.begin() + kHeaderSize, table.end(), glyphs_.begin());
    return true;
}

unsigned int CmapFormat0::charCount() const {
    const auto empty = std::count(glyphs_.begin(), glyphs_.end(), std::uint8_t{0});
    return 1 + static_cast<unsigned int>(glyphs_.size()) - static_cast<unsigned int>(empty);
}

} // namespace KWFontService_NS
