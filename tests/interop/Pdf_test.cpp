// The example's PDF and PNG as foreign programs see them: poppler, qpdf, FreeType.

#include "interop/PagePicture.h"
#include "interop/QpdfReader.h"

#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "typeset/Document.h"
#include "typeset/FontFile.h"
#include "typeset/TextLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

using namespace KWTest;
using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

constexpr double kSize = 10.5; // what typeset takes when it is not told
constexpr unsigned kDpi = 150;
constexpr unsigned kFiner = 4; // how much finer than its picture typeset draws

/// The specimen, set once with a subset and once with the whole font.
class Pdf : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<TempDir>();
        set({"-o", file("subset.pdf"), "--png", file("subset.png")});
        set({"-o", file("whole.pdf"), "--embed-whole-font"});
    }
    static void TearDownTestSuite() { folder_.reset(); }

    static std::string file(const std::string& name) { return folder_->path(name).string(); }
    static std::string font() { return packagedFont("DejaVuSans").string(); }

    static std::string outputOf(const std::string& program, std::vector<std::string> arguments) {
        const ProcessResult result = runProgram(program, arguments);
        EXPECT_TRUE(result.ok()) << program << ": " << result.describe();
        EXPECT_EQ(result.errors, "") << program;
        return result.output;
    }

    /// A page as pdftoppm draws it.
    static PagePicture page(const std::string& name, int number = 1, unsigned dpi = kDpi) {
        const std::string n = std::to_string(number);
        outputOf("pdftoppm", {"-r", std::to_string(dpi), "-gray", "-f", n, "-l", n, "-singlefile",
                              file(name + ".pdf"), file(name)});
        return readPgm(file(name + ".pgm"));
    }
    static typeset::Layout layout() {
        return typeset::layOut(typeset::readDocument(KW_SPECIMEN), {{typeset::openFont(font())}},
                               {.size = kSize});
    }
    /// The lines that the picture shows: those of the upper half.
    static std::vector<typeset::Line> pictured(const typeset::Layout& layout) {
        std::vector<typeset::Line> lines;
        for (const typeset::Line& line : layout.pages[0].lines) {
            if (line.bottom < layout.pageHeight / 2)
                lines.push_back(line);
        }
        return lines;
    }

private:
    static void set(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--font", font(), KW_SPECIMEN});
        const ProcessResult result = runProgram(KW_TYPESET, arguments);
        ASSERT_TRUE(result.ok()) << result.describe();
        ASSERT_EQ(result.errors, "");
    }

    static std::unique_ptr<TempDir> folder_;
};
std::unique_ptr<TempDir> Pdf::folder_;

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

} // namespace

TEST_F(Pdf, HasOneEmbeddedSubsetCidTrueTypeFontWithAToUnicodeMap) {
    const std::string fonts = outputOf("pdffonts", {file("subset.pdf")});
    EXPECT_THAT(fonts, ContainsRegex("\n[A-Z]{6}\\+DejaVuSans +CID TrueType +Identity-H +"
                                     "yes yes yes "));
    EXPECT_EQ(std::count(fonts.begin(), fonts.end(), '\n'), 3) << fonts;
}

TEST_F(Pdf, WithTheWholeFontHasNoSubsetTag) {
    EXPECT_THAT(outputOf("pdffonts", {file("whole.pdf")}),
                ContainsRegex("\nDejaVuSans +CID TrueType +Identity-H +yes no +yes "));
}

TEST_F(Pdf, GivesEveryWordOfTheTextBack) {
    std::vector<std::string> expected;
    for (const typeset::Block& block : typeset::readDocument(KW_SPECIMEN).blocks) {
        icu::UnicodeString text = block.text;
        text.findAndReplace(u"\u00A0", u" "); // a no-break space is a space where it does not show
        for (const std::string& word : wordsOf(typeset::toUtf8(text)))
            expected.push_back(word);
    }
    ASSERT_GT(expected.size(), 500U);
    std::vector<std::string> words;
    for (const char* page : {"1", "2"}) {
        const std::vector<std::string> found = wordsOf(outputOf(
            "pdftotext", {"-f", page, "-l", page, "-enc", "UTF-8", file("subset.pdf"), "-"}));
        ASSERT_FALSE(found.empty());
        EXPECT_EQ(found.back(), page); // its number, which is not part of the text
        words.insert(words.end(), found.begin(), found.end() - 1);
    }
    EXPECT_EQ(words, expected);
}

TEST_F(Pdf, HasATitleAndNoDates) {
    const std::string info = outputOf("pdfinfo", {"-enc", "UTF-8", file("subset.pdf")});
    EXPECT_THAT(info, ContainsRegex("Title: +One file, one page\n"));
    EXPECT_THAT(info, ContainsRegex("Pages: +2\n"));
    EXPECT_THAT(info, testing::Not(HasSubstr("Date:")));
}

