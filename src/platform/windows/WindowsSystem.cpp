#include "platform/LongPath.h"
#include "platform/PathText.h"
#include "platform/Platform.h"
#include "platform/RegistryValue.h"
#include "platform/windows/Registry.h"
#include "platform/windows/WindowsHeader.h"

#include <shlobj.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <system_error>
#include <utility>

namespace KWPlatform {

namespace {

class Handle {
public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    ~Handle() {
        if (*this)
            ::CloseHandle(handle_);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}

    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle_; }

private:
    HANDLE handle_;
};

class FindHandle {
public:
    explicit FindHandle(HANDLE handle) : handle_(handle) {}
    ~FindHandle() {
        if (handle_ != INVALID_HANDLE_VALUE)
            ::FindClose(handle_);
    }
    FindHandle(const FindHandle&) = delete;
    FindHandle& operator=(const FindHandle&) = delete;

    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle_; }

private:
    HANDLE handle_;
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr const char* kNotRegular = "Not a regular file";
constexpr const char* kNoSuchName = "No file can have this name";

// Calls `fill(buffer, units)` with a growing buffer until its answer, the length of a text or, when
// the buffer is too small, some greater or equal number, fits; empty when it answers 0.
template <typename Fill>
std::u16string grownText(Fill fill) {
    constexpr std::size_t kMostUnits = 0x10000; // NT's limit for a path is 32767
    std::u16string text(MAX_PATH, u'\0');
    while (text.size() <= kMostUnits) {
        const DWORD length = fill(toWide(text.data()), static_cast<DWORD>(text.size()));
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize(std::max<std::size_t>(text.size() * 2, length));
    }
    return {};
}

// The path as the system's calls take it, whatever its length; nothing for what no file can have.
std::optional<std::u16string> systemPath(const std::u16string& path) {
    if (path.empty() || path.find(u'\0') != std::u16string::npos)
        return std::nullopt;
    return longPath(grownText([&path](wchar_t* buffer, DWORD units) {
        return ::GetFullPathNameW(toWide(path), units, buffer, nullptr);
    }));
}

std::uint64_t joined(DWORD high, DWORD low) {
    return (std::uint64_t{high} << 32) | low;
}

// English, as of the C library: what the system says in the language of the user comes in the bytes
// of a code page.
std::string reasonOf(DWORD code) {
    const std::error_condition known =
        std::error_code(static_cast<int>(code), std::system_category()).default_error_condition();
    return known.category() == std::generic_category() ? known.message()
                                                       : "System error " + std::to_string(code);
}

// Whoever answers on the far side of a pipe may learn who asks, not act in his name.
constexpr DWORD kOpenFlags =
    FILE_FLAG_BACKUP_SEMANTICS | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION;

// A handle that tells about a file or folder without reading it.
Handle openForQuery(const std::u16string& longPath) {
    return Handle(::CreateFileW(toWide(longPath), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                OPEN_EXISTING, kOpenFlags, nullptr));
}

bool queryFile(const Handle& file, BY_HANDLE_FILE_INFORMATION& info) {
    return file && ::GetFileType(file.get()) == FILE_TYPE_DISK &&
           ::GetFileInformationByHandle(file.get(), &info) != 0;
}

bool isDirectory(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// A link or junction in a listing; other reparse points are files that the system brings when they
// are opened.
bool isLink(const WIN32_FIND_DATAW& found) {
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           IsReparseTagNameSurrogate(found.dwReserved0);
}

DirectoryEntry entryOf(const WIN32_FIND_DATAW& found, const std::u16string& folder) {
    DirectoryEntry entry;
    entry.name = toView(found.cFileName);
    entry.directory = isDirectory(found.dwFileAttributes);
    entry.hidden = (found.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
    entry.system = (found.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM) != 0;
    if (isLink(found)) {
        BY_HANDLE_FILE_INFORMATION target{};
        const bool known = queryFile(openForQuery(pathIn(folder, entry.name)), target);
        entry.directory = known && isDirectory(target.dwFileAttributes);
        entry.system = entry.system || !known;
    }
    return entry;
}

class WindowsFileReader final : public FileReader {
public:
    WindowsFileReader(Handle file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

    std::size_t readAt(std::uint64_t offset, void* buffer, std::size_t count) override {
        constexpr std::uint64_t kMaxOffset = std::numeric_limits<std::int64_t>::max();
        constexpr std::size_t kMostAtOnce = std::size_t{1} << 30; // a call counts in 32 bits
        if (offset > kMaxOffset)
            return 0;
        count = static_cast<std::size_t>(std::min<std::uint64_t>(count, kMaxOffset - offset));
        std::size_t done = 0;
        while (done < count) {
            const std::uint64_t from = offset + done;
            OVERLAPPED place{};
            place.Offset = static_cast<DWORD>(from & 0xFFFFFFFF);
            place.OffsetHigh = static_cast<DWORD>(from >> 32);
            DWORD got = 0;
            if (::ReadFile(file_.get(), static_cast<char*>(buffer) + done,
                           static_cast<DWORD>(std::min(count - done, kMostAtOnce)), &got,
                           &place) == 0 ||
                got == 0)
                break;
            done += got;
            if (offset + done == size_)
                break; // saves the call that would only tell the end
        }
        return done;
    }
    std::uint64_t size() const override { return size_; }

private:
    Handle file_;
    std::uint64_t size_;
};

std::u16string folderAbove(std::u16string_view path) {
    const std::size_t separator = path.find_last_of(u"\\/");
    return std::u16string(path.substr(0, separator == std::u16string_view::npos ? 0 : separator));
}

std::u16string shellFolder(int folder) {
    std::array<wchar_t, MAX_PATH> path{};
    if (::SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_DEFAULT, path.data()) != S_OK)
        return {};
    std::u16string text(toView(path.data()));
    while (text.size() > 3 && text.back() == u'\\') // "C:\" keeps it
        text.pop_back();
    return text;
}

std::vector<std::u16string> fontList(const std::u16string& subkey) {
    std::vector<std::u16string> files;
    for (const RegistryText& value :
         readRegistryTexts(RegistryHive::localMachine,
                           u"software\\microsoft\\windows nt\\currentversion\\" + subkey)) {
        if (std::u16string file = registeredFontFile(value); !file.empty())
            files.push_back(std::move(file));
    }
    return files;
}

class WindowsSystem final : public System {
public:
    std::optional<std::vector<DirectoryEntry>> listDirectory(const std::u16string& path) override {
        const auto folder = systemPath(path);
        if (!folder)
            return std::nullopt;
        WIN32_FIND_DATAW found{};
        const FindHandle search(::FindFirstFileW(toWide(pathIn(*folder, u"*")), &found));
        if (!search)
            return std::nullopt;
        std::vector<DirectoryEntry> entries;
        do {
            const std::u16string_view name = toView(found.cFileName);
            if (name != u"." && name != u"..")
                entries.push_back(entryOf(found, *folder));
        } while (::FindNextFileW(search.get(), &found) != 0);
        return entries;
    }

    std::optional<DirectoryIdentity> directoryIdentity(const std::u16string& path) override {
        const auto folder = systemPath(path);
        BY_HANDLE_FILE_INFORMATION info{};
        if (!folder || !queryFile(openForQuery(*folder), info) ||
            !isDirectory(info.dwFileAttributes))
            return std::nullopt;
        const std::uint64_t index = joined(info.nFileIndexHigh, info.nFileIndexLow);
        if (index == 0) // some redirectors do not tell folders apart
            return std::nullopt;
        return DirectoryIdentity{info.dwVolumeSerialNumber, index};
    }

    bool isRegularFile(const std::u16string& path) override {
        const auto file = systemPath(path);
        BY_HANDLE_FILE_INFORMATION info{};
        return file && queryFile(openForQuery(*file), info) && !isDirectory(info.dwFileAttributes);
    }

    std::unique_ptr<FileReader> openFile(const std::u16string& path, std::string& reason) override {
        const auto name = systemPath(path);
        if (!name) {
            reason = kNoSuchName;
            return nullptr;
        }
        // With the flag a folder opens as well, and can be told from what may not be opened.
        Handle file(::CreateFileW(toWide(*name), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                  kOpenFlags, nullptr));
        if (!file) {
            reason = reasonOf(::GetLastError());
            return nullptr;
        }
        BY_HANDLE_FILE_INFORMATION info{};
        if (!queryFile(file, info) || isDirectory(info.dwFileAttributes)) {
            reason = kNotRegular;
            return nullptr;
        }
        return std::make_unique<WindowsFileReader>(std::move(file),
                                                   joined(info.nFileSizeHigh, info.nFileSizeLow));
    }

    std::u16string knownFolder(KnownFolder folder) override {
        switch (folder) {
        case KnownFolder::fonts:
            return shellFolder(CSIDL_FONTS);
        case KnownFolder::appData:
            return shellFolder(CSIDL_APPDATA);
        case KnownFolder::localAppData:
            return shellFolder(CSIDL_LOCAL_APPDATA);
        case KnownFolder::userFonts:
            break;
        }
        const std::u16string data = knownFolder(KnownFolder::localAppData);
        return data.empty() ? data : data + u"\\Microsoft\\Windows\\Fonts";
    }

    RegisteredFontFiles registeredFontFiles() override {
        return {fontList(u"Fonts"), fontList(u"Type 1 Installer\\Type 1 Fonts")};
    }

    std::optional<RegistryText> registryText(RegistryHive hive, const std::u16string& key,
                                             const std::u16string& name) override {
        return readRegistryText(hive, key, name);
    }

    std::vector<RegistryText> registryTexts(RegistryHive hive, const std::u16string& key) override {
        return readRegistryTexts(hive, key);
    }

    std::u16string moduleFolder(const std::u16string& moduleName) override {
        // Without a name the call would answer the program, and a name need not be loaded.
        const HMODULE module =
            moduleName.empty() ? nullptr : ::GetModuleHandleW(toWide(moduleName));
        return folderAbove(grownText([module](wchar_t* buffer, DWORD units) {
            return ::GetModuleFileNameW(module, buffer, units);
        }));
    }

    char16_t preferredSeparator() override { return u'\\'; }
};

} // namespace

System& nativeSystem() {
    static WindowsSystem system;
    return system;
}

std::optional<std::string> narrowPath(std::u16string_view path) {
    // What other code page than ASCII a narrow call reads depends on the machine and the process.
    const bool plain = std::ranges::all_of(path, [](char16_t c) { return c != 0 && c < 0x80; });
    if (!plain || path.size() >= MAX_PATH)
        return std::nullopt;
    return std::string(path.begin(), path.end());
}

} // namespace KWPlatform
