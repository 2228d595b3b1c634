// Fonts by their names, from a configuration that the test writes.

#include "support/FontPackages.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include <filesystem>

using namespace KWTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

class TypesetByName : public testing::Test {
protected:
    /// Writes a configuration that knows its own folders alone.
    /// @param folders  the elements in it
    std::string configure(const std::string& folders) const {
        return folder
            .write("font-config.xml",
                   "<font-config windows-registry=\"disable\">" + folders + "</font-config>")
            .string();
    }
    static std::string fontFolder(const std::filesystem::path& path,
                                  const std::string& content = {}) {
        return "<font-folder path=\"" + path.string() + "\">" + content + "</font-folder>";
    }
    static std::filesystem::path dejaVuFolder() { return packagedFont("DejaVuSans").parent_path(); }
    static std::filesystem::path liberationFolder() {
        return packagedFont("LiberationSerif").parent_path();
    }

    std::vector<std::string> arguments(std::vector<std::string> options,
                                       const std::string& text = "# Heading\n\nText") const {
        options.insert(options.end(), {"-o", pdf, folder.write("text.txt", text)});
        return options;
    }
    ProcessResult set(std::vector<std::string> options,
                      const std::string& text = "# Heading\n\nText") const {
        return runProgram(KW_TYPESET, arguments(std::move(options), text));
    }
    /// The same with a variable of the environment, as "NAME=value".
    ProcessResult setWith(const std::string& variable, std::vector<std::string> options) const {
        std::vector<std::string> all = arguments(std::move(options));
        all.insert(all.begin(), {variable, KW_TYPESET});
        return runProgram("/usr/bin/env", all);
    }

    TempDir folder;
    std::filesystem::path pdf = folder.path("out.pdf");
};

} // namespace

