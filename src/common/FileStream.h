#pragma once

#include "platform/Platform.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <streambuf>

namespace KWCommonNS {

/// Reads a file where it is asked, through a small buffer.
///
/// A seek makes no system call, and within the buffered piece keeps it. After many that lead out of
/// it, little more is read than what is asked for, until reading goes on across the end of a piece.
/// A read of the buffer's size and more goes straight to the caller's memory. Positions past the
/// end can be sought; a read there finds nothing.
class FileStreamBuf final : public std::streambuf {
public:
    explicit FileStreamBuf(std::unique_ptr<KWPlatform::FileReader> file);

protected:
    int_type underflow() override;
    int_type pbackfail(int_type ch) override;
    std::streamsize xsgetn(char* to, std::streamsize count) override;
    std::streamsize showmanyc() override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir way,
                     std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

private:
    static constexpr std::size_t kBufferSize = 4096;
    static constexpr std::size_t kLeastPiece = 512;
    static constexpr unsigned kManySeeks = 16; // headers and directories are done by then

    off_type position() const { return pieceStart_ + (gptr() - eback()); }
    pos_type seekTo(off_type position);
    void emptyAt(off_type position);
    bool fill(std::size_t wanted);

    std::unique_ptr<KWPlatform::FileReader> file_;
    off_type pieceStart_ = 0; // where eback() stands in the file
    unsigned seeks_ = 0;      // out of a piece, one after the other
    bool hasSought_ = false;  // since the last piece was read
    std::array<char, kBufferSize> buffer_;
};

/// An input stream over a file.
class FileStream final : public std::istream {
public:
    explicit FileStream(std::unique_ptr<KWPlatform::FileReader> file);

private:
    FileStreamBuf buffer_;
};

} // namespace KWCommonNS
