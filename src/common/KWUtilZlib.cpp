#include "KWCommon15/KWUtil.h"

#include "KWCommon15/KWMemStream.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <ostream>
#include <streambuf>

namespace KWCommonNS {

namespace {

constexpr std::size_t kDeflateBlock = 32768;
constexpr std::streamsize kInflateBlock = std::streamsize{1} << 18;

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

/// The contents of a zlib stream. Each call that reads costs a copy of the 32 KiB that later bytes
/// may refer to.
class InflateBuf : public std::streambuf {
public:
    InflateBuf(const void* data, std::size_t size)
        : input_(data, size), status_(inflateInit(&stream_)) {}
    ~InflateBuf() override { inflateEnd(&stream_); }
    InflateBuf(const InflateBuf&) = delete;
    InflateBuf& operator=(const InflateBuf&) = delete;

    /// True when the stream is whole and nothing of it is left to read.
    bool isAtEnd() {
        char more = 0;
        return xsgetn(&more, 1) == 0 && status_ == Z_STREAM_END;
    }

protected:
    std::streamsize xsgetn(char* to, std::streamsize count) override {
        std::streamsize left = count;
        while (left > 0 && status_ == Z_OK) {
            input_.refill(stream_);
            const auto room = static_cast<uInt>(
                std::min<std::streamsize>(left, std::numeric_limits<uInt>::max()));
            stream_.next_out = reinterpret_cast<Bytef*>(to + (count - left));
            stream_.avail_out = room;
            // Without input left zlib answers Z_BUF_ERROR, so that every round moves on.
            status_ = ::inflate(&stream_, Z_NO_FLUSH);
            left -= static_cast<std::streamsize>(room - stream_.avail_out);
        }
        return count - left;
    }

private:
    z_stream stream_{};
    InputFeed input_;
    int status_;
};

/// Writes what the source has, up to `maximum` bytes. False when `out` fails.
bool writeBlocks(std::ostream& out, InflateBuf& source, std::uint64_t maximum) {
    const std::unique_ptr<char[]> block(new (std::nothrow) char[kInflateBlock]);
    if (block == nullptr)
        return false;
    std::streamsize got = kInflateBlock;
    for (; maximum > 0 && got == kInflateBlock; maximum -= static_cast<std::uint64_t>(got)) {
        got = source.sgetn(block.get(), static_cast<std::streamsize>(
                                            std::min<std::uint64_t>(maximum, kInflateBlock)));
        if (got > 0 && !out.write(block.get(), got).good())
            return false;
    }
    return true;
}

/// What zlib deflates into.
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
    InflateBuf source(data, size);
    auto* const memory = dynamic_cast<KWMemStream*>(&out);
    if (memory == nullptr || !memory->good())
        return writeBlocks(out, source, maximum) && source.isAtEnd();
    // Straight into the memory that the stream has for it.
    constexpr std::uint64_t kMost = KWMemStreamBuf::kToTheEnd;
    std::istream from(&source);
    memory->copyStream(from, static_cast<std::streamsize>(std::min(maximum, kMost)));
    return memory->good() && source.isAtEnd();
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
