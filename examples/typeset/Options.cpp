#include "Options.h"

#include "Failure.h"

#include <charconv>

namespace typeset {

const char* const kUsage = R"(usage: typeset [options] -o FILE.pdf TEXT

Sets TEXT, a UTF-8 file or - for standard input, into a PDF. Blank lines separate paragraphs;
a line that begins with "# " is a heading, one that begins with "## " a lesser one.

  -o FILE.pdf         the PDF to write
  --png FILE          draw the first lines as a picture, too
  --font FILE         a TrueType font file (default: DejaVu Sans, where it is installed)
  --size PT           size of the text, 4 to 72 points (default 10.5)
  --dpi N             resolution of the picture, 36 to 1200 (default 150)
  --ragged            lines of natural length instead of justified ones
  --embed-whole-font  embed the font file as it is instead of a subset
  --help              show this

exit codes: 0 done, 1 wrong usage, 2 font, 3 text, 4 output
)";

namespace {

template <typename Number>
Number parseNumber(const std::string& option, const std::string& text, Number least, Number most) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    // Written so that "nan" is out of range, too.
    if (error != std::errc{} || stop != end || !(value >= least && value <= most)) {
        throw Failure(ExitCode::usage,
                      option + " wants a number from " + std::to_string(static_cast<int>(least)) +
                          " to " + std::to_string(static_cast<int>(most)) + ", not '" + text + "'");
    }
    return value;
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    std::vector<std::string> files;
    bool onlyFiles = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == arguments.size() || arguments[i + 1].empty())
                throw Failure(ExitCode::usage, argument + " wants a value");
            return arguments[++i];
        };
        if (onlyFiles || argument == "-" || !argument.starts_with('-')) {
            files.push_back(argument);
        } else if (argument == "--") {
            onlyFiles = true;
        } else if (argument == "--help" || argument == "-h") {
            options.help = true;
            return options;
        } else if (argument == "-o") {
            options.pdfPath = value();
        } else if (argument == "--png") {
            options.pngPath = value();
        } else if (argument == "--font") {
            options.fontPath = value();
        } else if (argument == "--size") {
            options.size = parseNumber(argument, value(), 4.0, 72.0);
        } else if (argument == "--dpi") {
            options.dpi = parseNumber(argument, value(), 36U, 1200U);
        } else if (argument == "--ragged") {
            options.justified = false;
        } else if (argument == "--embed-whole-font") {
            options.wholeFont = true;
        } else {
            throw Failure(ExitCode::usage, "unknown option '" + argument + "'");
        }
    }
    if (files.empty() || files.front().empty())
        throw Failure(ExitCode::usage, "no text to set");
    if (files.size() > 1)
        throw Failure(ExitCode::usage, "one text at a time, not also '" + files[1] + "'");
    if (options.pdfPath.empty())
        throw Failure(ExitCode::usage, "no PDF to write; give one with -o");
    options.textPath = files.front();
    return options;
}

} // namespace typeset
