#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// The seam to the operating system. Nothing else in the tree includes one of its headers.
///
/// Paths and names are UTF-16, in the form of PathText.h where a file system speaks bytes.
/// No operation throws but `std::bad_alloc`; what cannot be had is an empty answer.

namespace KWPlatform {

struct DirectoryEntry {
    std::u16string name;
    bool directory = false;
    bool hidden = false;
    /// Not meant for programs: on posix neither a regular file nor a directory.
    bool system = false;
};

/// Tells a directory from every other one, whatever the path that led to it.
struct DirectoryIdentity {
    std::uint64_t device = 0;
    std::uint64_t file = 0;

    auto operator<=>(const DirectoryIdentity&) const = default;
};

enum class KnownFolder {
    fonts,        ///< the fonts of all users
    userFonts,    ///< the user's own fonts
    appData,      ///< settings that follow the user
    localAppData, ///< data of the user on this machine
};

/// The font files that the system has registered, in its order. Full paths on posix; on Windows
/// what the registry has, which may be a bare name or nothing that exists.
struct RegisteredFontFiles {
    std::vector<std::u16string> fonts; ///< sfnt files
    std::vector<std::u16string> type1; ///< metrics files (AFM or PFM) of Type 1 fonts
};

enum class RegistryHive { localMachine, currentUser };
enum class RegistryType { string, multiString };

struct RegistryText {
    std::u16string name;
    RegistryType type = RegistryType::string;
    /// The data up to its end without the closing NULs; a multi-string keeps the NULs within.
    std::u16string text;
};

/// An open regular file, read at stated positions. May be used from several threads at once.
class FileReader {
public:
    virtual ~FileReader() = default;

    /// Reads up to `count` bytes from `offset` on.
    /// @return the bytes read: fewer at the end of the file, also where the file has become shorter
    ///         since it was opened, and after an error
    virtual std::size_t readAt(std::uint64_t offset, void* buffer, std::size_t count) = 0;
    /// Length of the file when it was opened.
    virtual std::uint64_t size() const = 0;
};

/// The operating system. Thread-safe.
class System {
public:
    virtual ~System() = default;

    /// Entries of a directory in the order of the file system, without "." and "..". A link is
    /// judged by what it leads to; one that leads nowhere counts as system.
    /// @return nothing when the directory cannot be read; where that breaks off, what was read
    virtual std::optional<std::vector<DirectoryEntry>>
    listDirectory(const std::u16string& path) = 0;
    /// @return nothing when `path` is no directory, or the system does not tell them apart
    virtual std::optional<DirectoryIdentity> directoryIdentity(const std::u16string& path) = 0;
    /// True when `path` leads to a regular file.
    virtual bool isRegularFile(const std::u16string& path) = 0;
    /// Opens a regular file by its exact name. Anything else, devices and pipes among them, is
    /// refused without waiting.
    /// @return null when it cannot be opened; `reason` then says why
    virtual std::unique_ptr<FileReader> openFile(const std::u16string& path,
                                                 std::string& reason) = 0;
    /// @return the path without a closing separator; empty when there is none
    virtual std::u16string knownFolder(KnownFolder folder) = 0;
    /// Both lists at once, since the system may have to read all fonts to tell them.
    virtual RegisteredFontFiles registeredFontFiles() = 0;
    /// One text value of a key; nothing when it is not there or is no text.
    virtual std::optional<RegistryText> registryText(RegistryHive hive, const std::u16string& key,
                                                     const std::u16string& name) = 0;
    /// All text values of a key in the order of the registry.
    virtual std::vector<RegistryText> registryTexts(RegistryHive hive,
                                                    const std::u16string& key) = 0;
    /// Folder where a loaded module lies, without a closing separator; on posix with links
    /// resolved.
    /// @param moduleName its file name on Windows, "X.dll"; on posix "libX.so" and its versions are
    ///                   meant. The folder of the program when no such module is loaded
    virtual std::u16string moduleFolder(const std::u16string& moduleName) = 0;
    /// What stands between the parts of a path: "/" or "\". That of the real system, unless a
    /// double says otherwise.
    virtual char16_t preferredSeparator();
};

/// The system in use: the real one unless a test has put another in its place.
System& system();
/// The real operating system.
System& nativeSystem();

/// Puts a double in the system's place for its own lifetime. For tests, while nothing else runs.
class SystemOverride {
public:
    explicit SystemOverride(System& replacement);
    ~SystemOverride();
    SystemOverride(const SystemOverride&) = delete;
    SystemOverride& operator=(const SystemOverride&) = delete;

private:
    System* previous_;
};

/// That of the system in use.
char16_t preferredSeparator();

/// A path as other libraries take it (`const char*`), for opening a file by it; nothing when it has
/// no such form. On Windows only short ASCII paths have one: what other bytes mean there differs
/// from machine to machine.
std::optional<std::string> narrowPath(std::u16string_view path);

} // namespace KWPlatform
