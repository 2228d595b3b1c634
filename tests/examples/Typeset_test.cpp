// The program as its user meets it: arguments, messages, exit codes, files.

#include "support/FontPackages.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace KWTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

class Typeset : public testing::Test {
protected:
    ProcessResult run(std::vector<std::string> arguments) const {
        return runProgram(KW_TYPESET, arguments);
    }
    /// Sets `text` in the font `with`.
    ProcessResult set(const std::string& text, const std::filesystem::path& with,
                      std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments{"--font", with.string(), "-o", pdf.string(),
                                           folder.write("text.txt", text).string()};
        arguments.insert(arguments.begin(), more.begin(), more.end());
        return run(arguments);
    }
    std::filesystem::path fontWithLicence(std::uint16_t fsType) const {
        TestFont built = TestFont::latin();
        built.os2.fsType = fsType;
        return folder.write("licence.ttf", built.build());
    }

    TempDir folder;
    std::filesystem::path pdf = folder.path("out.pdf");
    std::filesystem::path font = packagedFont("DejaVuSans");
};

} // namespace

TEST_F(Typeset, SetsATextAndTellsWhatItDid) {
    const ProcessResult result = set("# One\n\nTwo words", font, {"--png", folder.path("a.png")});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output,
                AllOf(HasSubstr("DejaVu Sans"), HasSubstr("2 blocks, 2 lines, 1 page"),
                      HasSubstr("Glyphs used      11\n"), HasSubstr(" bytes"),
                      HasSubstr("Embedded subset"), HasSubstr("Time")));
    EXPECT_THAT(readFile(pdf).str(), StartsWith("%PDF-1.5"));
    EXPECT_THAT(readFile(folder.path("a.png")).str(), StartsWith("\x89PNG\r\n"));
}

TEST_F(Typeset, TheSameInputGivesTheSameBytes) {
    ASSERT_TRUE(set("Twice the same", font, {"--png", folder.path("a.png")}).ok());
    const std::string first = readFile(pdf).str();
    const std::string firstPicture = readFile(folder.path("a.png")).str();
    ASSERT_TRUE(set("Twice the same", font, {"--png", folder.path("a.png")}).ok());
    EXPECT_EQ(readFile(pdf).str(), first);
    EXPECT_EQ(readFile(folder.path("a.png")).str(), firstPicture);
}

TEST_F(Typeset, JoinsTheSubsetsOfTwoParts) {
    const ProcessResult result = set("# One\n\nTwo words", font, {"--merge"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, AllOf(HasSubstr("Embedded subset"), HasSubstr("Joined of")));
    const ProcessResult single = set("One", font, {"--merge"});
    EXPECT_EQ(single.exitCode, 0) << single.describe();
    EXPECT_THAT(single.errors, HasSubstr("there are no two subsets that can be joined"));
    EXPECT_THAT(single.output, Not(HasSubstr("Joined of")));
}

TEST_F(Typeset, FindsADefaultFont) {
    const ProcessResult result = run({"-o", pdf, folder.write("text.txt", "text")});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("DejaVuSans.ttf"));
}

TEST_F(Typeset, ReadsStandardInput) {
    const std::string command = std::string("printf 'piped text' | '") + KW_TYPESET + "' -o '" +
                                pdf.string() + "' --font '" + font.string() + "' -";
    const ProcessResult result = runProgram("/bin/sh", {"-c", command});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("1 block, 1 line, 1 page"));
}

