#include "Options.h"

#include <charconv>
#include <cstddef>
#include <stdexcept>

namespace fontlist {

const std::string_view kUsage = R"(usage: fontlist [options] [NAME...]

Lists the faces that the font service knows, or those that go by a NAME: a family, another name of
a font, the name of its file, or an alias. Of @NAME those that can be set in columns are listed.

  --png FILE            draw the faces, too: a specimen sheet
  --text TEXT           what to draw (default: some words in scripts that the face serves)
  --dpi N               resolution of the sheet, 36 to 600 (default 110)
  --config FILE         configuration of the font service
  --folder FOLDER       list the fonts in that folder, too; may be repeated
  --extra NAME=FILE     bring a font along, as a document does; may be repeated
  --help                show this
)";

namespace {

unsigned parseDpi(const std::string& text) {
    constexpr unsigned kLeast = 36;
    constexpr unsigned kMost = 600;
    unsigned dpi = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, dpi);
    if (error != std::errc() || rest != end || dpi < kLeast || dpi > kMost)
        throw std::invalid_argument("--dpi wants a number from 36 to 600, not '" + text + "'");
    return dpi;
}

Options::Brought parseBrought(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == text.size())
        throw std::invalid_argument("--extra wants NAME=FILE, not '" + text + "'");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == arguments.size())
                throw std::invalid_argument(argument + " wants a value");
            return arguments[++i];
        };
        if (argument == "--help")
            options.help = true;
        else if (argument == "--png")
            options.pngPath = value();
        else if (argument == "--text")
            options.text = value();
        else if (argument == "--dpi")
            options.dpi = parseDpi(value());
        else if (argument == "--config")
            options.config = value();
        else if (argument == "--folder")
            options.folders.push_back(value());
        else if (argument == "--extra")
            options.brought.push_back(parseBrought(value()));
        else if (argument.empty() || argument.front() == '-')
            throw std::invalid_argument("there is no option '" + argument + "'");
        else
            options.names.push_back(argument);
    }
    return options;
}

} // namespace fontlist
