#pragma once

#include <cstdint>

namespace KWFontService_NS {

/// How many times its own size one call of a writer may read of a font file. Tables and glyphs of
/// honest fonts do not overlap, but for bitmap tables under two tags; reading on over small gaps
/// between glyphs takes the file once more. Overlapping lies would otherwise make gigabytes of a
/// few thousand bytes.
inline constexpr std::uint64_t kMaxEmbedReadFactor = 4;

} // namespace KWFontService_NS
