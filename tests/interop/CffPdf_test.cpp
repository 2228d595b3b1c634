// Fonts with CFF outlines in a PDF, as poppler and Ghostscript see them.

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
using testing::StartsWith;

namespace {

constexpr unsigned kDpi = 100;
constexpr unsigned kFiner = 4;

class CffPdf : public testing::Test {
protected:
    std::string file(const std::string& name) const { return folder.path(name).string(); }

    std::string outputOf(const std::string& program, std::vector<std::string> arguments) const {
        const ProcessResult result = runProgram(program, arguments);
        EXPECT_TRUE(result.ok()) << program << ": " << result.describe();
        EXPECT_EQ(result.errors, "") << program;
        return result.output;
    }
    /// Sets a text as `name`.pdf, and once more as `name`-whole.pdf with the whole font.
    void set(const std::string& name, const std::string& text,
             std::vector<std::string> options) const {
        options.push_back(folder.write("text.txt", text).string());
        for (const std::string kind : {"", "-whole"}) {
            std::vector<std::string> arguments = options;
            arguments.insert(arguments.begin(), {"-o", file(name + kind + ".pdf")});
            if (!kind.empty())
                arguments.insert(arguments.begin(), "--embed-whole-font");
            outputOf(KW_TYPESET, arguments);
            EXPECT_EQ(checkWithQpdf(file(name + kind + ".pdf")).exitCode, 0);
        }
    }
    std::vector<std::string> member(const std::string& family) const {
        const std::string fonts = packagedFont("NotoSansCJK").parent_path().string();
        const auto config = folder.write(
            "fonts.xml", "<font-config windows-registry=\"disable\"><font-folder path=\"" + fonts +
                             "\"/></font-config>");
        return {"--config", config.string(), "--family", family};
    }

    std::string fontsOf(const std::string& name) const {
        return outputOf("pdffonts", {file(name + ".pdf")});
    }
    std::string textOf(const std::string& name) const {
        return outputOf("pdftotext", {"-enc", "UTF-8", file(name + ".pdf"), "-"});
    }
    PagePicture byPoppler(const std::string& name) const {
        outputOf("pdftoppm", {"-r", std::to_string(kDpi * kFiner), "-gray", "-singlefile",
                              file(name + ".pdf"), file(name)});
        return readPgm(file(name + ".pgm")).reduced(kFiner);
    }
    PagePicture byGhostscript(const std::string& name) const {
        outputOf("gs",
                 {"-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-sDEVICE=pgmraw", "-dTextAlphaBits=4",
                  "-dFirstPage=1", "-dLastPage=1", "-r" + std::to_string(kDpi * kFiner),
                  "-sOutputFile=" + file(name + "-gs.pgm"), file(name + ".pdf")});
        return readPgm(file(name + "-gs.pgm")).reduced(kFiner);
    }
    /// The subset looks like the whole font, and in both programs alike.
    void expectAlike(const std::string& name) const {
        const PagePicture page = byPoppler(name);
        EXPECT_GT(page.totalInk(), 10000U);
        EXPECT_EQ(page.ink, byPoppler(name + "-whole").ink);
        const PagePicture other = byGhostscript(name);
        EXPECT_EQ(other.ink, byGhostscript(name + "-whole").ink);
        const unsigned width = std::min(page.width, other.width);
        const unsigned height = std::min(page.height, other.height);
        const double found = difference(page.corner(width, height), other.corner(width, height));
        RecordProperty("difference", std::to_string(found));
        EXPECT_LT(found, 0.25); // Ghostscript takes every pixel that an outline touches
        EXPECT_GT(difference(page.shifted().corner(width, height), other.corner(width, height)),
                  2 * found);
    }

    TempDir folder;
};

} // namespace

TEST_F(CffPdf, ANameKeyedFontIsASimpleFontOfNamedGlyphs) {
    const std::string text = "Office waffle, \xC3\x87"
                             "a va? AVATAR";
    set("page", text, {"--font", packagedFont("LinLibertine").string()});
    EXPECT_THAT(fontsOf("page"),
                ContainsRegex("[A-Z]{6}\\+LinLibertineO +Type 1C +Custom +yes yes yes "));
    EXPECT_THAT(fontsOf("page-whole"), ContainsRegex("\nLinLibertineO +Type 1C +Custom +yes no "));
    EXPECT_THAT(textOf("page"), StartsWith(text));
    expectAlike("page");
}

