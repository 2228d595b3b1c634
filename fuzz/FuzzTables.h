#pragma once

#include <array>
#include <string_view>

namespace KWFuzz {

/// Tables that the target `table` replaces in a sound font; the first byte of an input is an index.
inline constexpr std::array<std::string_view, 22> kFuzzTables{
    "cmap", "kern", "GDEF", "GSUB", "GPOS", "mort", "glyf", "loca", "hmtx", "name", "OS/2",
    "post", "vhea", "vmtx", "VORG", "head", "hhea", "maxp", "CFF ", "MATH", "fpgm", "prep"};

} // namespace KWFuzz
