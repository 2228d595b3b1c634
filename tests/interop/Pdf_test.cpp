// The example's PDF and PNG as foreign programs see them: poppler, qpdf, FreeType.

#include "interop/PagePicture.h"

#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "typeset/Document.h"
#include "typeset/FontFile.h"
#include "typeset/TextLayout.h"

#include <qpdf/JSON.hh> // before QPDF.hh, which has a vector of it
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFJob.hh>
#include <qpdf/QPDFLogger.hh>

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
        return typeset::layOut(typeset::readDocument(KW_SPECIMEN), typeset::openFont(font()), kSize,
                               true);
    }
    /// The lines that the picture shows: those of the upper half.
    static std::vector<typeset::Line> pictured(const typeset::Layout& layout) {
        std::vector<typeset::Line> lines;
        for (const typeset::Line& line : layout.pages[0].lines) {
            if (line.baseline < layout.pageHeight / 2)
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
        const std::string path = file(name);
        const char* const arguments[] = {"qpdf", "--check", path.c_str(), nullptr};
        std::ostringstream output;
        const auto logger = QPDFLogger::create();
        logger->setOutputStreams(&output, &output);
        QPDFJob job;
        job.setLogger(logger);
        job.initializeFromArgv(arguments);
        job.run();
        EXPECT_EQ(job.getExitCode(), 0) << output.str();
        EXPECT_THAT(output.str(), HasSubstr("No syntax or stream encoding errors found"));
    }
}

TEST_F(Pdf, TheFontDescriptorHasTheMetricsOfTheFont) {
    QPDF pdf;
    pdf.processFile(file("subset.pdf").c_str());
    QPDFObjectHandle page = pdf.getAllPages().at(0);
    QPDFObjectHandle font1 = page.getKey("/Resources").getKey("/Font").getKey("/F1");
    QPDFObjectHandle cidFont = font1.getKey("/DescendantFonts").getArrayItem(0);
    QPDFObjectHandle descriptor = cidFont.getKey("/FontDescriptor");
    const FreeTypeFace face(readFile(font()));
    const auto perMille = [&](long units) {
        return static_cast<double>(units) * 1000 / face->units_per_EM;
    };
    const auto expect = [](QPDFObjectHandle number, double value) {
        EXPECT_NEAR(number.getNumericValue(), value, 0.001);
    };
    expect(descriptor.getKey("/Ascent"), perMille(face->ascender));
    expect(descriptor.getKey("/Descent"), perMille(face->descender));
    // The font does not state it; the outline that it is taken from is fitted to a fine grid.
    EXPECT_NEAR(descriptor.getKey("/CapHeight").getNumericValue(),
                perMille(face.load(face.glyphOf('H'))->metrics.height), 1.5);
    expect(descriptor.getKey("/ItalicAngle"), 0);
    QPDFObjectHandle box = descriptor.getKey("/FontBBox");
    expect(box.getArrayItem(0), perMille(face->bbox.xMin));
    expect(box.getArrayItem(1), perMille(face->bbox.yMin));
    expect(box.getArrayItem(2), perMille(face->bbox.xMax));
    expect(box.getArrayItem(3), perMille(face->bbox.yMax));

    // And W has the widths of the glyphs.
    QPDFObjectHandle widths = cidFont.getKey("/W");
    std::size_t checked = 0;
    for (int i = 0; i + 1 < widths.getArrayNItems(); i += 2) {
        const auto first = static_cast<FT_UInt>(widths.getArrayItem(i).getIntValue());
        QPDFObjectHandle run = widths.getArrayItem(i + 1);
        for (int j = 0; j < run.getArrayNItems(); ++j, ++checked) {
            const FT_UInt gid = first + static_cast<FT_UInt>(j);
            SCOPED_TRACE(gid);
            expect(run.getArrayItem(j), gid == 0 ? 0 : perMille(face.advance(gid)));
        }
    }
    EXPECT_GT(checked, 300U);
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
    const auto rows = static_cast<unsigned>((pictured(layout()).back().baseline + 4) * kDpi / 72);
    const PagePicture drawn = page("subset", 1, kDpi * kFiner).reduced(kFiner);
    const PagePicture expected = drawn.corner(picture.width, rows);
    const double found = difference(expected, picture.corner(picture.width, rows));
    RecordProperty("difference", std::to_string(found));
    EXPECT_LT(found, 0.2); // the picture is hinted, the page is not
    EXPECT_GT(difference(expected, picture.shifted().corner(picture.width, rows)), 3 * found);
}
