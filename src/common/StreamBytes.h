#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <limits>
#include <span>
#include <vector>

// Both libraries read this way, and neither exports it to the other.

namespace KWCommonNS {

/// How much memory a length is trusted for before its bytes have arrived.
inline constexpr std::size_t kTrustedBytes = std::size_t{1} << 20;

/// Reads a stream from `offset` on, whatever state it is in; answers how many bytes it had.
inline std::size_t readStreamAt(std::istream& stream, std::uint64_t offset,
                                std::span<std::uint8_t> out) {
    if (offset > static_cast<std::uint64_t>(std::numeric_limits<std::streamoff>::max()))
        return 0;
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(offset), std::ios::beg);
    if (!stream)
        return 0;
    stream.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(out.size()));
    return static_cast<std::size_t>(stream.gcount());
}

/// Makes `out` the `length` bytes from `offset` on, or as many as there are. Memory grows with the
/// bytes that really arrive, so a length that lies costs little.
inline std::size_t readStreamAt(std::istream& stream, std::uint64_t offset, std::size_t length,
                                std::vector<std::uint8_t>& out) {
    out.clear();
    while (out.size() < length) {
        const std::size_t have = out.size();
        const std::size_t step = std::min(length - have, std::max(have, kTrustedBytes));
        out.resize(have + step);
        const std::size_t got =
            readStreamAt(stream, offset + have, std::span(out).subspan(have, step));
        if (got < step) {
            out.resize(have + got);
            break;
        }
    }
    return out.size();
}

/// How long a stream is, whatever state it is in; 0 where it cannot tell.
inline std::uint64_t streamSize(std::istream& stream) {
    stream.clear();
    stream.seekg(0, std::ios::end);
    const std::streamoff end = stream.tellg();
    return end > 0 ? static_cast<std::uint64_t>(end) : 0;
}

/// Appends the next `length` bytes of a stream to `out`, or as many as there are; answers how many.
/// Memory grows with the bytes that really arrive.
inline std::size_t appendFromStream(std::istream& stream, std::size_t length,
                                    std::vector<std::uint8_t>& out) {
    std::size_t total = 0;
    while (total < length) {
        const std::size_t have = out.size();
        const std::size_t step = std::min(length - total, std::max(total, kTrustedBytes));
        out.resize(have + step);
        stream.read(reinterpret_cast<char*>(out.data() + have), static_cast<std::streamsize>(step));
        const auto got = static_cast<std::size_t>(stream.gcount());
        total += got;
        if (got < step) {
            out.resize(have + got);
            break;
        }
    }
    return total;
}

} // namespace KWCommonNS
