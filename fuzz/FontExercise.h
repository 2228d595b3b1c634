#pragma once

#include <cstddef>
#include <cstdint>

namespace KWFuzz {

/// Scans a font file in every way there is, loads it, calls every operation of its interface with
/// several arguments, the writers among them, and draws some glyphs. Any answer will do; what is
/// looked for is what sanitizers see.
void exerciseFont(const std::uint8_t* data, std::size_t size);

} // namespace KWFuzz
