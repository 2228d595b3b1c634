#include "platform/PathText.h"
#include "platform/Platform.h"
#include "platform/posix/FontconfigFonts.h"

#include <dirent.h>
#include <fcntl.h>
#include <link.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <limits>
#include <system_error>
#include <utility>

static_assert(sizeof(off_t) == 8, "build with 64-bit file offsets");

namespace KWPlatform {

namespace {

class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}

    int get() const { return fd_; }
    int release() { return std::exchange(fd_, -1); }

private:
    int fd_;
};

int openRetrying(const char* path, int flags) {
    int fd = -1;
    do {
        fd = ::open(path, flags | O_RDONLY | O_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

class PosixFileReader final : public FileReader {
public:
    PosixFileReader(Descriptor descriptor, std::uint64_t size)
        : descriptor_(std::move(descriptor)), size_(size) {}

    std::size_t readAt(std::uint64_t offset, void* buffer, std::size_t count) override {
        constexpr std::uint64_t kMaxOffset = std::numeric_limits<off_t>::max();
        if (offset > kMaxOffset)
            return 0;
        count = static_cast<std::size_t>(
            std::min({std::uint64_t{count}, kMaxOffset - offset, std::uint64_t{SSIZE_MAX}}));
        std::size_t done = 0;
        while (done < count) {
            const ssize_t got = ::pread(descriptor_.get(), static_cast<char*>(buffer) + done,
                                        count - done, static_cast<off_t>(offset + done));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                break;
            done += static_cast<std::size_t>(got);
            if (offset + done == size_)
                break; // saves the call that would only tell the end
        }
        return done;
    }
    std::uint64_t size() const override { return size_; }

private:
    Descriptor descriptor_;
    std::uint64_t size_;
};

struct DirectoryCloser {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

void judge(DirectoryEntry& entry, int directoryFd, const dirent& found) {
    switch (found.d_type) {
    case DT_REG:
        return;
    case DT_DIR:
        entry.directory = true;
        return;
    case DT_LNK:
    case DT_UNKNOWN: {
        struct stat info {};
        const bool known = ::fstatat(directoryFd, found.d_name, &info, 0) == 0;
        entry.directory = known && S_ISDIR(info.st_mode);
        entry.system = !known || !(S_ISDIR(info.st_mode) || S_ISREG(info.st_mode));
        return;
    }
    default:
        entry.system = true;
    }
}

std::string homeFolder() {
    // The library changes no environment variable; a host that does so beside us is on its own.
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0')
        return home;
    std::array<char, 16384> buffer;
    passwd record{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &record, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_dir != nullptr)
        return found->pw_dir;
    return {};
}

// XDG Base Directory Specification: a relative path in a variable is ignored.
std::string xdgFolder(const char* variable, const char* below) {
    if (const char* value = std::getenv(variable); value != nullptr && *value == '/')
        return value;
    std::string home = homeFolder();
    return home.empty() ? home : home + below;
}

std::u16string folderText(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return decodeBytes(path);
}

std::string realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real != nullptr ? std::string(real.get()) : path;
}

std::string_view baseName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

struct ModuleSearch {
    std::string soName;
    std::string path;
};

int visitModule(dl_phdr_info* info, std::size_t, void* data) {
    auto& search = *static_cast<ModuleSearch*>(data);
    if (info->dlpi_name == nullptr)
        return 0;
    const std::string_view name = baseName(info->dlpi_name);
    // "libX.so" and "libX.so.17", not "libX.sound".
    if (!name.starts_with(search.soName) ||
        (name.size() > search.soName.size() && name[search.soName.size()] != '.'))
        return 0;
    search.path = info->dlpi_name;
    return 1;
}

std::string programPath() {
    std::string path(256, '\0');
    while (path.size() <= (std::size_t{1} << 20)) {
        const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
        if (length <= 0)
            return {};
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            return path;
        }
        path.resize(path.size() * 2);
    }
    return {};
}

constexpr const char* kNotRegular = "Not a regular file";

class PosixSystem final : public System {
public:
    std::optional<std::vector<DirectoryEntry>> listDirectory(const std::u16string& path) override {
        const auto narrow = narrowPath(path);
        if (!narrow)
            return std::nullopt;
        Descriptor descriptor(openRetrying(narrow->c_str(), O_DIRECTORY | O_NONBLOCK));
        if (descriptor.get() < 0)
            return std::nullopt;
        const std::unique_ptr<DIR, DirectoryCloser> directory(::fdopendir(descriptor.get()));
        if (directory == nullptr)
            return std::nullopt;
        const int fd = descriptor.release();
        std::vector<DirectoryEntry> entries;
        for (;;) {
            const dirent* const found = ::readdir(directory.get());
            if (found == nullptr)
                break;
            const std::string_view name = found->d_name;
            if (name == "." || name == "..")
                continue;
            DirectoryEntry& entry = entries.emplace_back();
            entry.name = decodeBytes(name);
            entry.hidden = name.front() == '.';
            judge(entry, fd, *found);
        }
        return entries;
    }

    std::optional<DirectoryIdentity> directoryIdentity(const std::u16string& path) override {
        struct stat info {};
        if (!statPath(path, info) || !S_ISDIR(info.st_mode))
            return std::nullopt;
        return DirectoryIdentity{std::uint64_t{info.st_dev}, std::uint64_t{info.st_ino}};
    }

    bool isRegularFile(const std::u16string& path) override {
        struct stat info {};
        return statPath(path, info) && S_ISREG(info.st_mode);
    }

    std::unique_ptr<FileReader> openFile(const std::u16string& path, std::string& reason) override {
        const auto narrow = narrowPath(path);
        if (!narrow) {
            reason = "No file can have this name";
            return nullptr;
        }
        struct stat info {};
        // Some devices act when they are opened.
        if (::stat(narrow->c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
            reason = kNotRegular;
            return nullptr;
        }
        // The file may have been exchanged meanwhile. O_NONBLOCK: a pipe without a writer must not
        // hold us up; regular files do not mind.
        Descriptor descriptor(openRetrying(narrow->c_str(), O_NONBLOCK | O_NOCTTY));
        if (descriptor.get() < 0 || ::fstat(descriptor.get(), &info) != 0) {
            reason = std::generic_category().message(errno);
            return nullptr;
        }
        if (!S_ISREG(info.st_mode)) {
            reason = kNotRegular;
            return nullptr;
        }
        return std::make_unique<PosixFileReader>(std::move(descriptor),
                                                 static_cast<std::uint64_t>(info.st_size));
    }

    std::u16string knownFolder(KnownFolder folder) override {
        switch (folder) {
        case KnownFolder::fonts:
            return u"/usr/share/fonts";
        case KnownFolder::appData:
            return folderText(xdgFolder("XDG_CONFIG_HOME", "/.config"));
        case KnownFolder::localAppData:
            return folderText(xdgFolder("XDG_DATA_HOME", "/.local/share"));
        case KnownFolder::userFonts:
            break;
        }
        const std::u16string data = knownFolder(KnownFolder::localAppData);
        return data.empty() ? data : data + u"/fonts";
    }

    RegisteredFontFiles registeredFontFiles() override { return fontconfigFontFiles(); }

    std::optional<RegistryText> registryText(RegistryHive, const std::u16string&,
                                             const std::u16string&) override {
        return std::nullopt;
    }

    std::vector<RegistryText> registryTexts(RegistryHive, const std::u16string&) override {
        return {};
    }

    std::u16string moduleFolder(const std::u16string& moduleName) override {
        ModuleSearch search;
        if (const auto name = narrowPath(moduleName); name && !name->empty()) {
            search.soName = "lib" + name->substr(0, name->rfind('.')) + ".so";
            ::dl_iterate_phdr(visitModule, &search);
        }
        const std::string path = search.path.empty() ? programPath() : realPath(search.path);
        const std::size_t separator = path.rfind('/');
        if (separator == std::string::npos)
            return {};
        return decodeBytes(std::string_view(path).substr(0, std::max<std::size_t>(separator, 1)));
    }

    char16_t preferredSeparator() override { return u'/'; }

private:
    static bool statPath(const std::u16string& path, struct stat& info) {
        const auto narrow = narrowPath(path);
        return narrow && ::stat(narrow->c_str(), &info) == 0;
    }
};

} // namespace

System& nativeSystem() {
    static PosixSystem system;
    return system;
}

std::optional<std::string> narrowPath(std::u16string_view path) {
    if (path.find(u'\0') != std::u16string_view::npos)
        return std::nullopt;
    return encodeBytes(path);
}

} // namespace KWPlatform
