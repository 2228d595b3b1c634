// Fonts that a text brings along, and the web font that it leaves behind.

#include "support/FontPackages.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/TestFont.h"
#include "support/WoffFile.h"

#include <KWFontService17/KWFontService.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace KWTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class TypesetFaces : public testing::Test {
protected:
    /// Sets a text with the fonts that it brings along and no others.
    ProcessResult set(std::vector<std::string> options, const std::string& text = "A B C") const {
        const std::string config =
            folder
                .write("font-config.xml", "<font-config windows-registry=\"disable\">"
                                          "<font-folder path=\"" +
                                              folder.makeFolder("fonts").string() +
                                              "\"/></font-config>")
                .string();
        options.insert(options.end(), {"--config", config, "-o", pdf.string(),
                                       folder.write("text.txt", text).string()});
        return runProgram(KW_TYPESET, options);
    }
    /// A file of the scratch folder as the value of --font-face.
    std::string face(const std::string& style, const std::string& name, const Bytes& data) const {
        return style + ";" + folder.write(name, data).string();
    }
    static std::string dataUrl(const std::string& mediaType, const Bytes& data) {
        constexpr char kDigits[] = "0123456789ABCDEF";
        std::string url = "data:" + mediaType + ",";
        for (const std::uint8_t byte : data)
            url.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
        return url;
    }

    TempDir folder;
    std::filesystem::path pdf = folder.path("out.pdf");
    std::filesystem::path woff = folder.path("out.woff");
    Bytes latin = TestFont::latin().build();
};

} // namespace

TEST_F(TypesetFaces, AFontOfTheTextIsFoundByTheNameItWasGiven) {
    const std::string brought = face("Of the Text;400;0", "a.ttf", latin);
    const ProcessResult result = set({"--font-face", brought, "--family", "Of the Text"});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, HasSubstr("Font             Of the Text (" +
                                         folder.path("a.ttf").string() + ")\n"));
    EXPECT_THAT(result.output, HasSubstr("Embedded subset"));
    EXPECT_EQ(set({"--font-face", brought, "--family", "KWTest Latin"}).exitCode, 2)
        << "and by no other name";
}

TEST_F(TypesetFaces, SeveralFacesAreChosenByTheirDeclaredStyle) {
    const std::vector<std::string> faces{"--font-face", face("F;400;0", "a.ttf", latin),
                                         "--font-face", face("F;700;0", "b.ttf", latin),
                                         "--font-face", face("F;700;1", "c.ttf", latin),
                                         "--family",    "F"};
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases{
        {{}, "a.ttf"}, {{"--weight", "700"}, "b.ttf"}, {{"--weight", "700", "--italic"}, "c.ttf"}};
    for (auto [options, file] : cases) {
        options.insert(options.end(), faces.begin(), faces.end());
        const ProcessResult result = set(options);
        EXPECT_EQ(result.exitCode, 0) << result.describe();
        EXPECT_THAT(result.output, HasSubstr(folder.path(file).string()));
    }
}

TEST_F(TypesetFaces, AFontOfEveryKindIsSet) {
    const std::pair<const char*, Bytes> files[] = {
        {"a.ttf", latin},
        {"a.otf", TestFont::openType().build()},
        {"a.ttc", SfntCollection{.fonts = {TestFont::latin().sfnt()}}.build()},
        {"a.woff", WoffFile::of(latin).build()},
        {"b.woff", WoffFile::of(TestFont::openType().build()).build()},
        {"a.unknown", latin},
    };
    for (const auto& [name, data] : files) {
        const ProcessResult result =
            set({"--font-face", face("F;;", name, data), "--family", "F"}, "A B");
        EXPECT_EQ(result.exitCode, 0) << name << result.describe();
        EXPECT_EQ(result.errors, "") << name;
    }
}

