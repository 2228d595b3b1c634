// Shaped text as foreign programs see it: ligatures, marks, Arabic and columns.

#include "interop/PagePicture.h"
#include "interop/QpdfReader.h"

#include "support/FontPackages.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace KWTest;
using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

constexpr unsigned kDpi = 150;
constexpr unsigned kFiner = 4; // how much finer than its picture typeset draws

class ShapedPdf : public testing::Test {
protected:
    std::string file(const std::string& name) const { return folder.path(name).string(); }

    void set(const std::string& text, std::vector<std::string> options) const {
        options.insert(options.end(), {"-o", file("out.pdf"), folder.write("text.txt", text)});
        const ProcessResult result = runProgram(KW_TYPESET, options);
        ASSERT_TRUE(result.ok()) << result.describe();
        ASSERT_EQ(result.errors, "");
    }
    std::string outputOf(const std::string& program, std::vector<std::string> arguments) const {
        const ProcessResult result = runProgram(program, arguments);
        EXPECT_TRUE(result.ok()) << program << ": " << result.describe();
        return result.output;
    }
    /// What pdftotext finds, without line ends and marks of direction.
    std::string textOf(const std::string& name) const {
        std::string text = outputOf("pdftotext", {"-enc", "UTF-8", file(name), "-"});
        for (const char* drop : {"\n", "\f", "\xE2\x80\xAA", "\xE2\x80\xAB", "\xE2\x80\xAC"}) {
            for (std::size_t i = text.find(drop); i != std::string::npos; i = text.find(drop))
                text.erase(i, std::char_traits<char>::length(drop));
        }
        return text;
    }

    TempDir folder;
};

} // namespace

TEST_F(ShapedPdf, LigaturesAndMarksGiveTheirCharactersBack) {
    // The ligature of f, f and i, the same f and i as one character of the text, and a caron.
    const std::string text = "office \xEF\xAC\x81 fi x\xCC\x8C x waffle";
    set(text, {"--font", packagedFont("DejaVuSans").string()});
    EXPECT_EQ(textOf("out.pdf"), text);
    EXPECT_EQ(checkWithQpdf(file("out.pdf")).exitCode, 0);
}

TEST_F(ShapedPdf, AMissingCharacterIsReadBackThoughItShowsABox) {
    folder.write("text.txt", "a \xEA\x9E\xBA b");
    const ProcessResult result =
        runProgram(KW_TYPESET, {"--font", packagedFont("DejaVuSans").string(), "-o",
                                file("out.pdf"), file("text.txt")});
    ASSERT_TRUE(result.ok());
    EXPECT_THAT(textOf("out.pdf"), HasSubstr("\xEA\x9E\xBA"));
}

TEST_F(ShapedPdf, ArabicIsReadInItsOwnOrder) {
    // kitab arabi, with the forms of joined letters on the page and the letters in the text.
    const std::string text = "\xD9\x83\xD8\xAA\xD8\xA7\xD8\xA8 \xD8\xB9\xD8\xB1\xD8\xA8\xD9\x8A";
    set(text, {"--font", packagedFont("DejaVuSans").string()});
    EXPECT_EQ(textOf("out.pdf"), text);
}

TEST_F(ShapedPdf, ColumnsAreVerticalWriting) {
    // More than one column, with brackets and a full stop that have vertical forms.
    std::string text;
    for (int i = 0; i < 8; ++i)
        text += "\xE3\x80\x8C\xE6\x97\xA5\xE6\x9C\xAC\xE3\x80\x8D\xE3\x80\x82";
    set(text, {"--vertical", "--font", packagedFont("IPAMincho").string()});
    EXPECT_EQ(textOf("out.pdf"), text);
    EXPECT_THAT(outputOf("pdffonts", {file("out.pdf")}),
                ContainsRegex("[A-Z]{6}\\+IPAMincho +CID TrueType +Identity-V +yes yes yes "));
}

TEST_F(ShapedPdf, ThePictureOfTheShapedPageShowsWhatThePdfShows) {
    const ProcessResult result =
        runProgram(KW_TYPESET, {"--config", KW_DEMO_CONFIG, "--family", "Shaping Text", "--family",
                                "Shaping Arabic", "--family", "Shaping Japanese",
                                "--heading-family", "Shaping Headings", "-o", file("page.pdf"),
                                "--png", file("page.png"), "--whole-page", KW_SHAPING});
    ASSERT_TRUE(result.ok()) << result.describe();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, HasSubstr(", 1 page\n"));
    outputOf("pdftoppm", {"-r", std::to_string(kDpi * kFiner), "-gray", "-singlefile",
                          file("page.pdf"), file("page")});
    const PagePicture page = readPgm(file("page.pgm")).reduced(kFiner);
    const PagePicture picture = readPng(file("page.png"));
    const unsigned width = std::min(page.width, picture.width);
    const unsigned height = std::min(page.height, picture.height);
    const PagePicture expected = page.corner(width, height);
    const double found = difference(expected, picture.corner(width, height));
    RecordProperty("difference", std::to_string(found));
    EXPECT_LT(found, 0.25); // the picture is hinted, the page is not
    EXPECT_GT(difference(expected, picture.shifted().corner(width, height)), 2 * found);
    EXPECT_EQ(checkWithQpdf(file("page.pdf")).exitCode, 0);
}
