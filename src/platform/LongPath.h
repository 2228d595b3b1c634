#pragma once

#include <optional>
#include <string>
#include <string_view>

/// @file
/// The form in which Windows takes paths of any length. No call to a system, so that it is tested
/// on all of them.

namespace KWPlatform {

/// A full path as Windows resolves it ("C:\x", "\\server\share\x") with the prefix that lifts the
/// limit of 260 units ("\\?\C:\x", "\\?\UNC\server\share\x"). One that has the prefix stays.
/// @return nothing for a path that leads to no file system: devices ("\\.\NUL"), relative paths and
///         texts with a NUL
std::optional<std::u16string> longPath(std::u16string_view fullPath);

/// Something in a folder. With the prefix the system resolves nothing, so there is one separator
/// exactly, also where the folder ends in one.
std::u16string pathIn(std::u16string_view folder, std::u16string_view name);

} // namespace KWPlatform
