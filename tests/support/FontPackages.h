#pragma once

#include <filesystem>
#include <span>
#include <string_view>

namespace KWTest {

/// A font file that a Debian package installs.
struct PackagedFont {
    std::string_view name;    // what tests call it
    std::string_view package; // what to install when it is missing
    std::string_view path;
};

/// Every font that tests may use.
std::span<const PackagedFont> packagedFonts();

/// The file of a packaged font. A name that is not in the list, or a font that is not installed,
/// throws std::runtime_error with the package to install, and so fails the test.
std::filesystem::path packagedFont(std::string_view name);

} // namespace KWTest
