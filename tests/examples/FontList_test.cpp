// The list of fonts as its user meets it: arguments, the table, the sheet, messages, exit codes.

#include "support/FontPackages.h"
#include "support/MetricsFiles.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/TestFont.h"
#include "support/Type1Font.h"
#include "support/WoffFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <filesystem>
#include <vector>

using namespace KWTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace {

TestFont family(std::u16string_view name, int weight = 400, bool italic = false) {
    TestFont font = TestFont::latin();
    font.name = Name::english(name, weight == 700 ? u"Bold" : u"Regular");
    font.os2.usWeightClass = static_cast<std::uint16_t>(weight);
    font.os2.fsSelection = italic ? 1 : 0;
    return font;
}

class FontList : public testing::Test {
protected:
    /// Runs the program with a configuration that knows the scratch folder alone.
    ProcessResult run(std::vector<std::string> arguments, const std::string& aliases = {}) const {
        const std::string config =
            folder
                .write("font-config.xml",
                       "<font-config windows-registry=\"disable\"><font-folder path=\"" +
                           folder.path("fonts").string() + "\">" + aliases +
                           "</font-folder></font-config>")
                .string();
        arguments.insert(arguments.begin(), {"--config", config});
        return runProgram(KW_FONTLIST, arguments);
    }
    void write(const std::string& name, const TestFont& font) const {
        folder.write("fonts/" + name, font.build());
    }
    void installed(const std::string& name) const {
        std::filesystem::create_directories(folder.path("fonts"));
        std::filesystem::copy(packagedFont(name), folder.path("fonts/" + name + ".ttf"));
    }

    TempDir folder;
    std::string png = folder.path("sheet.png").string();
};

/// The greys of a picture, 0 for black.
struct Greys {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<unsigned char> pixels;

    /// How much ink there is between two rows, in black pixels, left or right of a column.
    double ink(unsigned fromRow, unsigned toRow, unsigned fromColumn, unsigned toColumn) const {
        double sum = 0;
        for (unsigned row = fromRow; row < std::min(toRow, height); ++row) {
            for (unsigned column = fromColumn; column < std::min(toColumn, width); ++column)
                sum += (255 - pixels[row * width + column]) / 255.0;
        }
        return sum;
    }
};

Greys readPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
        throw std::runtime_error(path + ": " + image.message);
    image.format = PNG_FORMAT_GRAY;
    Greys greys{image.width, image.height, std::vector<unsigned char>(PNG_IMAGE_SIZE(image))};
    if (png_image_finish_read(&image, nullptr, greys.pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error(path + ": " + image.message);
    return greys;
}

// Of a sheet at 72 dots per inch, where a point is a pixel.
constexpr unsigned kMargin = 18;
constexpr unsigned kRowHeight = 29;
constexpr unsigned kSampleLeft = 230;

} // namespace

TEST_F(FontList, HelpIsPrintedAndNothingElseDone) {
    const ProcessResult result = runProgram(KW_FONTLIST, {"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("usage: fontlist"));
    EXPECT_EQ(result.errors, "");
}

TEST_F(FontList, PrintsATableOfEachFaceInTheOrderOfFamiliesAndStyles) {
    write("c.ttf", family(u"Beta"));
    write("b.ttf", family(u"Alpha", 700));
    TestFont narrow = family(u"Alpha", 400, true);
    narrow.os2.fsType = 2;
    narrow.os2.panose = {2, 5, 0, 9};
    write("a.ttf", narrow);
    const ProcessResult result = run({});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "Family  Style    Weight  Full name      From    File      Embed  Pitch  Scripts\n"
              "Alpha   Italic   400     Alpha Regular  folder  TrueType  no     fixed  Latn\n"
              "Alpha   Bold     700     Alpha Bold     folder  TrueType  yes           Latn\n"
              "Beta    Regular  400     Beta Regular   folder  TrueType  yes           Latn\n"
              "3 faces\n");
}

TEST_F(FontList, ListsWhatGoesByAName) {
    write("a.ttf", family(u"Alpha"));
    write("b.ttf", family(u"Beta"));
    const ProcessResult result =
        run({"beta", "Other"},
            "<font-alias file=\"a.ttf\"><alias family-name=\"Other\"/></font-alias>");
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("\nBeta    Regular  400     Beta Regular   folder "));
    EXPECT_THAT(result.output, HasSubstr("\nAlpha   Regular  400     Alpha Regular  alias "));
    EXPECT_THAT(result.output, HasSubstr("\n2 faces\n"));
}

TEST_F(FontList, ListsVerticalFacesOfANameBehindAnAtSign) {
    TestFont vertical = TestFont::vertical();
    vertical.name = Name::english(u"Mixed");
    write("v.ttf", vertical);
    write("h.ttf", family(u"Mixed", 700));
    EXPECT_THAT(run({"@Mixed"}).output, HasSubstr("\n1 face\n"));
    EXPECT_THAT(run({"Mixed"}).output, HasSubstr("\n2 faces\n"));
}

TEST_F(FontList, ListsFurtherFoldersAndFontsThatAreBroughtAlong) {
    write("a.ttf", family(u"Alpha"));
    folder.write("more/b.otf", TestFont::openType().build());
    folder.write("own.woff", WoffFile::of(family(u"Inside").build()).build());
    const ProcessResult result = run({"--folder", folder.path("more").string(), "--extra",
                                      "Own=" + folder.path("own.woff").string()});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output,
                AllOf(HasSubstr("\nAlpha "), HasSubstr("\nKWTest OpenType "),
                      HasSubstr(" OpenType  "), HasSubstr("\nOwn "), HasSubstr("  document  "),
                      HasSubstr("  WOFF "), HasSubstr("\n3 faces\n")));
    EXPECT_THAT(run({"--extra", "Own=" + folder.path("own.woff").string(), "Own"}).output,
                HasSubstr("  web font  "));
}

