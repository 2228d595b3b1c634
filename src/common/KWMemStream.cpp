#include "KWCommon15/KWMemStream.h"

#include <cstring>

namespace KWCommonNS {

KWMemStream::KWMemStream(std::istream* source, std::size_t size, bool keepSource)
    : std::basic_iostream<char>(nullptr), buffer_(source, size, keepSource) {
    init(&buffer_);
}

KWMemStream::~KWMemStream() = default;

KWMemStream& KWMemStream::writeStr(const char* text) {
    clear(rdstate() & ~eofbit);
    if (text != nullptr)
        write(text, static_cast<std::streamsize>(std::strlen(text)));
    return *this;
}

KWMemStream& KWMemStream::append(const void* bytes, std::size_t count) {
    clear(rdstate() & ~eofbit);
    if (seekp(0, std::ios_base::end))
        write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    return *this;
}

KWMemStream& KWMemStream::append(const std::string& bytes) {
    return append(bytes.data(), bytes.size());
}

KWMemStream& KWMemStream::operator+=(const char* text) {
    return text != nullptr ? append(text, std::strlen(text)) : *this;
}

std::streamsize KWMemStream::copyStream(std::istream& from, std::streamsize count) {
    if (fail() || from.rdbuf() == &buffer_)
        return 0;
    const std::streamsize done = buffer_.copyStream(from, count);
    // A source that simply ended says so.
    if (done < count && !from.eof() && !from.fail())
        setstate(std::ios_base::badbit);
    return done;
}

void KWMemStream::remove() {
    buffer_.remove();
    clear();
}

} // namespace KWCommonNS
