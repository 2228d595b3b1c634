#pragma once

#include "Bytes.h"

#include <filesystem>
#include <string_view>

namespace KWTest {

/// A table of an sfnt file, or of the first face of a collection, as the file has it; empty when
/// there is none, and of a file that is no such font.
Bytes fontTable(const std::filesystem::path& file, std::string_view tag);

} // namespace KWTest
