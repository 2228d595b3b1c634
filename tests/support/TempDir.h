#pragma once

#include "Bytes.h"
#include "Paths.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace KWTest {

/// False on Windows, where making a symbolic link is a right that programs seldom have.
#if defined(_WIN32)
inline constexpr bool kSymbolicLinks = false;
#else
inline constexpr bool kSymbolicLinks = true;
#endif

/// A scratch folder, removed with everything in it at the end of its scope.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// @param name UTF-8 on every system; on posix any bytes
    std::filesystem::path path(std::string_view name) const {
        return path_ / std::u8string(name.begin(), name.end());
    }

    /// Writes a file, with the folders above it, and answers its path.
    std::filesystem::path write(std::string_view name, const Bytes& data) const;
    std::filesystem::path write(std::string_view name, std::string_view text) const;
    std::filesystem::path makeFolder(std::string_view name) const;

    icu::UnicodeString text(std::string_view name) const { return pathText(path(name)); }
    KWCommonNS::KWUri uri(std::string_view name) const { return fileUri(path(name)); }

private:
    std::filesystem::path path_;
};

/// All bytes of a file; throws std::runtime_error when it cannot be read.
Bytes readFile(const std::filesystem::path& path);

} // namespace KWTest
