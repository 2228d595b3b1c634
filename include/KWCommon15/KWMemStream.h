#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWMemStreamBuf.h"

#include <cstddef>
#include <istream>
#include <string>

namespace KWCommonNS {

/// A seekable stream over a growing block of memory, or over a source that it reads on demand; see
/// KWMemStreamBuf for the states. Used by one thread at a time.
class KWCOMMON_API KWMemStream : public std::basic_iostream<char> {
public:
    /// @param source     stream to read from, or null for an empty memory stream
    /// @param size       first capacity without a source, size of the window with one; 0: default
    /// @param keepSource false: the stream owns `source` and deletes it
    explicit KWMemStream(std::istream* source = nullptr, std::size_t size = 0,
                         bool keepSource = true);
    ~KWMemStream() override;
    KWMemStream(const KWMemStream&) = delete;
    KWMemStream& operator=(const KWMemStream&) = delete;

    KWMemStreamBuf* rdbuf() { return &buffer_; }

    /// Total number of bytes, whatever the positions.
    std::streamsize length() { return buffer_.length(); }
    /// The bytes in memory, `size()` of them, valid until the next write; null when there are none.
    const char* data() { return buffer_.data(); }
    std::size_t size() { return buffer_.size(); }

    // These write although reading has come to the end (`eofbit`), unlike the standard operations.

    /// Writes the characters up to the NUL at the put position; null writes nothing.
    KWMemStream& writeStr(const char* text);
    /// Writes at the end of the contents and leaves the put position there.
    KWMemStream& append(const std::string& bytes);
    KWMemStream& append(const void* bytes, std::size_t count);
    KWMemStream& operator+=(const std::string& bytes) { return append(bytes); }
    KWMemStream& operator+=(const char* text);
    KWMemStream& operator+=(char ch) { return append(&ch, 1); }
    /// A number is no character; give a `char`.
    KWMemStream& operator+=(int number) = delete;
    /// See KWMemStreamBuf::copyStream(); a shortfall sets `badbit` when memory ran out only.
    std::streamsize copyStream(std::istream& from,
                               std::streamsize count = KWMemStreamBuf::kToTheEnd);
    /// Throws away the contents and clears the stream's state.
    void remove();

private:
    KWMemStreamBuf buffer_;
};

} // namespace KWCommonNS