TEST_F(FontList, WideLettersKeepTheColumnsStraight) {
    TestFont wide = TestFont::vertical();
    wide.name = Name::english(u"\u660E\u671D");
    write("a.ttf", wide);
    write("b.ttf", family(u"Long Name"));
    EXPECT_THAT(run({}).output, AllOf(HasSubstr("\nLong Name  Regular"),
                                      HasSubstr("\n\xE6\x98\x8E\xE6\x9C\x9D       Regular")));
}

TEST_F(FontList, CharactersThatATerminalActsOnAreNotPrinted) {
    AfmFile file = AfmFile::latin();
    file.familyName = "a\x1B]0;x\x07";
    folder.write("fonts/a.afm", file.build());
    const std::string output = run({}).output;
    EXPECT_THAT(output, HasSubstr("\na\xEF\xBF\xBD]0;x\xEF\xBF\xBD"));
    EXPECT_THAT(output, Not(HasSubstr("\x1B")));
}

TEST_F(FontList, AFaceWithoutAWeightIsRegular) {
    write("a.ttf", family(u"Unsaid", 0));
    EXPECT_THAT(run({}).output, HasSubstr("\nUnsaid  Regular  0"));
}

TEST_F(FontList, AnOutputThatCannotBeWrittenIsExitCodeFour) {
    write("a.ttf", family(u"Alpha"));
    const ProcessResult result =
        runProgram("/bin/sh", {"-c", std::string("'") + KW_FONTLIST + "' --help > /dev/full"});
    EXPECT_EQ(result.exitCode, 4) << result.describe();
}

TEST_F(FontList, ArgumentsThatMakeNoSenseAreExitCodeOne) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"--png"},
                                               {"--dpi", "35"},
                                               {"--dpi", "72x"},
                                               {"--nothing"},
                                               {"--extra", "name"},
                                               {"--extra", "=file"},
                                               {""}}) {
        const ProcessResult result = run(arguments);
        EXPECT_EQ(result.exitCode, 1) << result.describe();
        EXPECT_THAT(result.errors, AllOf(StartsWith("fontlist: "), HasSubstr("--help")));
    }
}

