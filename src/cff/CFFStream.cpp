#include "cff/CFFStream.h"

#include "common/StreamBytes.h"

namespace KWFontService_NS {

std::size_t CFFStream::readUpTo(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (offset >= size_)
        return 0;
    const auto present =
        static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), size_ - offset));
    return KWCommonNS::readStreamAt(stream_, tableOffset_ + offset, out.first(present));
}

bool CFFStream::read(std::uint64_t offset, std::size_t length, std::vector<std::uint8_t>& out) {
    out.clear();
    if (offset > size_ || length > size_ - offset)
        return false;
    return KWCommonNS::readStreamAt(stream_, tableOffset_ + offset, length, out) == length;
}

bool CFFStream::copy(std::uint64_t offset, std::uint64_t length, KWCommonNS::KWMemStream& output) {
    constexpr std::uint64_t kPieceSize = std::uint64_t{64} << 10;
    if (offset > size_ || length > size_ - offset)
        return false;
    std::vector<std::uint8_t> piece(static_cast<std::size_t>(std::min(length, kPieceSize)));
    while (length > 0) {
        const auto now = std::span(piece).first(
            static_cast<std::size_t>(std::min<std::uint64_t>(length, piece.size())));
        if (!read(offset, now) || !output.append(now.data(), now.size()))
            return false;
        offset += now.size();
        length -= now.size();
    }
    return true;
}

std::optional<std::uint8_t> CFFCursor::u8() {
    if (at_ == end_) {
        end_ = table_.readUpTo(next_, piece_);
        next_ += end_;
        at_ = 0;
        if (end_ == 0)
            return std::nullopt;
    }
    return piece_[at_++];
}

std::optional<std::uint16_t> CFFCursor::u16() {
    const auto high = u8();
    const auto low = high ? u8() : std::nullopt;
    if (!low)
        return std::nullopt;
    return static_cast<std::uint16_t>((unsigned{*high} << 8) | *low);
}

} // namespace KWFontService_NS
