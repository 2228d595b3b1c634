#pragma once

#include <cstddef>

namespace KWFontService_NS {

// Limits on what a layout table may make us do. Each is far above what honest fonts need.

/// GSUB and GPOS extension subtables inside extension subtables. Honest fonts have one level; an
/// offset of 0 would unwrap itself for ever.
constexpr int kMaxExtensionDepth = 16;

/// Subtables that are asked for a vertical form. Honest fonts have a handful, and each is asked for
/// every character of a vertical text.
constexpr std::size_t kMaxVertSubtables = 1024;

/// How often reading a table may come back to its bytes, on average, and how many bytes any table
/// may have read. Offsets may share a part, and honest tables do (feature tables between language
/// systems, subtables between lookups); a hostile one can share so that a few kilobytes unfold to
/// gigabytes. Coverages are held once however often they are named, so that what honest tables
/// repeat stays far below.
constexpr std::size_t kLayoutReadsOfEachByte = 8;
constexpr std::size_t kLayoutFreeBytes = std::size_t{1} << 20;

/// What an object that is kept costs of the above at least, however few bytes of the file name it.
constexpr std::size_t kLayoutObjectCost = 8;

} // namespace KWFontService_NS
