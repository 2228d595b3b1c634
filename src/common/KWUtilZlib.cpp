#include "KWCommon15/KWUtil.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <ostream>

namespace KWCommonNS {

namespace {

constexpr std::size_t kBlockSize = 32768;

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

using Block = std::array<char, kBlockSize>;

void giveBlock(z_stream& stream, Block& block) {
    stream.next_out = reinterpret_cast<Bytef*>(block.data());
    stream.avail_out = static_cast<uInt>(block.size());
}

bool writeBlock(std::ostream& out, const Block& block, std::size_t size) {
    return size == 0 || out.write(block.data(), static_cast<std::streamsize>(size)).good();
}

} // namespace

bool KWUtil::inflate(std::ostream& out, const void* data, std::size_t size, std::uint64_t maximum) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return false;
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> guard(&stream, &inflateEnd);
    InputFeed input(data, size);
    Block block;
    int status = Z_OK;
    while (status == Z_OK) {
        input.refill(stream);
        giveBlock(stream, block);
        // Without input and output left zlib answers Z_BUF_ERROR, so that every round moves on.
        status = ::inflate(&stream, Z_NO_FLUSH);
        if (status != Z_OK && status != Z_STREAM_END)
            return false;
        const std::size_t produced = block.size() - stream.avail_out;
        if (produced > maximum || !writeBlock(out, block, produced))
            return false;
        maximum -= produced;
    }
    return true;
}

bool KWUtil::deflate(std::ostream& out, const void* data, std::size_t size) {
    z_stream stream{};
    if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK)
        return false;
    const std::unique_ptr<z_stream, decltype(&deflateEnd)> guard(&stream, &deflateEnd);
    InputFeed input(data, size);
    Block block;
    int status = Z_OK;
    while (status == Z_OK) {
        input.refill(stream);
        giveBlock(stream, block);
        status = ::deflate(&stream, input.isLast() ? Z_FINISH : Z_NO_FLUSH);
        if ((status != Z_OK && status != Z_STREAM_END) ||
            !writeBlock(out, block, block.size() - stream.avail_out))
            return false;
    }
    return true;
}

} // namespace KWCommonNS
