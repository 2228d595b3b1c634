#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KWTest {

/// A growing run of bytes, written big-endian field by field:
///
///     Bytes subtable;
///     subtable.u16(4).u16(0, "length").u16(0);      // a label names the place of its field
///     subtable.patchU16At("length", subtable.size());
///
/// A number takes any integer type; `u16` also takes a negative one that 16 signed bits hold, `i16`
/// nothing beyond them. A number that does not fit its field throws std::out_of_range, so that a
/// fixture never holds other bytes than it says.
class Bytes {
public:
    Bytes() = default;
    /// The bytes as listed: `Bytes{0x00, 0x01, 0xFF}`.
    Bytes(std::initializer_list<int> values);
    explicit Bytes(std::vector<std::uint8_t> data) : data_(std::move(data)) {}

    /// The bytes of a text, as it stands: `Bytes::ofText("%!PS")`.
    static Bytes ofText(std::string_view text) { return Bytes().text(text); }

    // Writing, at the end. Every call answers this object.

    Bytes& u8(std::integral auto value, std::string_view label = {}) {
        return number(1, wide(value), label);
    }
    Bytes& u16(std::integral auto value, std::string_view label = {}) {
        return number(2, wide(value), label);
    }
    Bytes& i16(std::integral auto value, std::string_view label = {}) {
        return number(2, signedValue(2, wide(value)), label);
    }
    Bytes& u24(std::integral auto value, std::string_view label = {}) {
        return number(3, wide(value), label);
    }
    Bytes& u32(std::integral auto value, std::string_view label = {}) {
        return number(4, wide(value), label);
    }
    Bytes& i32(std::integral auto value, std::string_view label = {}) {
        return number(4, signedValue(4, wide(value)), label);
    }
    /// A signed 2.14 number, as in composite glyphs.
    Bytes& f2dot14(double value);
    /// A signed 16.16 number, as in `head` and `post`.
    Bytes& fixed(double value);
    /// A run of 16-bit numbers.
    Bytes& u16s(const std::vector<std::uint16_t>& values);
    /// Four characters; a shorter tag is padded with spaces.
    Bytes& tag(std::string_view tag, std::string_view label = {});
    Bytes& text(std::string_view text);
    Bytes& utf16be(std::u16string_view text);
    Bytes& bytes(std::span<const std::uint8_t> more);
    Bytes& zero(std::size_t count) { return fill(count, 0); }
    Bytes& fill(std::size_t count, std::uint8_t value);
    /// Zeros up to the next multiple.
    Bytes& padTo(std::size_t multiple);
    /// Names the place of whatever comes next.
    Bytes& label(std::string_view name);

    // Changing what is written already. A place is an offset or a label.

    Bytes& patchU8At(std::size_t offset, std::integral auto value) {
        return patch(offset, 1, wide(value));
    }
    Bytes& patchU16At(std::size_t offset, std::integral auto value) {
        return patch(offset, 2, wide(value));
    }
    Bytes& patchU32At(std::size_t offset, std::integral auto value) {
        return patch(offset, 4, wide(value));
    }
    Bytes& patchU8At(std::string_view place, std::integral auto value) {
        return patch(offsetOf(place), 1, wide(value));
    }
    Bytes& patchU16At(std::string_view place, std::integral auto value) {
        return patch(offsetOf(place), 2, wide(value));
    }
    Bytes& patchU32At(std::string_view place, std::integral auto value) {
        return patch(offsetOf(place), 4, wide(value));
    }
    /// Keeps the first `size` bytes; no effect on a shorter run.
    Bytes& truncate(std::size_t size);

    // Reading back. An offset past the end throws std::out_of_range.

    /// Offset of a label; throws std::out_of_range for an unknown one.
    std::size_t offsetOf(std::string_view label) const;
    std::uint8_t u8At(std::size_t offset) const {
        return static_cast<std::uint8_t>(read(offset, 1));
    }
    std::uint16_t u16At(std::size_t offset) const {
        return static_cast<std::uint16_t>(read(offset, 2));
    }
    std::int16_t i16At(std::size_t offset) const {
        return static_cast<std::int16_t>(u16At(offset));
    }
    std::uint32_t u32At(std::size_t offset) const { return read(offset, 4); }
    Bytes slice(std::size_t offset, std::size_t count) const;

    std::size_t size() const { return data_.size(); }
    bool empty() const { return data_.empty(); }
    const std::uint8_t* data() const { return data_.data(); }
    std::uint8_t operator[](std::size_t offset) const { return data_[offset]; }
    auto begin() const { return data_.begin(); }
    auto end() const { return data_.end(); }

    const std::vector<std::uint8_t>& vector() const { return data_; }
    /// The same bytes as characters, for std::istringstream and the like.
    std::string str() const;
    /// "00 01 FF", for messages.
    std::string hex() const;

    /// Equal bytes; labels do not count.
    friend bool operator==(const Bytes& a, const Bytes& b) { return a.data_ == b.data_; }

private:
    /// Any integer as 64 bits; unsigned 64-bit numbers beyond the signed range become negative and
    /// fit no field.
    static constexpr std::int64_t wide(std::integral auto value) {
        return static_cast<std::int64_t>(value);
    }
    static std::int64_t signedValue(std::size_t width, std::int64_t value);
    Bytes& number(std::size_t width, std::int64_t value, std::string_view label);
    Bytes& patch(std::size_t offset, std::size_t width, std::int64_t value);
    std::uint32_t read(std::size_t offset, std::size_t width) const;

    std::vector<std::uint8_t> data_;
    std::map<std::string, std::size_t, std::less<>> labels_;
};

/// What GoogleTest prints for a failed comparison: the size and the hex bytes.
void PrintTo(const Bytes& bytes, std::ostream* out);

/// Something that knows how to write itself, as every table of this folder does.
template <class T>
concept BytesMaker = requires(const T& maker) {
    { maker.build() } -> std::convertible_to<Bytes>;
};

} // namespace KWTest
