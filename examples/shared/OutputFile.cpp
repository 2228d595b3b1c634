#include "OutputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace examples {

void writeFile(const std::string& path, const void* data, std::size_t size) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    const bool opened = file.is_open();
    file.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    file.close();
    if (file)
        return;
    const int reason = errno;
    // A device such as /dev/full is not ours to remove.
    std::error_code ignored;
    if (opened && std::filesystem::is_regular_file(path, ignored))
        std::filesystem::remove(path, ignored);
    throw std::runtime_error(
        "cannot write " + path +
        (reason != 0 ? ": " + std::string(std::strerror(reason)) : std::string()));
}

} // namespace examples
