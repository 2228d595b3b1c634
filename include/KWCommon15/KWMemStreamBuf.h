#pragma once

#include "KWCommon15/KWExport.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <limits>
#include <memory>
#include <streambuf>

namespace KWCommonNS {

/// Buffer of a KWMemStream.
///
/// It is in one of three states.
/// - Memory (no source): the bytes lie in one block of memory, which doubles as it grows. The get
///   and the put position are independent of each other, as in `std::stringbuf`; both seek
///   anywhere from 0 to length(). The put position alone may also go up to 64 MiB past the end;
///   the first write there fills what lies between with zeros, and until then length() is as it
///   was. Other positions fail.
/// - Window (a seekable source, memory not kept): positions are those of the source. One piece of
///   the source, of the size given to the constructor, is buffered. Seeking inside it moves a
///   pointer; seeking elsewhere reads nothing by itself. A read of a piece's size and more goes
///   straight from the source to the caller. Any position that is not negative can be sought; past
///   the end a read finds nothing.
/// - Kept (a source that cannot seek, or memory kept): what was read stays in memory, from the
///   place where the source stood at first, and is read from there again; reading or seeking
///   forward pulls in as much as is needed.
///
/// The first write or put seek, and every operation that needs the bytes in memory, pulls in all
/// the rest of the source, lets go of it and goes on in memory; the put position is then 0, and so
/// it is told before. A seek of both positions at once moves the get position alone while there is
/// a source. What a source throws stays here: it is as if the source ended. A write that
/// memory does not suffice for fails (the stream's `badbit`) and leaves the contents as they were.
///
/// A stated size is a wish: at most 1 MiB is set aside before bytes are there to fill it.
class KWCOMMON_API KWMemStreamBuf : public std::streambuf {
public:
    /// Number of bytes that stands for all there are.
    static constexpr std::streamsize kToTheEnd = std::numeric_limits<std::streamsize>::max();

    /// @param source     stream to read from, or null
    /// @param size       first capacity without a source, size of the window with one; 0: default
    /// @param keepSource false: `source` is deleted when it is no longer needed
    explicit KWMemStreamBuf(std::istream* source = nullptr, std::size_t size = 0,
                            bool keepSource = true);
    ~KWMemStreamBuf() override;
    KWMemStreamBuf(const KWMemStreamBuf&) = delete;
    KWMemStreamBuf& operator=(const KWMemStreamBuf&) = delete;

    /// Throws away the contents, lets go of the source so far, and reads from `source` (null: an
    /// empty memory stream). The get position is where `source` stands.
    void setSource(std::istream* source, bool keepSource);
    /// Chooses between Window (false, the state at first) and Kept (true) for a seekable source. A
    /// change to Kept pulls in the source from its start up to the present position, and positions
    /// stay the same. A change back, and any change without a source, has no effect on what is
    /// already in memory.
    void setKeepMemory(bool keep);
    /// True while a source is attached.
    bool hasSource() const { return source_ != nullptr; }

    /// Total number of bytes. A source that cannot seek is pulled in for it; -1 when memory does
    /// not suffice for that.
    std::streamsize length();
    /// The bytes in memory, valid until the next operation that writes; null when there are none.
    const char* data();
    /// As length(), for use with data().
    std::size_t size();

    /// Copies bytes from the present position of `from` to the put position, in blocks and without
    /// setting aside more than twice what has arrived. `from` is left with the state that
    /// `istream::read` would give it, `eofbit` alone when kToTheEnd was asked for. A stream over
    /// this very buffer gives nothing.
    /// @param count number of bytes; kToTheEnd: up to the end of `from`; a negative one gives
    ///              nothing
    /// @return      the bytes copied; fewer than `count` when `from` ended or memory ran out
    std::streamsize copyStream(std::istream& from, std::streamsize count);
    /// Sets memory aside for contents of `size` bytes altogether, so that they need not move as
    /// they grow. Nothing happens with a source, when there is room, and when memory does not
    /// suffice.
    void reserve(std::size_t size);
    /// Throws away the contents and lets go of the source; the memory is kept for new contents.
    void remove();
    /// Gives the memory away. The stream is empty afterwards.
    /// @param count receives the number of bytes; may be null
    /// @return      the bytes, to be freed with freeBuffer(); null when there are none
    char* abandonBuffer(std::size_t* count = nullptr);
    /// Frees what abandonBuffer() gave; null is allowed.
    static void freeBuffer(char* buffer);

    /// Seeks the get position forward to the next place where the `count` bytes stand, at or behind
    /// the present position. When they do not come the position stays.
    bool searchSeek(const void* bytes, std::size_t count);
    /// Seeks the get position past all bytes that are among the `count` given ones. False when the
    /// contents end first; the position is then the end.
    bool skipSeek(const void* bytes, std::size_t count);
    /// Seeks the get position past the next line end: CR, LF or CRLF. False when the contents end
    /// first; the position is then the end.
    bool seekEOL();

    /// Sum of the contents' big-endian 32-bit words, modulo 2^32, the last one padded with zero
    /// bytes (OpenType, "Calculating Checksums"). Positions stay.
    std::uint32_t calcOTFTableChecksum();
    /// The same of `count` bytes in memory.
    static std::uint32_t calcOTFTableChecksum(const void* bytes, std::size_t count);

protected:
    int_type underflow() override;
    int_type overflow(int_type ch) override;
    int_type pbackfail(int_type ch) override;
    std::streamsize xsgetn(char* to, std::streamsize count) override;
    std::streamsize xsputn(const char* from, std::streamsize count) override;
    std::streamsize showmanyc() override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir way,
                     std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

private:
    bool isWindow() const { return source_ != nullptr && !kept_; }
    void attach(std::istream* source);
    void dropSource();
    std::streamsize readSource(off_type from, char* to, std::streamsize count);
    off_type sourceLength();
    bool keepWindow();
    bool pull(std::size_t upTo);
    bool toMemory();
    bool fillWindow();
    bool setCapacity(std::size_t capacity);
    bool makeRoom(std::size_t count);
    void setPutPositionPastEnd(std::size_t gap);
    void syncEnd();
    std::size_t pieceSize() const;
    off_type getPosition() const;
    std::size_t putPosition() const;
    void setGetPosition(std::size_t position);
    void setPutPosition(std::size_t position);
    pos_type seekGet(off_type position);
    pos_type seekPut(off_type position);

    char* buffer_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t end_ = 0; // bytes in memory; in Memory state up to date after syncEnd()
    std::size_t wantedSize_ = 0;
    std::size_t putGap_ = 0; // from end_ to a put position past it; pptr() is then at end_
    std::istream* source_ = nullptr;
    std::unique_ptr<std::istream> ownedSource_; // source_ or null
    bool seekableSource_ = false;
    bool sourceEnded_ = false;
    bool keepMemory_ = false;
    bool kept_ = false;
    off_type windowStart_ = 0;
};

} // namespace KWCommonNS
