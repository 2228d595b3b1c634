#include "fonts/SfntReader.h"

#include "fonts/FontErrors.h"

#include <algorithm>
#include <limits>

namespace KWFontService_NS {

namespace {

/// How much memory a length is trusted for before its bytes have arrived.
constexpr std::size_t kTrustedBytes = std::size_t{1} << 20;

} // namespace

std::size_t SfntReader::readUpTo(std::uint64_t offset, std::span<std::uint8_t> out) {
    if (offset > static_cast<std::uint64_t>(std::numeric_limits<std::streamoff>::max()))
        return 0;
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(offset), std::ios::beg);
    if (!stream_)
        return 0;
    stream_.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(out.size()));
    return static_cast<std::size_t>(stream_.gcount());
}

bool SfntReader::read(std::uint64_t offset, std::span<std::uint8_t> out) {
    return readUpTo(offset, out) == out.size();
}

std::size_t SfntReader::readUpTo(std::uint64_t offset, std::size_t length,
                                 std::vector<std::uint8_t>& out) {
    out.clear();
    while (out.size() < length) {
        const std::size_t have = out.size();
        const std::size_t step = std::min(length - have, std::max(have, kTrustedBytes));
        out.resize(have + step);
        const std::size_t got = readUpTo(offset + have, std::span(out).subspan(have, step));
        if (got < step) {
            out.resize(have + got);
            break;
        }
    }
    return out.size();
}

bool SfntReader::read(std::uint64_t offset, std::size_t length, std::vector<std::uint8_t>& out) {
    return readUpTo(offset, length, out) == length;
}

bool SfntReader::readTable(std::uint32_t tag, std::vector<std::uint8_t>& out) {
    const TTI_TableRecord* record = table(tag);
    return record != nullptr && read(record->offset, record->length, out);
}

bool SfntReader::fail(FS_ERROR code, const UnicodeString& detail) {
    if (owner_ != nullptr)
        return owner_->fontError(error_, code, detail);
    error_ = makeFontError(code, detail, UnicodeString());
    return false;
}

} // namespace KWFontService_NS
