#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace KWCommonNS {

/// A checked, read-only, big-endian view of bytes that somebody else owns.
///
/// Every read states its offset from the start of this view; a read that does not fit is a miss and
/// never touches memory. A sub-view keeps its own start, so an offset cannot be added to the wrong
/// base.
class ByteView {
public:
    constexpr ByteView() = default;
    constexpr ByteView(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}
    constexpr explicit ByteView(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    constexpr std::size_t size() const { return bytes_.size(); }
    constexpr bool empty() const { return bytes_.empty(); }
    constexpr const std::uint8_t* data() const { return bytes_.data(); }

    /// True when `count` bytes from `offset` on lie inside the view.
    constexpr bool contains(std::size_t offset, std::size_t count) const {
        return offset <= bytes_.size() && count <= bytes_.size() - offset;
    }

    constexpr std::optional<std::uint8_t> u8(std::size_t offset) const {
        if (!contains(offset, 1))
            return std::nullopt;
        return bytes_[offset];
    }
    constexpr std::optional<std::uint16_t> u16(std::size_t offset) const {
        if (!contains(offset, 2))
            return std::nullopt;
        return loadU16(bytes_.data() + offset);
    }
    constexpr std::optional<std::int16_t> i16(std::size_t offset) const {
        const auto value = u16(offset);
        if (!value)
            return std::nullopt;
        return static_cast<std::int16_t>(*value);
    }
    constexpr std::optional<std::uint32_t> u24(std::size_t offset) const {
        if (!contains(offset, 3))
            return std::nullopt;
        return loadU24(bytes_.data() + offset);
    }
    constexpr std::optional<std::uint32_t> u32(std::size_t offset) const {
        if (!contains(offset, 4))
            return std::nullopt;
        return loadU32(bytes_.data() + offset);
    }

    /// The `count` bytes from `offset` on; an empty view when they do not fit.
    constexpr ByteView sub(std::size_t offset, std::size_t count) const {
        if (!contains(offset, count))
            return {};
        return ByteView(bytes_.subspan(offset, count));
    }
    /// All bytes from `offset` on; an empty view past the end.
    constexpr ByteView from(std::size_t offset) const {
        if (offset > bytes_.size())
            return {};
        return ByteView(bytes_.subspan(offset));
    }

    // Unchecked loads and stores, for bytes whose extent has been checked as a whole.
    static constexpr std::uint16_t loadU16(const std::uint8_t* p) {
        return static_cast<std::uint16_t>((unsigned{p[0]} << 8) | p[1]);
    }
    static constexpr std::int16_t loadI16(const std::uint8_t* p) {
        return static_cast<std::int16_t>(loadU16(p));
    }
    static constexpr std::uint32_t loadU24(const std::uint8_t* p) {
        return (std::uint32_t{p[0]} << 16) | (std::uint32_t{p[1]} << 8) | p[2];
    }
    static constexpr std::uint32_t loadU32(const std::uint8_t* p) {
        return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) |
               (std::uint32_t{p[2]} << 8) | p[3];
    }
    static constexpr void storeU16(std::uint8_t* p, std::uint16_t value) {
        p[0] = static_cast<std::uint8_t>(value >> 8);
        p[1] = static_cast<std::uint8_t>(value);
    }
    static constexpr void storeU32(std::uint8_t* p, std::uint32_t value) {
        storeU16(p, static_cast<std::uint16_t>(value >> 16));
        storeU16(p + 2, static_cast<std::uint16_t>(value));
    }

private:
    std::span<const std::uint8_t> bytes_;
};

} // namespace KWCommonNS