TEST_F(Typeset, HelpGoesToStandardOutput) {
    const ProcessResult result = run({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("usage: typeset "));
    EXPECT_EQ(result.errors, "");
}

TEST_F(Typeset, WrongUsageIsExitCodeOneAndSaysWhatIsWrong) {
    const std::string text = folder.write("text.txt", "text").string();
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, "no text to set"},
        {{text}, "no PDF to write; give one with -o"},
        {{"-o", pdf}, "no text to set"},
        {{"-o"}, "-o wants a value"},
        {{"-o", pdf, text, "more"}, "one text at a time, not also 'more'"},
        {{"-o", pdf, "--bold", text}, "unknown option '--bold'"},
        {{"-o", pdf, "--size", "tall", text}, "--size wants a number from 4 to 72, not 'tall'"},
        {{"-o", pdf, "--size", "nan", text}, "--size wants a number from 4 to 72, not 'nan'"},
        {{"-o", pdf, "--size", "3.9", text}, "--size wants a number from 4 to 72, not '3.9'"},
        {{"-o", pdf, "--size", "12pt", text}, "--size wants a number from 4 to 72, not '12pt'"},
        {{"-o", pdf, "--dpi", "-1", text}, "--dpi wants a number from 36 to 1200, not '-1'"},
        {{"-o", pdf, "--dpi", "99999999999", text}, "--dpi wants a number from 36 to 1200"},
        {{"-o", pdf, "--features", "ligature=0", text}, "'ligature=0' is no list of features"},
        {{"-o", pdf, "--features", "liga=0, liga=1", text}, "'liga=0, liga=1' is no list of"},
        {{"-o", pdf, "--merge", "--embed-whole-font", text},
         "--merge and --embed-whole-font exclude"},
        {{"--ps", pdf, "--merge", text}, "--merge wants a PDF; give one with -o"},
        {{"-o", pdf, "--language", "Romanian", text}, "'Romanian' is no tag of a language"},
    };
    for (const auto& [arguments, message] : cases) {
        const ProcessResult result = run(arguments);
        EXPECT_EQ(result.exitCode, 1) << message;
        EXPECT_THAT(result.errors, HasSubstr("typeset: " + message));
        EXPECT_THAT(result.errors, HasSubstr("Try 'typeset --help'."));
    }
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(Typeset, TheFontIsChosenByItsFileOrByItsNameAndNotByBoth) {
    const std::string text = folder.write("text.txt", "text").string();
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"--font", font, "--family", "F"}, "--font and --family exclude each other"},
        {{"--font", font, "--config", "F"}, "--font and --config exclude each other"},
        {{"--weight", "700", "--font", font}, "--font and --weight exclude each other"},
        {{"--italic", "--font", font}, "--font and --italic exclude each other"},
        {{"--stretch", "3", "--font", font}, "--font and --stretch exclude each other"},
        {{"--heading-family", "F", "--font", font},
         "--font and --heading-family exclude each other"},
        {{"--config", "F"}, "--config wants --family"},
        {{"--weight", "700"}, "--weight wants --family"},
        {{"--italic"}, "--italic wants --family"},
        {{"--stretch", "3"}, "--stretch wants --family"},
        {{"--heading-family", "F"}, "--heading-family wants --family"},
        {{"--family", "F", "--heading-weight", "400"}, "--heading-weight wants --heading-family"},
        {{"--family", ""}, "--family wants a value"},
        {{"--family", "F", "--weight", "0"}, "--weight wants a number from 1 to 1000, not '0'"},
        {{"--family", "F", "--weight", "bold"},
         "--weight wants a number from 1 to 1000, not 'bold'"},
        {{"--family", "F", "--stretch", "10"}, "--stretch wants a number from 1 to 9, not '10'"},
        {{"--family", "F", "--heading-family", "F", "--heading-weight", "1001"},
         "--heading-weight wants a number from 1 to 1000, not '1001'"},
    };
    for (auto [arguments, message] : cases) {
        arguments.insert(arguments.end(), {"-o", pdf, text});
        const ProcessResult result = run(arguments);
        EXPECT_EQ(result.exitCode, 1) << message;
        EXPECT_THAT(result.errors, HasSubstr("typeset: " + message + "\n"));
    }
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(Typeset, AFileNameMayLookLikeAnOptionBehindTwoDashes) {
    const ProcessResult result = run({"--font", font, "-o", pdf, "--", "--help"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, HasSubstr("cannot read the text --help"));
}

TEST_F(Typeset, AFontThatIsNoneIsExitCodeTwoAndNamed) {
    const std::string missing = folder.path("missing.ttf").string();
    const std::string text = folder.write("not a font.ttf", "just a text, and not short").string();
    const std::string empty = folder.write("empty.ttf", "").string();
    for (const std::string& path : {missing, text, empty, folder.path().string()}) {
        const ProcessResult result = set("text", path);
        EXPECT_EQ(result.exitCode, 2) << path;
        EXPECT_THAT(result.errors, AllOf(StartsWith("typeset: "), HasSubstr(path)));
    }
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(Typeset, AFontWithCffOutlinesIsSetLikeAnyOther) {
    const auto path = folder.write("outlines.otf", TestFont::openType().build());
    const ProcessResult result = set("AB", path);
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("KWTest OpenType Regular"));
    EXPECT_THAT(readFile(pdf).str(), HasSubstr("/FontFile3"));
}

TEST_F(Typeset, ACollectionWantsANameOfAFace) {
    const ProcessResult result = set("AB", packagedFont("NotoSansCJK"));
    EXPECT_EQ(result.exitCode, 2) << result.describe();
    EXPECT_THAT(result.errors, HasSubstr("--family"));
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(Typeset, AFontNameMayHoldAnything) {
    const auto path = folder.write("100% #1? \xC3\xA9 \xFF.ttf", TestFont::latin().build());
    const ProcessResult result = set("AB C", path);
    EXPECT_EQ(result.exitCode, 0) << result.describe();
}

TEST_F(Typeset, ALicenceThatForbidsEmbeddingIsObeyed) {
    ProcessResult result = set("AB", fontWithLicence(0x0002));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, HasSubstr("its licence does not allow to embed it"));
    result = set("AB", fontWithLicence(0x0200));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, HasSubstr("bitmaps only"));
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(Typeset, ALicenceThatForbidsSubsettingGetsTheWholeFontEmbedded) {
    const std::filesystem::path whole = fontWithLicence(0x0100 | 0x0008);
    const ProcessResult result = set("AB", whole);
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.errors, HasSubstr("the font's licence wants it embedded whole"));
    EXPECT_THAT(result.output,
                AllOf(HasSubstr("Embedded whole"), HasSubstr("100.0 %"), Not(HasSubstr("subset"))));
}

