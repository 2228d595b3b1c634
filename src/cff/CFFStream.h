#pragma once

#include <KWCommon15/KWMemStream.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <vector>

namespace KWFontService_NS {

/// A `CFF ` table inside the stream of its font. Offsets count from the start of the table, and
/// what lies beyond its end cannot be read. The stream is the caller's.
class CFFStream {
public:
    CFFStream(std::istream& stream, std::uint64_t tableOffset, std::uint32_t tableLength)
        : stream_(stream), tableOffset_(tableOffset), size_(tableLength) {}

    /// The length of the table, as the font's directory has it.
    std::uint32_t size() const { return size_; }

    /// Fills `out`; false on a short read. Clears a failed stream state first.
    bool read(std::uint64_t offset, std::span<std::uint8_t> out) {
        return readUpTo(offset, out) == out.size();
    }
    /// As `read`, answering how many bytes the table had.
    std::size_t readUpTo(std::uint64_t offset, std::span<std::uint8_t> out);
    /// Makes `out` the `length` bytes from `offset` on; false on a short read. A length that lies
    /// costs little memory.
    bool read(std::uint64_t offset, std::size_t length, std::vector<std::uint8_t>& out);
    /// Appends the `length` bytes from `offset` on to `output`; false on a short read and when the
    /// output takes no more.
    bool copy(std::uint64_t offset, std::uint64_t length, KWCommonNS::KWMemStream& output);

private:
    std::istream& stream_;
    std::uint64_t tableOffset_;
    std::uint32_t size_;
};

/// Reads a table forward, number by number.
class CFFCursor {
public:
    CFFCursor(CFFStream& table, std::uint64_t offset) : table_(table), next_(offset) {}

    /// Nothing at the end of the table.
    std::optional<std::uint8_t> u8();
    std::optional<std::uint16_t> u16();

private:
    CFFStream& table_;
    std::uint64_t next_; ///< where the piece after this one starts
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    std::array<std::uint8_t, 512> piece_;
};

} // namespace KWFontService_NS
