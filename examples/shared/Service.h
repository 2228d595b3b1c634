#pragma once

#include <string>
#include <vector>

namespace examples {

/// The path of a configuration as the service takes it, for which a relative one starts at the
/// folder of the library; empty for the default one.
std::string configPath(const std::string& config);

/// What "@@HOME@@" in a configuration stands for; may be null.
const char* homePath();

/// Opens the font service with a configuration. Throws std::runtime_error when there is none at
/// that place or the service refuses it.
/// @return  messages about what went wrong without stopping it
std::vector<std::string> openService(const std::string& config);

} // namespace examples
