#include "Options.h"

#include "Failure.h"
#include "Numbers.h"

#include <set>

namespace typeset {

const char* const kUsage = R"(usage: typeset [options] -o FILE.pdf TEXT
       typeset [options] --ps FILE.ps TEXT

Sets TEXT, a UTF-8 file or - for standard input, into a PDF. Blank lines separate paragraphs;
a line that begins with "# " is a heading, one that begins with "## " a lesser one. Lines that
begin with "@ " say how the next paragraph is set:

  @ vertical            in columns from right to left, as Japanese is
  @ size N              0.5 to 4 times the size of the text
  @ language TAG        as --language
  @ features LIST       as --features, and before what that says

  -o FILE.pdf           the PDF to write
  --ps FILE.ps          the PostScript file to write, with or without a PDF; takes fonts with CFF
                        outlines and Type 1 fonts
  --png FILE            draw the first lines as a picture, too
  --webfont FILE.woff   write the glyphs that the text uses of its font as a web font, too
  --whole-page          draw the first page whole instead
  --size PT             size of the text, 4 to 72 points (default 10.5)
  --dpi N               resolution of the picture, 36 to 1200 (default 150)
  --ragged              lines of natural length instead of justified ones
  --embed-whole-font    embed font files as they are instead of subsets
  --merge               make a subset for each half of the lines and join the two
  --vertical            set all paragraphs in columns
  --language TAG        the language of the text, as OpenType calls it: ROM, SRB, URD, JAN ...
  --features LIST       features of OpenType that are on, off or have a number: "liga=0, smcp"
  --help                show this

The font, by its file:
  --font FILE           a font file (default: DejaVu Sans, where it is installed)

or by its name:
  --family NAME         a family, one of the names of a font, the name of its file, or an alias
  --weight N            1 to 1000; 400 is regular (the default), 700 is bold
  --italic              an italic or oblique face
  --stretch N           1, ultra-condensed, to 9, ultra-expanded (default 5)
  --heading-family NAME sets the headings in another font, upright and of normal width
  --heading-weight N    weight of that font (default 700)
  --font-face FACE      a font that the text brings along, "Family;weight;italic;URL": the URL is a
                        path or a data: URI; weight (1 to 1000) and italic (0 or 1) may be empty for
                        the font's own. --family finds it before all others. Any number of times
  --config FILE         configuration of the font service (default: the font-config.xml beside its
                        library, if there is one)

--font and --family may be given more than once: each further font sets the characters that those
before it lack. --font excludes all of the second group; all of the second group want --family, and
--heading-weight wants --heading-family. A weight that a family lacks is filled with the nearest
one; an italic or a stretch that it lacks is left out. Where the configuration asks for another
size or baseline of a font, the font is set so.

exit codes: 0 done, 1 wrong usage, 2 font or configuration, 3 text, 4 output
)";

namespace {

/// Options about the font of the text and the one of the headings.
/// @param value  answers the value that follows the option
/// @return       false when it is none of them
template <typename Value>
bool readFontOption(const std::string& option, const Value& value, FontChoice& fonts) {
    if (option == "--font")
        fonts.files.push_back(value());
    else if (option == "--family" && fonts.byName())
        fonts.fallbacks.push_back(value());
    else if (option == "--family")
        fonts.text.name = value();
    else if (option == "--weight")
        fonts.text.weight = parseNumber(ExitCode::usage, option, value(), 1, 1000);
    else if (option == "--italic")
        fonts.text.italic = true;
    else if (option == "--stretch")
        fonts.text.stretch = parseNumber(ExitCode::usage, option, value(), 1, 9);
    else if (option == "--heading-family")
        fonts.headings.name = value();
    else if (option == "--heading-weight")
        fonts.headings.weight = parseNumber(ExitCode::usage, option, value(), 1, 1000);
    else if (option == "--font-face")
        fonts.faces.push_back(parseFontFace(value()));
    else if (option == "--config")
        fonts.config = value();
    else
        return false;
    return true;
}

void checkFontOptions(const std::set<std::string>& given) {
    static constexpr const char* kByName[] = {"--family",  "--weight",         "--italic",
                                              "--stretch", "--heading-family", "--heading-weight",
                                              "--config",  "--font-face"};
    for (const std::string option : kByName) {
        if (given.count(option) == 0)
            continue;
        if (given.count("--font") != 0)
            throw Failure(ExitCode::usage, "--font and " + option + " exclude each other");
        if (given.count("--family") == 0)
            throw Failure(ExitCode::usage, option + " wants --family");
    }
    if (given.count("--heading-weight") != 0 && given.count("--heading-family") == 0)
        throw Failure(ExitCode::usage, "--heading-weight wants --heading-family");
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    std::vector<std::string> files;
    std::set<std::string> fontOptions;
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
        } else if (argument == "--ps") {
            options.psPath = value();
        } else if (argument == "--png") {
            options.pngPath = value();
        } else if (argument == "--webfont") {
            options.webFontPath = value();
        } else if (argument == "--size") {
            options.size = parseNumber(ExitCode::usage, argument, value(), 4.0, 72.0);
        } else if (argument == "--dpi") {
            options.dpi = parseNumber(ExitCode::usage, argument, value(), 36U, 1200U);
        } else if (argument == "--ragged") {
            options.justified = false;
        } else if (argument == "--embed-whole-font") {
            options.wholeFont = true;
        } else if (argument == "--merge") {
            options.merge = true;
        } else if (argument == "--whole-page") {
            options.wholePage = true;
        } else if (argument == "--vertical") {
            options.columns = true;
        } else if (argument == "--language") {
            options.language = parseLanguage(ExitCode::usage, value());
        } else if (argument == "--features") {
            options.features = parseFeatures(ExitCode::usage, value());
        } else if (readFontOption(argument, value, options.fonts)) {
            fontOptions.insert(argument);
        } else {
            throw Failure(ExitCode::usage, "unknown option '" + argument + "'");
        }
    }
    checkFontOptions(fontOptions);
    if (options.merge && options.wholeFont)
        throw Failure(ExitCode::usage, "--merge and --embed-whole-font exclude each other");
    if (options.merge && options.pdfPath.empty())
        throw Failure(ExitCode::usage, "--merge wants a PDF; give one with -o");
    if (files.empty() || files.front().empty())
        throw Failure(ExitCode::usage, "no text to set");
    if (files.size() > 1)
        throw Failure(ExitCode::usage, "one text at a time, not also '" + files[1] + "'");
    if (options.pdfPath.empty() && options.psPath.empty())
        throw Failure(ExitCode::usage, "no PDF to write; give one with -o");
    options.textPath = files.front();
    return options;
}

} // namespace typeset
