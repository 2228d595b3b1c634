#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fontlist {

struct Options {
    std::vector<std::string> names{}; // none: all fonts
    std::string config{};             // of the font service; empty: its default
    std::vector<std::string> folders{};
    struct Brought {
        std::string family;
        std::string file;
    };
    std::vector<Brought> brought{}; // fonts of a document
    std::string pngPath{};          // empty: no sheet
    std::string text{};             // of the sheet; empty: by script
    unsigned dpi = 110;             // of the sheet
    bool help = false;
};

/// Throws std::invalid_argument when the arguments make no sense.
Options parseOptions(const std::vector<std::string>& arguments);

extern const std::string_view kUsage;

} // namespace fontlist