TEST_F(TypesetFaces, ADataUriIsAFontToo) {
    const std::pair<const char*, Bytes> files[] = {
        {"font/ttf", latin},
        {"font/otf", TestFont::openType().build()},
        {"application/font-ttf", latin},
        {"font/woff", WoffFile::of(latin).build()},
        {"application/font-woff", WoffFile::of(latin).build()},
    };
    for (const auto& [mediaType, data] : files) {
        const ProcessResult result =
            set({"--font-face", "F;;;" + dataUrl(mediaType, data), "--family", "F"}, "A B");
        EXPECT_EQ(result.exitCode, 0) << mediaType << result.describe();
        EXPECT_THAT(result.output, HasSubstr(std::string("F (data:") + mediaType + ")\n"));
    }
}

TEST_F(TypesetFaces, AFontThatCannotBeHadIsExitCodeTwoWithTheReason) {
    ProcessResult result = set({"--font-face", "F;;;/no/such.ttf", "--family", "F"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "typeset: Cannot open font-face font.\n/no/such.ttf\n");
    result = set({"--font-face", face("F;;", "bad.woff", Bytes::ofText(std::string(50, 'x'))),
                  "--family", "F"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, StartsWith("typeset: Font file error: Invalid WOFF header.\n"));
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(TypesetFaces, AFaceThatMakesNoSenseIsWrongUsage) {
    ProcessResult result = set({"--font-face", "F;a.ttf", "--family", "F"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("--font-face wants 'Family;weight;italic;URL'"));
    result = set({"--font-face", "F;;;a.ttf"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("wants --family"));
}

TEST_F(TypesetFaces, AWebFontHasTheGlyphsThatTheTextUses) {
    const ProcessResult result = set(
        {"--font-face", face("F;;", "a.ttf", latin), "--family", "F", "--webfont", woff.string()},
        "A C");
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(result.output,
                HasSubstr("Web font         " + std::to_string(std::filesystem::file_size(woff)) +
                          " bytes, "));
    KWFontService_NS::FS_ExtraFontManager fonts;
    KWFontService_NS::KWError error;
    ASSERT_EQ(fonts.appendExtraFont(pathText(woff), u"Web", 0, -1,
                                    KWFontService_NS::FS_FILETYPE_UNKNOWN, &error),
              0);
    KWFontService_NS::FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Web", 0, false, fonts.getExtraFonts(), false));
    const auto hasOutline = [&](char16_t ch) {
        KWFontService_NS::FS_GlyphDrawInfo drawn;
        return font.getGlyphDrawInfo(font.getGlyphID(ch, false), drawn, false) &&
               !drawn.contours.empty();
    };
    EXPECT_TRUE(hasOutline(u'A'));
    EXPECT_TRUE(hasOutline(u'C'));
    EXPECT_FALSE(hasOutline(u'B')) << "not in the text";
}

TEST_F(TypesetFaces, AWebFontIsMadeOfAFontFileAndOfWoffToo) {
    ProcessResult result = set({"--font-face", face("F;;", "a.woff", WoffFile::of(latin).build()),
                                "--family", "F", "--webfont", woff.string()});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(readFile(woff).str(), StartsWith("wOFF"));
    std::filesystem::remove(woff);
    result = runProgram(KW_TYPESET,
                        {"--font", folder.write("f.ttf", latin).string(), "--webfont",
                         woff.string(), "-o", pdf.string(), folder.write("t.txt", "A").string()});
    EXPECT_EQ(result.exitCode, 0) << result.describe();
    EXPECT_THAT(readFile(woff).str(), StartsWith("wOFF"));
}

TEST_F(TypesetFaces, AWebFontThatTheLicenceForbidsIsExitCodeTwo) {
    TestFont whole = TestFont::latin();
    whole.os2.fsType = 0x0100;
    const ProcessResult result = set({"--font-face", face("F;;", "a.ttf", whole.build()),
                                      "--family", "F", "--webfont", woff.string()});
    EXPECT_EQ(result.exitCode, 2) << result.describe();
    EXPECT_THAT(result.errors, HasSubstr("its licence does not allow to cut it for a web font"));
    EXPECT_FALSE(std::filesystem::exists(woff));
}

TEST_F(TypesetFaces, AWebFontWithNowhereToGoIsExitCodeFour) {
    const ProcessResult result = set({"--font-face", face("F;;", "a.ttf", latin), "--family", "F",
                                      "--webfont", "/no/such/folder/a.woff"});
    EXPECT_EQ(result.exitCode, 4) << result.describe();
}