TEST_F(Pdf, PassesTheCheckOfQpdf) {
    for (const char* name : {"subset.pdf", "whole.pdf"}) {
        const QpdfReport report = checkWithQpdf(file(name));
        EXPECT_EQ(report.exitCode, 0) << report.text;
        EXPECT_THAT(report.text, HasSubstr("No syntax or stream encoding errors found"));
    }
}

TEST_F(Pdf, TheFontDescriptorHasTheMetricsOfTheFont) {
    const QpdfFont pdf = readFonts(file("subset.pdf")).at("/F1");
    const FreeTypeFace face(readFile(font()));
    const auto perMille = [&](long units) {
        return static_cast<double>(units) * 1000 / face->units_per_EM;
    };
    EXPECT_NEAR(pdf.descriptor.at("/Ascent"), perMille(face->ascender), 0.001);
    EXPECT_NEAR(pdf.descriptor.at("/Descent"), perMille(face->descender), 0.001);
    EXPECT_EQ(pdf.descriptor.at("/ItalicAngle"), 0);
    EXPECT_EQ(pdf.descriptor.at("/Flags"), 4); // symbolic, and nothing else
    // The font does not state it; the outline that it is taken from is fitted to a fine grid.
    EXPECT_NEAR(pdf.descriptor.at("/CapHeight"),
                perMille(face.load(face.glyphOf('H'))->metrics.height), 1.5);
    const std::vector<double> box{perMille(face->bbox.xMin), perMille(face->bbox.yMin),
                                  perMille(face->bbox.xMax), perMille(face->bbox.yMax)};
    EXPECT_THAT(pdf.box, testing::Pointwise(testing::DoubleNear(0.001), box));

    EXPECT_GT(pdf.widths.size(), 300U);
    for (const auto& [gid, width] : pdf.widths) {
        if (gid != 0) { // which the text does not use
            EXPECT_NEAR(width, perMille(face.advance(gid)), 0.001) << gid;
        }
    }
}

TEST_F(Pdf, AnObliqueFontHasItsAngle) {
    const std::string path = file("oblique.pdf");
    const ProcessResult result =
        runProgram(KW_TYPESET, {"--font", packagedFont("DejaVuSans-Oblique").string(), "-o", path,
                                KW_SPECIMEN});
    ASSERT_TRUE(result.ok()) << result.describe();
    const QpdfFont pdf = readFonts(path).at("/F1");
    EXPECT_EQ(pdf.descriptor.at("/ItalicAngle"), -11);
    EXPECT_EQ(pdf.descriptor.at("/Flags"), 4 + 64); // symbolic, italic
}

TEST_F(Pdf, TheSubsetDrawsEveryPageLikeTheWholeFont) {
    for (const int number : {1, 2}) {
        const PagePicture subset = page("subset", number);
        EXPECT_GT(subset.totalInk(), 255U * 20000U) << "a page that is nearly blank";
        EXPECT_EQ(difference(subset, page("whole", number)), 0) << "page " << number;
    }
}

TEST_F(Pdf, ThePageLooksAsFreeTypeDrawsTheWholeFontAtTheSamePlaces) {
    const PagePicture drawn = page("subset");
    const PagePicture reference =
        drawSmooth(layout().pages[0].lines, readFile(font()), kDpi, drawn.width, drawn.height);
    const double found = difference(reference, drawn);
    RecordProperty("difference", std::to_string(found));
    EXPECT_LT(found, 0.03);
    // The measure tells a page that is off by a single pixel.
    EXPECT_GT(difference(reference, drawn.shifted()), 10 * found);
}

TEST_F(Pdf, ThePictureIsFreeTypesMonochromeRenderingToThePixel) {
    const PagePicture picture = readPng(file("subset.png"));
    EXPECT_GT(picture.totalInk(), 255U * 10000U);
    EXPECT_EQ(difference(drawMono(pictured(layout()), readFile(font()), kDpi, kFiner, picture.width,
                                  picture.height),
                         picture),
              0);
}

TEST_F(Pdf, ThePictureShowsWhatThePageShows) {
    const PagePicture picture = readPng(file("subset.png"));
    // The picture ends below its last line, before the next one begins. The page is drawn as fine
    // as the picture was.
    const auto rows = static_cast<unsigned>((pictured(layout()).back().bottom + 4) * kDpi / 72);
    const PagePicture drawn = page("subset", 1, kDpi * kFiner).reduced(kFiner);
    const PagePicture expected = drawn.corner(picture.width, rows);
    const double found = difference(expected, picture.corner(picture.width, rows));
    RecordProperty("difference", std::to_string(found));
    EXPECT_LT(found, 0.2); // the picture is hinted, the page is not
    EXPECT_GT(difference(expected, picture.shifted().corner(picture.width, rows)), 3 * found);
}
