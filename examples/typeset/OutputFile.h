#pragma once

#include <cstddef>
#include <string>

namespace typeset {

/// Writes a whole file. Throws `Failure` (output) when that does not work out, and then leaves no
/// half-written file behind.
void writeFile(const std::string& path, const void* data, std::size_t size);

} // namespace typeset