TEST_F(CffPdf, AnEncodingOfTheFontsOwnDoesNotMatter) {
    const std::string text = "Hamburgefonstiv \xC3\xA9\xC3\xA0";
    set("page", text, {"--font", packagedFont("C059-Roman").string()});
    EXPECT_THAT(fontsOf("page"), ContainsRegex("\\+C059-Roman +Type 1C +Custom "));
    EXPECT_THAT(textOf("page"), StartsWith(text));
    expectAlike("page");
}

TEST_F(CffPdf, MoreGlyphsThanAByteTellsApartAreAnOpenTypeFile) {
    set("page", readFile(KW_SPECIMEN).str(),
        {"--font", packagedFont("LinLibertine").string(), "--font",
         packagedFont("DejaVuSans").string()});
    EXPECT_THAT(fontsOf("page"),
                ContainsRegex("\\+LinLibertineO +CID Type 0C \\(OT\\) +Identity-H +yes "));
    EXPECT_THAT(textOf("page"), HasSubstr("A font file is a small library of its own."));
    expectAlike("page");
}

TEST_F(CffPdf, ACidKeyedFontHasItsCids) {
    const std::string text = "\xE5\x90\xBE\xE8\xBC\xA9\xE3\x81\xAF\xE7\x8C\xAB\xE3\x81\xA7"
                             "\xE3\x81\x82\xE3\x82\x8B and Latin";
    set("page", text, member("Noto Serif CJK JP"));
    EXPECT_THAT(fontsOf("page"),
                ContainsRegex("\\+NotoSerifCJKjp-Regular +CID Type 0C +Identity-H +yes yes yes "));
    EXPECT_THAT(fontsOf("page-whole"),
                ContainsRegex("\nNotoSerifCJKjp-Regular +CID Type 0C \\(OT\\) +Identity-H +yes "));
    EXPECT_THAT(textOf("page"), StartsWith(text));
    expectAlike("page");
}

TEST_F(CffPdf, ACidKeyedFontSetsColumns) {
    std::vector<std::string> options = member("Noto Sans CJK JP");
    options.emplace_back("--vertical");
    set("page", "\xE3\x80\x8C\xE7\xB8\xA6\xE6\x9B\xB8\xE3\x81\x8D\xE3\x80\x8D\xE3\x80\x82",
        options);
    EXPECT_THAT(fontsOf("page"),
                ContainsRegex("\\+NotoSansCJKjp-Regular +CID Type 0C +Identity-V"));
    expectAlike("page");
}

TEST_F(CffPdf, AFontJoinedOfTwoSubsetsLooksLikeOneSubset) {
    const std::vector<std::string> cjk = member("Noto Serif CJK JP");
    const std::string latin = "Office waffle\n\nAVATAR \xC3\x87"
                              "a va?";
    const std::string japanese = "\xE5\x90\xBE\xE8\xBC\xA9\xE3\x81\xAF\n\n"
                                 "\xE7\x8C\xAB\xE3\x81\xA7\xE3\x81\x82\xE3\x82\x8B";
    const auto fontFile = [](const char* name) {
        return std::vector<std::string>{"--font", packagedFont(name).string()};
    };
    for (const auto& [text, options] : {std::pair{latin, fontFile("LinLibertine")},
                                        {latin, fontFile("DejaVuSans")},
                                        {japanese, cjk}}) {
        set("page", text, options);
        std::vector<std::string> arguments = options;
        arguments.insert(arguments.end(),
                         {"--merge", "-o", file("joined.pdf"), folder.path("text.txt").string()});
        EXPECT_THAT(outputOf(KW_TYPESET, arguments), HasSubstr("Joined of"));
        EXPECT_EQ(checkWithQpdf(file("joined.pdf")).exitCode, 0);
        EXPECT_EQ(textOf("joined"), textOf("page"));
        EXPECT_GT(byPoppler("joined").totalInk(), 5000U);
        EXPECT_EQ(byPoppler("joined").ink, byPoppler("page").ink);
        EXPECT_EQ(byGhostscript("joined").ink, byGhostscript("page").ink);
    }
}
