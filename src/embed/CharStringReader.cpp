#include "embed/CharStringReader.h"

namespace KWFontService_NS {

std::optional<std::size_t> CharStringReader::sizeOf(std::span<const std::uint16_t> glyphs) const {
    std::uint64_t size = 0;
    for (const std::uint16_t gid : glyphs) {
        const auto item = head_.item(gid);
        if (!item)
            return std::nullopt;
        size += item->length;
    }
    if (size > table_.size())
        return std::nullopt;
    return static_cast<std::size_t>(size);
}

std::size_t CharStringReader::readPiece(std::span<const std::uint16_t> glyphs) {
    // Reading over a gap of this size costs less than another read.
    constexpr std::uint64_t kWorthwhileGap = 2048;
    start_ = head_.item(glyphs.front())->offset;
    std::uint64_t end = start_;
    std::size_t count = 0;
    for (const std::uint16_t gid : glyphs) {
        const auto item = head_.item(gid);
        const std::uint64_t next = item->offset + item->length;
        if (item->offset < end || item->offset - end > kWorthwhileGap ||
            (count > 0 && next - start_ > pieceSize()))
            break;
        end = next;
        ++count;
    }
    if (!table_.read(start_, static_cast<std::size_t>(end - start_), buffer_))
        return 0;
    return count;
}

void CharStringReader::add(std::uint16_t gid, ByteView charString) {
    keptPlaces_[gid] = static_cast<std::uint32_t>(kept_.size()) + 1;
    kept_.insert(kept_.end(), charString.data(), charString.data() + charString.size());
}

} // namespace KWFontService_NS