TEST_F(FontList, FontsThatAreNotThereAreExitCodeTwo) {
    write("a.ttf", family(u"Alpha"));
    ProcessResult result = run({"Nobody"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "fontlist: there is no font 'Nobody'\n");
    EXPECT_EQ(run({"--extra", "Own=" + folder.path("none.ttf").string()}).exitCode, 2);
    result = runProgram(KW_FONTLIST, {"--config", folder.path("none.xml").string()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, HasSubstr("there is no configuration file"));
}

TEST_F(FontList, ASheetThatCannotBeWrittenIsExitCodeFour) {
    installed("DejaVuSans");
    const std::string nowhere = folder.path("missing/sheet.png").string();
    const ProcessResult result = run({"--png", nowhere});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, HasSubstr("cannot write " + nowhere));
}

TEST_F(FontList, TheSheetHasARowForEachFaceWithItsNameAndASample) {
    for (const char* const name : {"DejaVuSans", "DejaVuSans-Bold", "IPAMincho"})
        installed(name);
    const ProcessResult result = run({"--png", png, "--dpi", "72"});
    ASSERT_EQ(result.exitCode, 0) << result.describe();
    const Greys sheet = readPng(png);
    EXPECT_EQ(sheet.width, 640U);
    ASSERT_EQ(sheet.height, 2 * kMargin + 3 * kRowHeight);
    EXPECT_EQ(sheet.ink(0, kMargin / 2, 0, sheet.width), 0) << "a margin";
    std::vector<double> samples;
    for (unsigned row = 0; row < 3; ++row) {
        const unsigned top = kMargin + row * kRowHeight;
        EXPECT_GT(sheet.ink(top, top + kRowHeight, kMargin, kSampleLeft), 50) << row;
        samples.push_back(sheet.ink(top, top + kRowHeight, kSampleLeft, sheet.width));
        EXPECT_GT(samples.back(), 200) << row;
    }
    EXPECT_GT(samples[1], 1.2 * samples[0]) << "bold takes more ink than regular";
}

TEST_F(FontList, TheSheetDrawsTheTextThatIsAskedFor) {
    installed("DejaVuSans");
    const auto inkOf = [&](const std::string& text) {
        EXPECT_EQ(run({"--png", png, "--dpi", "72", "--text", text}).exitCode, 0);
        const Greys sheet = readPng(png);
        return sheet.ink(0, sheet.height, kSampleLeft, sheet.width);
    };
    EXPECT_EQ(inkOf(" "), 0);
    EXPECT_NEAR(inkOf("MM"), 2 * inkOf("M"), 1);
    EXPECT_LT(inkOf(std::string(500, 'M')), 40 * inkOf("M")) << "it ends with the room";
}

TEST_F(FontList, TheSheetShowsType1FontsAndThoseWithoutWords) {
    folder.write("fonts/latin.afm", AfmFile::latin().build());
    folder.write("fonts/latin.pfb", Type1Font::latin().pfb());
    AfmFile bare = AfmFile::latin();
    bare.fullName = bare.familyName = bare.fontName = "Bare";
    folder.write("fonts/bare.afm", bare.build());
    installed("DejaVuSans");
    const ProcessResult result = run({"--png", png, "--dpi", "72", "Bare", "KWTest"});
    ASSERT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("  Type 1  "));
    const Greys sheet = readPng(png);
    const unsigned second = kMargin + kRowHeight;
    const double note = sheet.ink(kMargin, second, kSampleLeft, sheet.width);
    EXPECT_GT(note, 10) << "it has no outlines, and the sheet says so";
    EXPECT_GT(sheet.ink(second, second + kRowHeight, kSampleLeft, sheet.width), 2 * note)
        << "its first glyphs, since it has too few for words";
}

TEST_F(FontList, ASheetWithoutAFontForItsLabelsIsNotMade) {
    TestFont symbols = TestFont::latin();
    symbols.os2.sFamilyClass = 12 << 8;
    write("a.ttf", symbols);
    const ProcessResult result = run({"--png", png});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, HasSubstr("no font for the labels"));
    EXPECT_FALSE(std::filesystem::exists(png));
}
