#include "embed/EmbedSource.h"

#include "common/KWLimits.h"

#include <limits>

namespace KWFontService_NS {

EmbedSource::EmbedSource(std::istream& stream) : stream_(stream) {
    stream_.clear();
    stream_.seekg(0, std::ios::end);
    const std::streamoff end = stream_.tellg();
    if (end > 0)
        size_ = static_cast<std::uint64_t>(end);
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    budget_ = size_ <= kMost / KWCommonNS::kMaxEmbedReadFactor
                  ? size_ * KWCommonNS::kMaxEmbedReadFactor
                  : kMost;
}

bool EmbedSource::charge(std::uint64_t count) {
    if (count > budget_)
        return false;
    budget_ -= count;
    return true;
}

bool EmbedSource::seek(std::uint64_t offset) {
    stream_.clear();
    return static_cast<bool>(stream_.seekg(static_cast<std::streamoff>(offset), std::ios::beg));
}

bool EmbedSource::read(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (!contains(offset, out.size()) || !seek(offset))
        return false;
    stream_.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(out.size()));
    return static_cast<std::size_t>(stream_.gcount()) == out.size();
}

bool EmbedSource::copy(std::uint64_t offset, std::uint32_t count, KWMemStream& output) {
    if (count == 0)
        return true;
    return contains(offset, count) && charge(count) && seek(offset) &&
           output.copyStream(stream_, count) == static_cast<std::streamsize>(count);
}

} // namespace KWFontService_NS
