#include "Bytes.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace KWTest {

Bytes::Bytes(std::initializer_list<int> values) {
    data_.reserve(values.size());
    for (const int value : values)
        u8(value);
}

Bytes& Bytes::f2dot14(double value) {
    return i16(std::lround(value * 16384.0));
}

Bytes& Bytes::fixed(double value) {
    return i32(std::lround(value * 65536.0));
}

Bytes& Bytes::u16s(const std::vector<std::uint16_t>& values) {
    for (const std::uint16_t value : values)
        u16(value);
    return *this;
}

Bytes& Bytes::tag(std::string_view tag, std::string_view name) {
    if (tag.size() > 4)
        throw std::out_of_range("a tag has four characters: " + std::string(tag));
    if (!name.empty())
        label(name);
    return text(tag).fill(4 - tag.size(), ' ');
}

Bytes& Bytes::text(std::string_view text) {
    for (const char c : text)
        data_.push_back(static_cast<std::uint8_t>(c));
    return *this;
}

Bytes& Bytes::utf16be(std::u16string_view text) {
    for (const char16_t unit : text)
        u16(unit);
    return *this;
}

Bytes& Bytes::bytes(std::span<const std::uint8_t> more) {
    const std::vector<std::uint8_t> copy(more.begin(), more.end()); // `more` may be our own bytes
    data_.insert(data_.end(), copy.begin(), copy.end());
    return *this;
}

Bytes& Bytes::fill(std::size_t count, std::uint8_t value) {
    data_.insert(data_.end(), count, value);
    return *this;
}

Bytes& Bytes::padTo(std::size_t multiple) {
    return zero((multiple - size() % multiple) % multiple);
}

Bytes& Bytes::label(std::string_view name) {
    labels_.insert_or_assign(std::string(name), size());
    return *this;
}

Bytes& Bytes::truncate(std::size_t size) {
    if (size < data_.size())
        data_.resize(size);
    return *this;
}

std::size_t Bytes::offsetOf(std::string_view label) const {
    const auto found = labels_.find(label);
    if (found == labels_.end())
        throw std::out_of_range("no label " + std::string(label));
    return found->second;
}

Bytes Bytes::slice(std::size_t offset, std::size_t count) const {
    if (offset > size() || count > size() - offset)
        throw std::out_of_range("slice past the end");
    Bytes part;
    part.bytes(std::span(data_).subspan(offset, count));
    return part;
}

std::string Bytes::str() const {
    return std::string(data_.begin(), data_.end());
}

std::string Bytes::hex() const {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : data_) {
        if (!text.empty())
            text += ' ';
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::int64_t Bytes::signedValue(std::size_t width, std::int64_t value) {
    if (value >= std::int64_t{1} << (8 * width - 1))
        throw std::out_of_range(std::to_string(value) + " does not fit a signed field");
    return value;
}

Bytes& Bytes::number(std::size_t width, std::int64_t value, std::string_view name) {
    if (!name.empty())
        label(name);
    const std::size_t offset = size();
    zero(width);
    return patch(offset, width, value);
}

Bytes& Bytes::patch(std::size_t offset, std::size_t width, std::int64_t value) {
    const std::int64_t limit = std::int64_t{1} << (8 * width);
    if (value < -(limit / 2) || value >= limit)
        throw std::out_of_range(std::to_string(value) + " does not fit " + std::to_string(width) +
                                " bytes");
    if (offset > size() || width > size() - offset)
        throw std::out_of_range("patch past the end");
    for (std::size_t i = 0; i < width; ++i)
        data_[offset + i] = static_cast<std::uint8_t>((value >> (8 * (width - 1 - i))) & 0xFF);
    return *this;
}

std::uint32_t Bytes::read(std::size_t offset, std::size_t width) const {
    if (offset > size() || width > size() - offset)
        throw std::out_of_range("read past the end");
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i)
        value = (value << 8) | data_[offset + i];
    return value;
}

void PrintTo(const Bytes& bytes, std::ostream* out) {
    *out << bytes.size() << " bytes: " << bytes.hex();
}

} // namespace KWTest
