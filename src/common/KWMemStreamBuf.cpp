#include "KWCommon15/KWMemStreamBuf.h"

#include "common/ByteView.h"
#include "common/KWLimits.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <vector>

namespace KWCommonNS {

namespace {

constexpr std::size_t kDefaultPiece = 4096;
constexpr std::size_t kMinCapacity = 128;
constexpr std::size_t kMaxWantedSize = std::size_t{1} << 20;
constexpr std::size_t kMaxCapacity = std::numeric_limits<std::ptrdiff_t>::max();

// The get position of a buffer, or its end; -1 when it cannot tell.
std::streamoff offsetIn(std::streambuf* buf, std::ios_base::seekdir way) {
    if (buf == nullptr)
        return -1;
    try {
        return std::streamoff(buf->pubseekoff(0, way, std::ios_base::in));
    } catch (...) {
        return -1;
    }
}

} // namespace

KWMemStreamBuf::KWMemStreamBuf(std::istream* source, std::size_t size, bool keepSource)
    : wantedSize_(std::min(size, kMaxWantedSize)), ownedSource_(keepSource ? nullptr : source) {
    attach(source);
}

KWMemStreamBuf::~KWMemStreamBuf() {
    std::free(buffer_);
}

// --- The source ---

void KWMemStreamBuf::attach(std::istream* source) {
    end_ = 0;
    windowStart_ = 0;
    kept_ = false;
    sourceEnded_ = false;
    source_ = source;
    setGetPosition(0);
    if (source == nullptr) {
        setPutPosition(0);
        return;
    }
    putGap_ = 0;
    setp(nullptr, nullptr);
    const off_type position = offsetIn(source->rdbuf(), std::ios_base::cur);
    seekableSource_ = position >= 0;
    windowStart_ = seekableSource_ ? position : 0;
    setg(nullptr, nullptr, nullptr);
    if (!seekableSource_ || keepMemory_)
        keepWindow();
}

void KWMemStreamBuf::dropSource() {
    source_ = nullptr;
    ownedSource_.reset();
    kept_ = false;
}

void KWMemStreamBuf::setSource(std::istream* source, bool keepSource) {
    if (source == ownedSource_.get())
        static_cast<void>(ownedSource_.release());
    dropSource();
    ownedSource_.reset(keepSource ? nullptr : source);
    attach(source);
}

void KWMemStreamBuf::setKeepMemory(bool keep) {
    keepMemory_ = keep;
    if (keep && isWindow())
        keepWindow();
}

// Others may have moved a seekable source since the last read.
std::streamsize KWMemStreamBuf::readSource(off_type from, char* to, std::streamsize count) {
    std::streambuf* const buf = source_->rdbuf();
    if (buf == nullptr)
        return 0;
    try {
        if (seekableSource_ && off_type(buf->pubseekpos(pos_type(from), std::ios_base::in)) != from)
            return 0;
        return std::max<std::streamsize>(buf->sgetn(to, count), 0);
    } catch (...) {
        return 0;
    }
}

KWMemStreamBuf::off_type KWMemStreamBuf::sourceLength() {
    return std::max<off_type>(offsetIn(source_->rdbuf(), std::ios_base::end), 0);
}

// From Window to Kept, at the same position.
bool KWMemStreamBuf::keepWindow() {
    const off_type position = getPosition();
    kept_ = true;
    end_ = 0;
    setg(buffer_, buffer_, buffer_);
    const bool done = pull(static_cast<std::size_t>(position));
    setGetPosition(std::min(static_cast<std::size_t>(position), end_));
    return done;
}

// Reads on in Kept state until `upTo` bytes are in memory or the source ends. False: no memory.
bool KWMemStreamBuf::pull(std::size_t upTo) {
    while (end_ < upTo && !sourceEnded_) {
        // A far position is a claim; memory grows with the bytes that really come.
        const std::size_t block =
            std::min(upTo - end_, std::max({end_, pieceSize(), capacity_ - end_}));
        if (block > capacity_ - end_ &&
            !setCapacity(std::max(end_ + block, std::min(capacity_ * 2, kMaxCapacity))))
            return false;
        const std::streamsize got = readSource(static_cast<off_type>(end_), buffer_ + end_,
                                               static_cast<std::streamsize>(block));
        end_ += static_cast<std::size_t>(got);
        sourceEnded_ = static_cast<std::size_t>(got) < block;
    }
    setGetPosition(static_cast<std::size_t>(getPosition()));
    return true;
}

bool KWMemStreamBuf::toMemory() {
    if (source_ == nullptr)
        return true;
    if ((isWindow() && !keepWindow()) || !pull(kMaxCapacity))
        return false;
    dropSource();
    setPutPosition(0);
    return true;
}

bool KWMemStreamBuf::fillWindow() {
    const off_type position = getPosition();
    if (capacity_ < pieceSize() && !setCapacity(pieceSize()))
        throw std::bad_alloc(); // the stream sets badbit
    windowStart_ = position;
    setg(buffer_, buffer_, buffer_);
    const std::streamsize got =
        readSource(position, buffer_, static_cast<std::streamsize>(pieceSize()));
    setg(buffer_, buffer_, buffer_ + got);
    return got > 0;
}

// --- Memory ---

std::size_t KWMemStreamBuf::pieceSize() const {
    return wantedSize_ != 0 ? wantedSize_ : kDefaultPiece;
}

void KWMemStreamBuf::reserve(std::size_t size) {
    if (source_ == nullptr && size > capacity_)
        static_cast<void>(setCapacity(size));
}

bool KWMemStreamBuf::setCapacity(std::size_t capacity) {
    if (capacity > kMaxCapacity)
        return false;
    const std::size_t get = isWindow() ? 0 : static_cast<std::size_t>(getPosition());
    const auto put = static_cast<std::size_t>(pptr() - pbase());
    const auto grown = static_cast<char*>(std::realloc(buffer_, capacity));
    if (grown == nullptr)
        return false;
    buffer_ = grown;
    capacity_ = capacity;
    if (!isWindow())
        setGetPosition(get);
    if (source_ == nullptr)
        setPutPosition(put);
    return true;
}

// Makes room for `count` bytes at the put position, which is no longer past the end afterwards.
bool KWMemStreamBuf::makeRoom(std::size_t count) {
    const std::size_t gap = putGap_;
    const std::size_t put = putPosition();
    if (count > kMaxCapacity - put)
        return false;
    if (put + count > capacity_) {
        const std::size_t grown = capacity_ == 0 ? std::max(wantedSize_, kMinCapacity)
                                                 : std::min(capacity_ * 2, kMaxCapacity);
        if (!setCapacity(std::max(put + count, grown)))
            return false;
    }
    if (gap != 0) {
        std::memset(buffer_ + end_, 0, gap);
        end_ = put;
        setPutPosition(put);
    }
    return true;
}

void KWMemStreamBuf::syncEnd() {
    if (source_ == nullptr)
        end_ = std::max(end_, static_cast<std::size_t>(pptr() - pbase()));
}

KWMemStreamBuf::off_type KWMemStreamBuf::getPosition() const {
    return (isWindow() ? windowStart_ : 0) + (gptr() - eback());
}

std::size_t KWMemStreamBuf::putPosition() const {
    return static_cast<std::size_t>(pptr() - pbase()) + putGap_;
}

void KWMemStreamBuf::setGetPosition(std::size_t position) {
    if (buffer_ == nullptr)
        setg(nullptr, nullptr, nullptr);
    else
        setg(buffer_, buffer_ + position, buffer_ + end_);
}

void KWMemStreamBuf::setPutPosition(std::size_t position) {
    putGap_ = 0;
    if (buffer_ == nullptr) {
        setp(nullptr, nullptr);
        return;
    }
    setp(buffer_, buffer_ + capacity_);
    for (; position > INT_MAX; position -= INT_MAX)
        pbump(INT_MAX);
    pbump(static_cast<int>(position));
}

// No room is left in the put area, so that the next write comes by makeRoom().
void KWMemStreamBuf::setPutPositionPastEnd(std::size_t gap) {
    setPutPosition(end_);
    char* const start = pbase();
    if (start != nullptr) {
        setp(start, start + end_);
        for (std::size_t left = end_; left != 0;) {
            const std::size_t step = std::min<std::size_t>(left, INT_MAX);
            pbump(static_cast<int>(step));
            left -= step;
        }
    }
    putGap_ = gap;
}

std::streamsize KWMemStreamBuf::length() {
    if (isWindow())
        return sourceLength();
    if (source_ != nullptr && !pull(kMaxCapacity))
        return -1;
    syncEnd();
    return static_cast<std::streamsize>(end_);
}

const char* KWMemStreamBuf::data() {
    if (!toMemory())
        return nullptr;
    syncEnd();
    return end_ != 0 ? buffer_ : nullptr;
}

std::size_t KWMemStreamBuf::size() {
    return static_cast<std::size_t>(std::max<std::streamsize>(length(), 0));
}

std::streamsize KWMemStreamBuf::copyStream(std::istream& from, std::streamsize count) {
    std::streambuf* const buf = from.rdbuf();
    if (count < 0 || buf == nullptr || buf == this || from.fail() || !toMemory())
        return 0;
    const auto wanted = static_cast<std::size_t>(count);
    const std::size_t gap = putGap_;
    std::size_t done = 0;
    while (done < wanted) {
        const std::size_t put = putPosition();
        const std::size_t block = std::min(
            wanted - done, std::max({put, kDefaultPiece, capacity_ - std::min(put, capacity_)}));
        if (!makeRoom(block))
            break;
        std::ios_base::iostate state = count == kToTheEnd
                                           ? std::ios_base::eofbit
                                           : std::ios_base::eofbit | std::ios_base::failbit;
        std::streamsize got = 0;
        try {
            got = buf->sgetn(pptr(), static_cast<std::streamsize>(block));
        } catch (...) {
            state = std::ios_base::badbit;
        }
        const std::size_t arrived = static_cast<std::size_t>(std::max<std::streamsize>(got, 0));
        setPutPosition(put + arrived);
        done += arrived;
        if (arrived < block) {
            from.setstate(state);
            break;
        }
    }
    if (done == 0 && putGap_ != gap) { // nothing was written, so nothing is filled
        end_ -= gap;
        setPutPositionPastEnd(gap);
    }
    return static_cast<std::streamsize>(done);
}

void KWMemStreamBuf::remove() {
    dropSource();
    attach(nullptr);
}

char* KWMemStreamBuf::abandonBuffer(std::size_t* count) {
    const bool any = data() != nullptr;
    if (count != nullptr)
        *count = any ? end_ : 0;
    char* const given = any ? buffer_ : nullptr;
    if (any) {
        buffer_ = nullptr;
        capacity_ = 0;
    }
    remove();
    return given;
}

void KWMemStreamBuf::freeBuffer(char* buffer) {
    std::free(buffer);
}

// --- std::streambuf ---

KWMemStreamBuf::int_type KWMemStreamBuf::underflow() {
    if (gptr() < egptr())
        return traits_type::to_int_type(*gptr());
    if (isWindow()) {
        fillWindow();
    } else if (source_ != nullptr) {
        if (!pull(end_ + pieceSize()))
            throw std::bad_alloc(); // the stream sets badbit
    } else {
        syncEnd();
        setGetPosition(static_cast<std::size_t>(getPosition()));
    }
    return gptr() < egptr() ? traits_type::to_int_type(*gptr()) : traits_type::eof();
}

std::streamsize KWMemStreamBuf::xsgetn(char* to, std::streamsize count) {
    std::streamsize done = 0;
    while (done < count) {
        if (gptr() == egptr()) {
            const std::streamsize left = count - done;
            if (isWindow() && static_cast<std::size_t>(left) >= pieceSize()) {
                const off_type from = getPosition();
                const std::streamsize got = readSource(from, to + done, left);
                windowStart_ = from + got;
                setg(buffer_, buffer_, buffer_);
                return done + got;
            }
            if (traits_type::eq_int_type(underflow(), traits_type::eof()))
                break;
        }
        const std::streamsize part = std::min<std::streamsize>(count - done, egptr() - gptr());
        std::memcpy(to + done, gptr(), static_cast<std::size_t>(part));
        setg(eback(), gptr() + part, egptr());
        done += part;
    }
    return done;
}

KWMemStreamBuf::int_type KWMemStreamBuf::overflow(int_type ch) {
    if (!toMemory())
        return traits_type::eof();
    if (traits_type::eq_int_type(ch, traits_type::eof()))
        return traits_type::not_eof(ch);
    if (!makeRoom(1))
        return traits_type::eof();
    *pptr() = traits_type::to_char_type(ch);
    pbump(1);
    return ch;
}

std::streamsize KWMemStreamBuf::xsputn(const char* from, std::streamsize count) {
    if (count <= 0 || !toMemory())
        return 0;
    // Our own bytes may be written again, and move when the buffer grows.
    const std::less<const char*> before;
    const bool own =
        buffer_ != nullptr && !before(from, buffer_) && before(from, buffer_ + capacity_);
    const std::ptrdiff_t offset = own ? from - buffer_ : 0;
    const auto bytes = static_cast<std::size_t>(count);
    if (!makeRoom(bytes))
        return 0;
    std::memmove(pptr(), own ? buffer_ + offset : from, bytes);
    setPutPosition(putPosition() + bytes);
    return count;
}

KWMemStreamBuf::int_type KWMemStreamBuf::pbackfail(int_type ch) {
    const off_type position = getPosition();
    if (position == 0 || off_type(seekGet(position - 1)) < 0)
        return traits_type::eof();
    const int_type last = underflow();
    const bool any = traits_type::eq_int_type(ch, traits_type::eof());
    if (!traits_type::eq_int_type(last, traits_type::eof()) &&
        (any || traits_type::eq_int_type(ch, last)))
        return last;
    seekGet(position);
    return traits_type::eof();
}

std::streamsize KWMemStreamBuf::showmanyc() {
    if (source_ != nullptr && kept_)
        return sourceEnded_ ? -1 : 0;
    const std::streamsize left = length() - getPosition();
    return left > 0 ? left : -1;
}

KWMemStreamBuf::pos_type KWMemStreamBuf::seekGet(off_type position) {
    const pos_type failed(off_type(-1));
    if (position < 0)
        return failed;
    if (isWindow()) {
        const off_type inWindow = position - windowStart_;
        if (inWindow >= 0 && inWindow <= egptr() - eback()) {
            setg(eback(), eback() + inWindow, egptr());
        } else {
            windowStart_ = position;
            setg(buffer_, buffer_, buffer_);
        }
        return pos_type(position);
    }
    const auto wanted = static_cast<std::size_t>(position);
    if (source_ != nullptr && wanted > end_ && !pull(wanted))
        return failed;
    syncEnd();
    if (wanted > end_)
        return failed;
    setGetPosition(wanted);
    return pos_type(position);
}

KWMemStreamBuf::pos_type KWMemStreamBuf::seekPut(off_type position) {
    syncEnd();
    if (position < 0)
        return pos_type(off_type(-1));
    const auto wanted = static_cast<std::size_t>(position);
    if (wanted <= end_)
        setPutPosition(wanted);
    else if (wanted - end_ <= kMaxPutGap)
        setPutPositionPastEnd(wanted - end_);
    else
        return pos_type(off_type(-1));
    return pos_type(position);
}

KWMemStreamBuf::pos_type KWMemStreamBuf::seekoff(off_type offset, std::ios_base::seekdir way,
                                                 std::ios_base::openmode which) {
    const pos_type failed(off_type(-1));
    const bool get = (which & std::ios_base::in) != 0;
    const bool put = (which & std::ios_base::out) != 0 && !(get && hasSource());
    // Where a write would be may be asked without writing.
    if (put && source_ != nullptr && way == std::ios_base::cur && offset == 0)
        return pos_type(0);
    if ((!get && !put) || (put && !toMemory()))
        return failed;
    off_type origin = 0;
    if (way == std::ios_base::end) {
        origin = length();
    } else if (way == std::ios_base::cur) {
        if (get && put)
            return failed;
        origin = get ? getPosition() : static_cast<off_type>(putPosition());
    }
    if (origin < 0 || (offset > 0 && offset > std::numeric_limits<off_type>::max() - origin))
        return failed;
    const off_type position = origin + offset;
    if (get && off_type(seekGet(position)) < 0)
        return failed;
    return put ? seekPut(position) : pos_type(position);
}

KWMemStreamBuf::pos_type KWMemStreamBuf::seekpos(pos_type position, std::ios_base::openmode which) {
    return seekoff(off_type(position), std::ios_base::beg, which);
}

// --- Searching and sums ---

bool KWMemStreamBuf::searchSeek(const void* bytes, std::size_t count) {
    if (count == 0)
        return true;
    const auto pattern = static_cast<const char*>(bytes);
    // Knuth, Morris, Pratt: no byte of the contents is looked at twice.
    std::vector<std::size_t> border(count, 0);
    for (std::size_t i = 1, k = 0; i < count; ++i) {
        while (k > 0 && pattern[i] != pattern[k])
            k = border[k - 1];
        if (pattern[i] == pattern[k])
            ++k;
        border[i] = k;
    }
    const off_type start = getPosition();
    std::size_t matched = 0;
    for (int_type c = sbumpc(); !traits_type::eq_int_type(c, traits_type::eof()); c = sbumpc()) {
        const char ch = traits_type::to_char_type(c);
        while (matched > 0 && ch != pattern[matched])
            matched = border[matched - 1];
        if (ch == pattern[matched] && ++matched == count) {
            seekGet(getPosition() - static_cast<off_type>(count));
            return true;
        }
    }
    seekGet(start);
    return false;
}

bool KWMemStreamBuf::skipSeek(const void* bytes, std::size_t count) {
    const auto set = static_cast<const char*>(bytes);
    std::array<bool, 256> skipped{};
    for (std::size_t i = 0; i < count; ++i)
        skipped[static_cast<unsigned char>(set[i])] = true;
    int_type c = sgetc();
    while (!traits_type::eq_int_type(c, traits_type::eof()) && skipped[static_cast<std::size_t>(c)])
        c = snextc();
    return !traits_type::eq_int_type(c, traits_type::eof());
}

bool KWMemStreamBuf::seekEOL() {
    for (int_type c = sbumpc(); !traits_type::eq_int_type(c, traits_type::eof()); c = sbumpc()) {
        if (c == '\r' && sgetc() == '\n')
            sbumpc();
        if (c == '\r' || c == '\n')
            return true;
    }
    return false;
}

std::uint32_t KWMemStreamBuf::calcOTFTableChecksum(const void* bytes, std::size_t count) {
    const auto data = static_cast<const std::uint8_t*>(bytes);
    std::uint32_t sum = 0;
    std::size_t i = 0;
    for (; count - i >= 4; i += 4)
        sum += ByteView::loadU32(data + i);
    if (i < count) {
        std::array<std::uint8_t, 4> padded{};
        std::copy(data + i, data + count, padded.begin());
        sum += ByteView::loadU32(padded.data());
    }
    return sum;
}

std::uint32_t KWMemStreamBuf::calcOTFTableChecksum() {
    if (!isWindow()) {
        const std::size_t count = size();
        return calcOTFTableChecksum(buffer_, count);
    }
    std::array<char, 4 * kDefaultPiece> block;
    std::uint32_t sum = 0;
    for (off_type position = 0;;) {
        const std::streamsize got =
            readSource(position, block.data(), static_cast<std::streamsize>(block.size()));
        sum += calcOTFTableChecksum(block.data(), static_cast<std::size_t>(got));
        if (got < static_cast<std::streamsize>(block.size()))
            return sum;
        position += got;
    }
}

} // namespace KWCommonNS
