#include "TempDir.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

namespace KWTest {

namespace fs = std::filesystem;

TempDir::TempDir() {
    // Several test programs run at once; the folder that could be made anew is ours.
    std::random_device random;
    do {
        path_ = fs::temp_directory_path() / ("kwtest-" + std::to_string(random()));
    } while (!fs::create_directory(path_));
}

TempDir::~TempDir() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

fs::path TempDir::write(std::string_view name, const Bytes& data) const {
    return write(name, std::string_view(data.str()));
}

fs::path TempDir::write(std::string_view name, std::string_view text) const {
    const fs::path file = path(name);
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out)
        throw std::runtime_error("cannot write " + file.string());
    return file;
}

fs::path TempDir::makeFolder(std::string_view name) const {
    fs::create_directories(path(name));
    return path(name);
}

Bytes readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in || !fs::is_regular_file(path))
        throw std::runtime_error("cannot read " + path.string());
    return Bytes(std::vector<std::uint8_t>{std::istreambuf_iterator<char>(in), {}});
}

} // namespace KWTest
