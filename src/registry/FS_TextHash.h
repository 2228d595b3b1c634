#pragma once

#include <KWFontService17/FS_Export.h>

#include <cstddef>
#include <unordered_map>

namespace KWFontService_NS {

/// Hash of a text under a key that the process draws once (SipHash-1-3). Names come from fonts that
/// anybody may have made: with a hash that can be foretold, such as ICU's, a few of them fill one
/// bucket with thousands of names.
struct FS_TextHash {
    std::size_t operator()(const UnicodeString& text) const noexcept;
};

template <typename T>
using FS_TextMap = std::unordered_map<UnicodeString, T, FS_TextHash>;

/// Buckets that the maps of names start with.
inline constexpr std::size_t kTextMapBuckets = 8;

} // namespace KWFontService_NS
