#pragma once

#include <cstddef>
#include <string>

namespace examples {

/// Writes a whole file. Throws std::runtime_error when that does not work out, and then leaves no
/// half-written file behind.
void writeFile(const std::string& path, const void* data, std::size_t size);

} // namespace examples