TEST_F(Typeset, ATextThatCannotBeSetIsExitCodeThree) {
    ProcessResult result = run({"--font", font, "-o", pdf, folder.path("missing.txt")});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, HasSubstr("cannot read the text"));

    result = run({"--font", font, "-o", pdf, folder.path()});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, HasSubstr("is a folder, not a text"));

    result = set("line one\nline \xFF", font);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, HasSubstr("is not UTF-8: line 2, byte 0xFF"));

    result = set("", font);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, HasSubstr("holds no text"));
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(Typeset, AnOutputThatCannotBeWrittenIsExitCodeFour) {
    const std::string text = folder.write("text.txt", "text").string();
    const std::string nowhere = folder.path("missing/out.pdf").string();
    ProcessResult result = run({"--font", font, "-o", nowhere, text});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, HasSubstr("cannot write " + nowhere));

    result = run({"--font", font, "-o", folder.path(), text});
    EXPECT_EQ(result.exitCode, 4);

    result = run({"--font", font, "-o", pdf, "--png", folder.path("missing/out.png"), text});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.errors, HasSubstr("out.png"));

    if (std::filesystem::exists("/dev/full")) {
        result = run({"--font", font, "-o", "/dev/full", text});
        EXPECT_EQ(result.exitCode, 4);
        EXPECT_TRUE(std::filesystem::exists("/dev/full"));
    }
}

TEST_F(Typeset, EachMissingCharacterIsReportedOnceWithItsCount) {
    const ProcessResult result = set("\xE4\xB8\x80 a \xE4\xB8\x80 \xF0\x9F\x84\xBF", font);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "typeset: the font has no glyph for U+4E00 (2 times)\n"
                             "typeset: the font has no glyph for U+1F13F (1 time)\n");
}

TEST_F(Typeset, FeaturesAndLanguageChangeWhatTheTextLooksLike) {
    const std::filesystem::path serif = packagedFont("DejaVuSerif");
    // f and i are glyphs beside glyph 0; the ligature is one.
    EXPECT_THAT(set("fi", serif).output, HasSubstr("Glyphs used      2\n"));
    EXPECT_THAT(set("fi", serif, {"--features", "liga=0"}).output,
                HasSubstr("Glyphs used      3\n"));
    EXPECT_THAT(set("@ features liga=1\nfi", serif, {"--features", "liga=0"}).output,
                HasSubstr("Glyphs used      2\n"));
    EXPECT_THAT(set("fi", serif, {"--language", "TRK"}).output, HasSubstr("Glyphs used      3\n"));
    EXPECT_THAT(set("@ language TRK\nfi", serif).output, HasSubstr("Glyphs used      3\n"));
}

TEST_F(Typeset, FurtherFontsSetWhatTheOnesBeforeThemLack) {
    const ProcessResult result = set("a \xE3\x81\x82 \xD8\xA8", packagedFont("DejaVuSerif"),
                                     {"--png", folder.path("a.png"), "--whole-page"});
    EXPECT_THAT(result.errors, HasSubstr("no glyph for U+3042"));
    const ProcessResult all =
        run({"--font", packagedFont("DejaVuSerif"), "--font", packagedFont("Amiri"), "--font",
             packagedFont("IPAMincho"), "-o", pdf, folder.path("text.txt")});
    EXPECT_EQ(all.exitCode, 0);
    EXPECT_EQ(all.errors, "");
    EXPECT_THAT(all.output, AllOf(HasSubstr("\nFont             DejaVu Serif"),
                                  HasSubstr("\nFurther font     Amiri"),
                                  HasSubstr("\nFurther font     IPAMincho")));
}

TEST_F(Typeset, WhatTheTextSaysOfItsSettingMustMakeSense) {
    const ProcessResult result = set("@ size 9\n\ntext", font);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.errors, HasSubstr("@ size wants a number from 0.5 to 4, not '9'"));
}

TEST_F(Typeset, ProgressShowsUpOnATerminalOnlyAndOnlyForLongTexts) {
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += "A paragraph of a long text, one of a great many.\n\n";
    const ProcessResult quiet = set(text, font);
    EXPECT_EQ(quiet.exitCode, 0);
    EXPECT_EQ(quiet.errors, "");

    const ProcessResult result =
        runPython("import pty, sys\n"
                  "sys.exit(pty.spawn(sys.argv[1:]) >> 8)\n",
                  {KW_TYPESET, "--font", font, "-o", pdf, folder.path("text.txt")});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("Setting the text "));

    folder.write("text.txt", "short");
    const ProcessResult brief =
        runPython("import pty, sys\n"
                  "sys.exit(pty.spawn(sys.argv[1:]) >> 8)\n",
                  {KW_TYPESET, "--font", font, "-o", pdf, folder.path("text.txt")});
    EXPECT_EQ(brief.exitCode, 0);
    EXPECT_THAT(brief.output, Not(HasSubstr("Setting")));
}
