// Runs every file of the folders named on the command line through a fuzz target. A folder without
// files is an error: a replay that replays nothing tells nothing.

#include "FuzzTarget.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    // A copy of exactly this size, so that a sanitizer sees the first byte too many.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

} // namespace

int main(int argc, char** argv) {
    try {
        for (int i = 1; i < argc; ++i) {
            const auto files = filesIn(argv[i]);
            if (files.empty()) {
                std::fprintf(stderr, "no input in %s\n", argv[i]);
                return 1;
            }
            for (const auto& file : files) {
                // Named before it runs: a crash then says which input it was.
                std::printf("%s\n", file.string().c_str());
                std::fflush(stdout);
                replay(file);
            }
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return argc > 1 ? 0 : 1;
}
