#include "common/FileStream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace KWCommonNS {

// The buffer is not cleared: only what a read has filled is ever looked at.
FileStreamBuf::FileStreamBuf(std::unique_ptr<KWPlatform::FileReader> file)
    : file_(std::move(file)) {
    emptyAt(0);
}

void FileStreamBuf::emptyAt(off_type position) {
    pieceStart_ = position;
    setg(buffer_.data(), buffer_.data(), buffer_.data());
}

// Reads a piece with `wanted` bytes at least, unless the file ends; false where it has none.
bool FileStreamBuf::fill(std::size_t wanted) {
    emptyAt(position());
    seeks_ = std::exchange(hasSought_, false) ? std::min(seeks_ + 1, kManySeeks) : 0;
    const std::size_t size = seeks_ == kManySeeks ? std::max(wanted, kLeastPiece) : buffer_.size();
    const std::size_t got =
        file_->readAt(static_cast<std::uint64_t>(pieceStart_), buffer_.data(), size);
    setg(buffer_.data(), buffer_.data(), buffer_.data() + got);
    return got != 0;
}

FileStreamBuf::int_type FileStreamBuf::underflow() {
    if (gptr() == egptr() && !fill(1))
        return traits_type::eof();
    return traits_type::to_int_type(*gptr());
}

std::streamsize FileStreamBuf::xsgetn(char* to, std::streamsize count) {
    std::streamsize done = 0;
    while (done < count) {
        if (gptr() == egptr()) {
            const std::streamsize left = count - done;
            if (left >= static_cast<std::streamsize>(kBufferSize)) {
                const off_type from = position();
                const std::size_t got = file_->readAt(static_cast<std::uint64_t>(from), to + done,
                                                      static_cast<std::size_t>(left));
                emptyAt(from + static_cast<off_type>(got));
                return done + static_cast<std::streamsize>(got);
            }
            if (!fill(static_cast<std::size_t>(left)))
                break;
        }
        const std::streamsize part = std::min<std::streamsize>(count - done, egptr() - gptr());
        std::memcpy(to + done, gptr(), static_cast<std::size_t>(part));
        gbump(static_cast<int>(part)); // at most kBufferSize
        done += part;
    }
    return done;
}

// The last character may lie before the buffered piece.
FileStreamBuf::int_type FileStreamBuf::pbackfail(int_type ch) {
    const off_type at = position();
    if (at == 0)
        return traits_type::eof();
    seekTo(at - 1);
    const int_type last = underflow();
    const bool any = traits_type::eq_int_type(ch, traits_type::eof());
    if (!traits_type::eq_int_type(last, traits_type::eof()) &&
        (any || traits_type::eq_int_type(ch, last)))
        return last;
    seekTo(at);
    return traits_type::eof();
}

std::streamsize FileStreamBuf::showmanyc() {
    const auto length = static_cast<off_type>(file_->size());
    return position() < length ? length - position() : -1;
}

FileStreamBuf::pos_type FileStreamBuf::seekTo(off_type position) {
    if (position < 0)
        return pos_type(off_type(-1));
    const off_type inPiece = position - pieceStart_;
    if (inPiece >= 0 && inPiece <= egptr() - eback()) {
        setg(eback(), eback() + inPiece, egptr());
    } else {
        emptyAt(position);
        hasSought_ = true;
    }
    return pos_type(position);
}

FileStreamBuf::pos_type FileStreamBuf::seekoff(off_type offset, std::ios_base::seekdir way,
                                               std::ios_base::openmode) {
    off_type origin = 0;
    if (way == std::ios_base::cur)
        origin = position();
    else if (way == std::ios_base::end)
        origin = static_cast<off_type>(file_->size());
    if (offset > 0 && offset > std::numeric_limits<off_type>::max() - origin)
        return pos_type(off_type(-1));
    return seekTo(origin + offset);
}

FileStreamBuf::pos_type FileStreamBuf::seekpos(pos_type position, std::ios_base::openmode) {
    return seekTo(off_type(position));
}

FileStream::FileStream(std::unique_ptr<KWPlatform::FileReader> file)
    : std::istream(nullptr), buffer_(std::move(file)) {
    init(&buffer_);
}

} // namespace KWCommonNS
