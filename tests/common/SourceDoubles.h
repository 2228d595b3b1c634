#pragma once

#include <algorithm>
#include <cstring>
#include <ios>
#include <istream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace KWTest {

/// A source that notes what is asked of it: (position, count) of every read.
class CountingBuf : public std::streambuf {
public:
    explicit CountingBuf(std::string bytes, bool seekable = true)
        : bytes_(std::move(bytes)), seekable_(seekable) {}

    std::vector<std::pair<std::size_t, std::streamsize>> reads;

protected:
    std::streamsize xsgetn(char* to, std::streamsize count) override {
        reads.emplace_back(position_, count);
        const std::size_t left = bytes_.size() - std::min(position_, bytes_.size());
        const std::size_t got = std::min(left, static_cast<std::size_t>(count));
        if (got != 0)
            std::memcpy(to, bytes_.data() + position_, got);
        position_ += got;
        return static_cast<std::streamsize>(got);
    }
    int_type underflow() override {
        return position_ < bytes_.size() ? traits_type::to_int_type(bytes_[position_])
                                         : traits_type::eof();
    }
    int_type uflow() override {
        const int_type c = underflow();
        ++position_;
        return c;
    }
    pos_type seekoff(off_type offset, std::ios_base::seekdir way,
                     std::ios_base::openmode) override {
        if (!seekable_)
            return pos_type(off_type(-1));
        if (way == std::ios_base::cur)
            offset += static_cast<off_type>(position_);
        else if (way == std::ios_base::end)
            offset += static_cast<off_type>(bytes_.size());
        if (offset < 0)
            return pos_type(off_type(-1));
        position_ = static_cast<std::size_t>(offset);
        return pos_type(offset);
    }
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override {
        return seekoff(off_type(position), std::ios_base::beg, which);
    }

private:
    std::string bytes_;
    bool seekable_;
    std::size_t position_ = 0;
};

class CountingStream : public std::istream {
public:
    explicit CountingStream(std::string bytes, bool seekable = true)
        : std::istream(nullptr), buffer(std::move(bytes), seekable) {
        init(&buffer);
    }
    ~CountingStream() override {
        if (deleted != nullptr)
            *deleted = true;
    }

    CountingBuf buffer;
    bool* deleted = nullptr;
};

/// `count` bytes that differ from place to place.
inline std::string patternBytes(std::size_t count) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

/// Up to `count` bytes from the stream's position; a failed state is cleared first.
inline std::string readBytes(std::istream& stream, std::size_t count) {
    stream.clear();
    std::string bytes(count, '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

inline std::string readAt(std::istream& stream, std::streamoff position, std::size_t count) {
    stream.clear();
    stream.seekg(position);
    return stream ? readBytes(stream, count) : std::string();
}

} // namespace KWTest
