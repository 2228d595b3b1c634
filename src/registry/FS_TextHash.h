#pragma once

#include <KWFontService17/FS_Export.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace KWFontService_NS {

struct FS_TextHash {
    std::size_t operator()(const UnicodeString& text) const {
        return static_cast<std::uint32_t>(text.hashCode());
    }
};

template <typename T>
using FS_TextMap = std::unordered_map<UnicodeString, T, FS_TextHash>;

/// Buckets that the maps of names start with.
inline constexpr std::size_t kTextMapBuckets = 8;

} // namespace KWFontService_NS
