#pragma once

#include <KWCommon15/KWMemStream.h>

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <span>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// The font file that a writer copies from, for one call of the writer.
///
/// Bytes are asked for by absolute offset. A request that leaves the file fails before anything is
/// allocated, and so does one that takes the call past `kMaxEmbedReadFactor` times the file.
class EmbedSource {
public:
    explicit EmbedSource(std::istream& stream);

    /// The length of the file.
    std::uint64_t size() const { return size_; }
    /// True when all these bytes exist.
    bool contains(std::uint64_t offset, std::uint64_t count) const {
        return offset <= size_ && count <= size_ - offset;
    }
    /// Takes `count` bytes off what this call may still read; false when that is less.
    bool charge(std::uint64_t count);
    /// Fills `out`, whose size has been charged.
    bool read(std::uint64_t offset, std::span<std::uint8_t> out);
    /// Appends bytes of the file to `output`.
    bool copy(std::uint64_t offset, std::uint32_t count, KWMemStream& output);

private:
    bool seek(std::uint64_t offset);

    std::istream& stream_;
    std::uint64_t size_ = 0;
    std::uint64_t budget_ = 0;
};

} // namespace KWFontService_NS
