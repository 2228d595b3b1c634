#include "KWCommon15/KWUtil.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <ostream>

namespace KWCommonNS {

namespace {

constexpr std::size_t kDeflateBlock = 32768;
/// Each block costs a copy of the 32 KiB that later bytes may refer to.
constexpr std::size_t kInflateBlock = std::size_t{1} << 18;

/// Gives zlib the next part of a block that may be longer than its counters.
class InputFeed {
public:
    InputFeed(const void* data, std::size_t size)
        : next_(static_cast<const Bytef*>(data)), left_(size) {}

    void refill(z_stream& stream) {
        if (stream.avail_in > 0)
            return;
        const auto part =
            static_cast<uInt>(std::min<std::size_t>(left_, std::numeric_limits<uInt>::max()));
        stream.next_in = const_cast<Bytef*>(next_); // zlib reads only
        stream.avail_in = part;
        next_ += part;
        left_ -= part;
    }
    bool isLast() const { return left_ == 0; }

private:
    const Bytef* next_;
    std::size_t left_;
};

/// What zlib writes into.
class Block {
public:
    explicit Block(std::size_t size) : bytes_(new (std::nothrow) char[size]), size_(size) {}

    explicit operator bool() const { return bytes_ != nullptr; }
    void give(z_stream& stream) {
        stream.next_out = reinterpret_cast<Bytef*>(bytes_.get());
        stream.avail_out = static_cast<uInt>(size_);
    }
    std::size_t produced(const z_stream& stream) const { return size_ - stream.avail_out; }
    bool write(std::ostream& out, const z_stream& stream) const {
        const std::size_t size = produced(stream);
        return size == 0 || out.write(bytes_.get(), static_cast<std::streamsize>(size)).good();
    }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_;
};

} // namespace

bool KWUtil::inflate(std::ostream& out, const void* data, std::size_t size, std::uint64_t maximum) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return false;
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> guard(&stream, &inflateEnd);
    InputFeed input(data, size);
    Block block(static_cast<std::size_t>(std::clamp<std::uint64_t>(maximum, 1, kInflateBlock)));
    int status = block ? Z_OK : Z_MEM_ERROR;
    while (status == Z_OK) {
        input.refill(stream);
        block.give(stream);
        // Without input and output left zlib answers Z_BUF_ERROR, so that every round moves on.
        status = ::inflate(&stream, Z_NO_FLUSH);
        if (status != Z_OK && status != Z_STREAM_END)
            return false;
        const std::size_t produced = block.produced(stream);
        if (produced > maximum || !block.write(out, stream))
            return false;
        maximum -= produced;
    }
    return status == Z_STREAM_END;
}

bool KWUtil::deflate(std::ostream& out, const void* data, std::size_t size) {
    z_stream stream{};
    if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK)
        return false;
    const std::unique_ptr<z_stream, decltype(&deflateEnd)> guard(&stream, &deflateEnd);
    InputFeed input(data, size);
    Block block(kDeflateBlock);
    int status = block ? Z_OK : Z_MEM_ERROR;
    while (status == Z_OK) {
        input.refill(stream);
        block.give(stream);
        status = ::deflate(&stream, input.isLast() ? Z_FINISH : Z_NO_FLUSH);
        if ((status != Z_OK && status != Z_STREAM_END) || !block.write(out, stream))
            return false;
    }
    return status == Z_STREAM_END;
}

} // namespace KWCommonNS