TEST_F(TypesetByName, AFamilyIsFoundInTheFoldersOfTheConfiguration) {
    const ProcessResult result =
        set({"--config", configure(fontFolder(dejaVuFolder())), "--family", "DejaVu Sans"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output,
                HasSubstr("DejaVu Sans (" + packagedFont("DejaVuSans").string() + ")\n"));
    EXPECT_TRUE(std::filesystem::exists(pdf));
}

TEST_F(TypesetByName, WeightItalicAndStretchChooseTheFace) {
    const std::string config = configure(fontFolder(dejaVuFolder()));
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases{
        {{"--weight", "700"}, "DejaVuSans-Bold"},
        {{"--weight", "200"}, "DejaVuSans-ExtraLight"},
        {{"--italic"}, "DejaVuSans-Oblique"},
        {{"--stretch", "4"}, "DejaVuSansCondensed"},
        {{"--weight", "400", "--stretch", "5"}, "DejaVuSans"},
    };
    for (auto [options, face] : cases) {
        options.insert(options.end(), {"--config", config, "--family", "DejaVu Sans"});
        const ProcessResult result = set(options);
        EXPECT_EQ(result.exitCode, 0) << result.describe();
        EXPECT_THAT(result.output, HasSubstr("(" + packagedFont(face).string() + ")\n"));
    }
}

TEST_F(TypesetByName, AnyNameOfAFontAndTheNameOfItsFileServe) {
    const std::string config = configure(fontFolder(dejaVuFolder()));
    for (const char* name : {"dejavusans", "DejaVuSans", "DejaVuSans.ttf"}) {
        const ProcessResult result = set({"--config", config, "--family", name});
        EXPECT_EQ(result.exitCode, 0) << result.describe();
        EXPECT_THAT(result.output, HasSubstr("DejaVuSans.ttf"));
    }
}

TEST_F(TypesetByName, AnAliasOfTheConfigurationMeansItsFile) {
    const std::string config =
        configure(fontFolder(dejaVuFolder(), "<font-alias file=\"DejaVuSerif.ttf\">"
                                             "<alias family-name=\"House Face\"/></font-alias>"));
    const ProcessResult result = set({"--config", config, "--family", "House Face"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("DejaVuSerif.ttf"));
}

TEST_F(TypesetByName, AnExcludedFileIsNotFound) {
    const std::string exclusion = "<font-exclude file=\"DejaVuSansMono.ttf\"/>"
                                  "<font-exclude file=\"DejaVuSansMono-Bold.ttf\"/>"
                                  "<font-exclude file=\"DejaVuSansMono-Oblique.ttf\"/>"
                                  "<font-exclude file=\"DejaVuSansMono-BoldOblique.ttf\"/>";
    EXPECT_EQ(
        set({"--config", configure(fontFolder(dejaVuFolder())), "--family", "DejaVu Sans Mono"})
            .exitCode,
        0);
    const ProcessResult result = set({"--config", configure(fontFolder(dejaVuFolder(), exclusion)),
                                      "--family", "DejaVu Sans Mono"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, StartsWith("typeset: there is no font 'DejaVu Sans Mono'\n"));
}

TEST_F(TypesetByName, AFontThatIsNotThereIsToldWithTheFoldersAndWhatANameMayBe) {
    const ProcessResult result = set(
        {"--config", configure(fontFolder(dejaVuFolder())), "--family", "No Such Family \xC3\xA9"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors,
                AllOf(StartsWith("typeset: there is no font 'No Such Family \xC3\xA9'\n"),
                      HasSubstr("\n  " + dejaVuFolder().string()), HasSubstr("fc-list")));
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(TypesetByName, AHeadingFontThatIsNotThereIsToldAlike) {
    const ProcessResult result = set({"--config", configure(fontFolder(dejaVuFolder())), "--family",
                                      "DejaVu Sans", "--heading-family", "Nothing"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, StartsWith("typeset: there is no font 'Nothing'\n"));
}

TEST_F(TypesetByName, HeadingsAreSetInAFontOfTheirOwnWhichIsBold) {
    const std::string config =
        configure(fontFolder(dejaVuFolder()) + fontFolder(liberationFolder()));
    std::vector<std::string> options{
        "--config", config, "--family", "DejaVu Sans", "--heading-family", "Liberation Serif"};
    ProcessResult result = set(options);
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, AllOf(HasSubstr("\nFont             DejaVu Sans ("),
                                     HasSubstr("\nHeading font     Liberation Serif Bold (")));
    options.insert(options.end(), {"--heading-weight", "400"});
    result = set(options);
    EXPECT_THAT(result.output, HasSubstr("\nHeading font     Liberation Serif ("));
}

TEST_F(TypesetByName, AFontThatSetsNothingIsNotEmbedded) {
    const std::string config =
        configure(fontFolder(dejaVuFolder()) + fontFolder(liberationFolder()));
    const ProcessResult result =
        set({"--config", config, "--family", "DejaVu Sans", "--heading-family", "Liberation Serif"},
            "No heading in sight");
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, Not(HasSubstr("Heading font")));
}

TEST_F(TypesetByName, HeadingsInTheFaceOfTheTextAreEmbeddedOnce) {
    const ProcessResult result =
        set({"--config", configure(fontFolder(dejaVuFolder())), "--family", "DejaVu Sans",
             "--heading-family", "DejaVuSans.ttf", "--heading-weight", "400"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, AllOf(HasSubstr("\nFont   "), Not(HasSubstr("Heading font"))));
}

TEST_F(TypesetByName, OfTwoFontsTheOneThatLacksACharacterIsNamed) {
    const std::string config =
        configure(fontFolder(dejaVuFolder()) + fontFolder(liberationFolder()));
    const ProcessResult result =
        set({"--config", config, "--family", "DejaVu Sans", "--heading-family", "Liberation Serif"},
            "# \xD4\xB1\n\n\xD4\xB1 \xE4\xB8\x80");
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "typeset: DejaVu Sans has no glyph for U+4E00 (1 time)\n"
                             "typeset: Liberation Serif Bold has no glyph for U+0531 (1 time)\n");
}

TEST_F(TypesetByName, FurtherFamiliesSetWhatTheFirstLacksAlsoInHeadings) {
    const std::string config =
        configure(fontFolder(dejaVuFolder()) + fontFolder(liberationFolder()));
    const ProcessResult result =
        set({"--config", config, "--family", "Liberation Serif", "--family", "DejaVu Sans",
             "--heading-family", "Liberation Serif"},
            "# \xD4\xB1\n\n\xD4\xB1 a");
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, AllOf(HasSubstr("\nFont             Liberation Serif ("),
                                     HasSubstr("\nFurther font     DejaVu Sans (")));
}

TEST_F(TypesetByName, ARelativeConfigurationPathCountsFromTheCurrentFolder) {
    configure(fontFolder(dejaVuFolder()));
    const std::string command = "cd '" + folder.path().string() + "' && '" + KW_TYPESET +
                                "' --config font-config.xml --family 'DejaVu Sans' -o out.pdf -";
    const ProcessResult result = runProgram("/bin/sh", {"-c", "echo text | (" + command + ")"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_TRUE(std::filesystem::exists(pdf));
}

TEST_F(TypesetByName, TheHomeFolderStandsForItsWordInTheConfiguration) {
    folder.write("home/fonts/own.ttf", TestFont::latin().build());
    const std::string config = configure(fontFolder("@@HOME@@/fonts"));
    const ProcessResult result = setWith("HOME=" + folder.path("home").string(),
                                         {"--config", config, "--family", "KWTest Latin"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("home/fonts/own.ttf)"));
}

TEST_F(TypesetByName, WithoutAConfigurationTheFontsThatTheSystemListsAreFound) {
    folder.write("fonts/own.ttf", TestFont::latin().build());
    const std::string list =
        folder
            .write("fonts.conf", "<fontconfig><dir>" + folder.path("fonts").string() +
                                     "</dir><cachedir>" + folder.path("cache").string() +
                                     "</cachedir></fontconfig>")
            .string();
    const ProcessResult result = setWith("FONTCONFIG_FILE=" + list, {"--family", "KWTest Latin"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr("fonts/own.ttf)"));
}

TEST_F(TypesetByName, NotesOfTheServiceAreWarnings) {
    const std::string config =
        configure(fontFolder(dejaVuFolder(), "<font-exclude file=\"x.ttf\" colour=\"red\"/>"));
    const ProcessResult result = set({"--config", config, "--family", "DejaVu Sans"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors,
              "typeset: Unknown attribute: <font-exclude colour> in " + config + "\n");
}

TEST_F(TypesetByName, AConfigurationThatIsNotThereIsExitCodeTwoAndNamed) {
    const std::string missing = folder.path("missing.xml").string();
    const ProcessResult result = set({"--config", missing, "--family", "DejaVu Sans"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "typeset: there is no configuration file " + missing + "\n");
}

TEST_F(TypesetByName, AConfigurationThatTheServiceRefusesIsExitCodeTwoWithItsMessage) {
    ProcessResult result =
        set({"--config", configure(fontFolder("not/absolute")), "--family", "DejaVu Sans"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, StartsWith("typeset: Relative path is not allowed: <font-folder "
                                          "path=\"not/absolute\"> in "));

    result = set(
        {"--config", folder.write("cut.xml", "<font-config").string(), "--family", "DejaVu Sans"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, AllOf(StartsWith("typeset: "), HasSubstr("cut.xml")));
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(TypesetByName, AFontThatIsFoundAndDoesNotOpenIsExitCodeTwoWithTheReason) {
    const auto file = folder.write("fonts/broken.ttf", TestFont::latin().without("hmtx").build());
    const ProcessResult result =
        set({"--config", configure(fontFolder(folder.path("fonts"))), "--family", "KWTest Latin"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors,
              "typeset: Font file error: 'hmtx' table not found\n" + file.string() + "\n");
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(TypesetByName, AFontThatIsFoundMayHaveCffOutlines) {
    const auto file = folder.write("fonts/outlines.otf", TestFont::openType().build());
    const ProcessResult result = set(
        {"--config", configure(fontFolder(folder.path("fonts"))), "--family", "KWTest OpenType"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output, HasSubstr(file.string()));
}

TEST_F(TypesetByName, AnAdjustmentThatFitsNoPageIsExitCodeTwo) {
    for (const char* setting : {"font-size-adjust=\"1e9\"", "font-size-adjust=\"1%\"",
                                "baseline-adjust=\"1e30\"", "baseline-adjust=\"-300%\""}) {
        const std::string entry =
            std::string("<font-entry file=\"DejaVuSans.ttf\" ") + setting + "/>";
        const ProcessResult result = set(
            {"--config", configure(fontFolder(dejaVuFolder(), entry)), "--family", "DejaVu Sans"});
        EXPECT_EQ(result.exitCode, 2) << setting << result.describe();
        EXPECT_THAT(result.errors, AllOf(HasSubstr("DejaVuSans.ttf: the configuration asks for"),
                                         HasSubstr("that fits no page")));
    }
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(TypesetByName, SubsetsWhoseJoinWouldLoseGlyphsAreNotJoined) {
    const auto joined = [&](int count) {
        icu::UnicodeString text;
        for (int i = 0; i < count; ++i) {
            text.append(static_cast<UChar32>(0xAC00 + i));
            if (i == count / 2)
                text.append(u"\n\n");
        }
        std::string utf8;
        text.toUTF8String(utf8);
        return set({"--merge", "--family", "Noto Sans CJK JP", "--config",
                    configure(fontFolder(packagedFont("NotoSansCJK").parent_path()))},
                   utf8);
    };
    EXPECT_THAT(joined(200).output, HasSubstr("Joined of"));
    const ProcessResult result = joined(300);
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.errors, HasSubstr("there are no two subsets that can be joined"))
        << "a run of more than 256 CIDs";
}

TEST_F(TypesetByName, ACharacterOfTheEndUserIsSetInTheFontThatIsLinked) {
    TestFont own = TestFont::latin();
    own.name = Name::english(u"Own Signs");
    own.cmap = Cmap::unicode({{0xE000, TestFont::kC}});
    const std::string signs = folder.write("signs.tte", own.build()).string();
    const std::string eudc =
        "<eudc-processing><eudc-map family-name=\"Liberation Serif\" file-path=\"" + signs +
        "\"/></eudc-processing>";
    const auto setWith = [&](const std::string& more) {
        return set({"--family", "Liberation Serif", "--config",
                    configure(fontFolder(liberationFolder()) + more)},
                   "A sign: \uE000.");
    };
    const ProcessResult linked = setWith(eudc);
    EXPECT_EQ(linked.exitCode, 0) << linked.describe();
    EXPECT_EQ(linked.errors, "");
    EXPECT_THAT(linked.output, HasSubstr("Further font     Own Signs"));
    EXPECT_THAT(linked.output, HasSubstr(signs));
    EXPECT_THAT(setWith("").errors, HasSubstr("no glyph for U+E000"));
}

TEST_F(TypesetByName, TheConfigurationOfTheDemoDoesWhatItSays) {
    const std::string config = KW_DEMO_CONFIG;
    ProcessResult result = set(
        {"--config", config, "--family", "Specimen Text", "--heading-family", "Specimen Headings"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, AllOf(HasSubstr("\nFont             DejaVu Sans ("),
                                     HasSubstr("\nHeading font     Liberation Serif Bold (")));
    result = set({"--config", config, "--family", "DejaVu Sans Mono"});
    EXPECT_EQ(result.exitCode, 2) << result.describe();
    result = set({"--config", config, "--family", "Shaping Text", "--family", "Shaping Arabic",
                  "--family", "Shaping Japanese"},
                 "a \xD8\xA8 \xE3\x81\x82");
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, AllOf(HasSubstr("\nFont             DejaVu Serif ("),
                                     HasSubstr("\nFurther font     Amiri Regular ("),
                                     HasSubstr("\nFurther font     IPAMincho (")));
}
