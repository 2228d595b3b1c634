// A PDF of two fonts that a configuration names, as foreign programs see it.

#include "interop/PagePicture.h"
#include "interop/QpdfReader.h"

#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

using namespace KWTest;
using testing::ContainsRegex;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr unsigned kDpi = 150;
constexpr unsigned kFiner = 4; // how much finer than its picture typeset draws

/// The specimen in DejaVu Sans with headings in Liberation Serif, by aliases; the configuration
/// asks for headings of 120 % of their size, a tenth of it below the line.
class TwoFontPdf : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<TempDir>();
        folder_->write("font-config.xml", configuration("font-size-adjust=\"120%\" "
                                                        "baseline-adjust=\"-0.1\""));
        folder_->write("plain-config.xml", configuration(""));
        set("two.pdf", "font-config.xml", {"--png", file("two.png")});
        set("plain.pdf", "plain-config.xml");
        fonts_ = readFonts(file("two.pdf"));
    }
    static void TearDownTestSuite() {
        fonts_.clear();
        folder_.reset();
    }

    static std::string file(const std::string& name) { return folder_->path(name).string(); }
    static const QpdfFont& text() { return fonts_.at("/F1"); }
    static const QpdfFont& headings() { return fonts_.at("/F2"); }
    static std::map<std::string, QpdfFont>& fonts() { return fonts_; }

    static std::string outputOf(const std::string& program, std::vector<std::string> arguments) {
        const ProcessResult result = runProgram(program, arguments);
        EXPECT_TRUE(result.ok()) << program << ": " << result.describe();
        EXPECT_EQ(result.errors, "") << program;
        return result.output;
    }
    /// The first page as pdftoppm draws it.
    static PagePicture page(const std::string& name, unsigned dpi) {
        outputOf("pdftoppm", {"-r", std::to_string(dpi), "-gray", "-f", "1", "-l", "1",
                              "-singlefile", file(name + ".pdf"), file(name)});
        return readPgm(file(name + ".pgm"));
    }

private:
    static std::string configuration(const std::string& headingEntry) {
        const auto folderOf = [](const char* name) {
            return "<font-folder path=\"" + packagedFont(name).parent_path().string() + "\">";
        };
        return "<font-config windows-registry=\"disable\">" + folderOf("DejaVuSans") +
               "<font-alias file=\"DejaVuSans.ttf\"><alias family-name=\"Body\"/></font-alias>"
               "</font-folder>" +
               folderOf("LiberationSerif") + "<font-entry file=\"LiberationSerif-Regular.ttf\" " +
               headingEntry +
               "/><font-alias file=\"LiberationSerif-Regular.ttf\">"
               "<alias family-name=\"Head\"/></font-alias></font-folder></font-config>";
    }
    static void set(const std::string& pdf, const std::string& config,
                    std::vector<std::string> more = {}) {
        more.insert(more.end(), {"--config", file(config), "--family", "Body", "--heading-family",
                                 "Head", "-o", file(pdf), KW_SPECIMEN});
        const ProcessResult result = runProgram(KW_TYPESET, more);
        ASSERT_TRUE(result.ok()) << result.describe();
        ASSERT_EQ(result.errors, "");
    }

    static std::unique_ptr<TempDir> folder_;
    static std::map<std::string, QpdfFont> fonts_;
};
std::unique_ptr<TempDir> TwoFontPdf::folder_;
std::map<std::string, QpdfFont> TwoFontPdf::fonts_;

using Point = std::tuple<FT_Pos, FT_Pos, char>;

std::vector<Point> outlineOf(const FreeTypeFace& face, unsigned short gid) {
    const FT_Outline& outline = face.load(gid)->outline;
    std::vector<Point> points;
    for (int i = 0; i < outline.n_points; ++i)
        points.emplace_back(outline.points[i].x, outline.points[i].y, outline.tags[i]);
    return points;
}

/// The embedded program draws every glyph that the font shows as the font file does; the widths
/// are those of the file.
void expectSubsetOf(const QpdfFont& font, const std::filesystem::path& file) {
    const FreeTypeFace whole(readFile(file));
    const FreeTypeFace subset(Bytes::ofText(font.program));
    for (const unsigned short gid : font.shown) {
        EXPECT_EQ(outlineOf(subset, gid), outlineOf(whole, gid)) << gid;
        EXPECT_NEAR(font.widths.at(gid),
                    static_cast<double>(whole.advance(gid)) * 1000 / whole->units_per_EM, 0.001)
            << gid;
    }
    EXPECT_LT(font.program.size(), readFile(file).size() / 3);
}

/// How far below a heading the next line of the text stands.
double gapBelow(double heading, const QpdfFont& text) {
    double next = 0;
    for (const double baseline : text.baselines) {
        if (baseline < heading)
            next = std::max(next, baseline);
    }
    return heading - next;
}

} // namespace

TEST_F(TwoFontPdf, HasTwoEmbeddedSubsets) {
    const std::string fonts = outputOf("pdffonts", {file("two.pdf")});
    for (const std::string name : {"DejaVuSans", "LiberationSerif"}) {
        EXPECT_THAT(fonts, ContainsRegex("\n[A-Z]{6}\\+" + name +
                                         " +CID TrueType +Identity-H +yes yes yes "));
    }
    EXPECT_EQ(std::count(fonts.begin(), fonts.end(), '\n'), 4) << fonts;
}

TEST_F(TwoFontPdf, EachFontShowsItsOwnTextFromItsOwnProgram) {
    ASSERT_EQ(fonts().size(), 2U);
    EXPECT_THAT(text().name, EndsWith("+DejaVuSans"));
    EXPECT_THAT(headings().name, EndsWith("+LiberationSerif"));
    EXPECT_GT(text().shown.size(), 300U);
    EXPECT_GT(headings().shown.size(), 20U);
    EXPECT_LT(headings().shown.size(), 40U);
    expectSubsetOf(text(), packagedFont("DejaVuSans"));
    expectSubsetOf(headings(), packagedFont("LiberationSerif"));
}

TEST_F(TwoFontPdf, TheTextOfBothFontsReadsBack) {
    const std::string all = outputOf("pdftotext", {"-enc", "UTF-8", file("two.pdf"), "-"});
    EXPECT_THAT(all, StartsWith("One file, one page\n"));
    EXPECT_THAT(all, HasSubstr("\nWhat travels with the page\n"));
    EXPECT_THAT(all, HasSubstr("A font file is a small library of its own."));
}

TEST_F(TwoFontPdf, TheSizeThatTheConfigurationAsksForIsThatOfTheHeadingsAlone) {
    EXPECT_THAT(headings().sizes, ElementsAre(DoubleNear(1.2 * 1.3 * 10.5, 0.001),
                                              DoubleNear(1.2 * 2.3 * 10.5, 0.001)));
    const std::map<std::string, QpdfFont> plain = readFonts(file("plain.pdf"));
    EXPECT_THAT(plain.at("/F2").sizes,
                ElementsAre(DoubleNear(1.3 * 10.5, 0.001), DoubleNear(2.3 * 10.5, 0.001)));
    EXPECT_EQ(plain.at("/F1").sizes, text().sizes);
    EXPECT_EQ(plain.at("/F1").shown, text().shown);
}

TEST_F(TwoFontPdf, TheBaselineThatTheConfigurationAsksForMovesTheHeadingsDown) {
    const std::map<std::string, QpdfFont> plain = readFonts(file("plain.pdf"));
    const std::vector<double>& plainHeadings = plain.at("/F2").baselines;
    ASSERT_GE(headings().baselines.size(), 2U);
    ASSERT_GE(plainHeadings.size(), 2U);
    const double size = 1.2 * 1.3 * 10.5;
    EXPECT_NEAR(gapBelow(plainHeadings[1], plain.at("/F1")) -
                    gapBelow(headings().baselines[1], text()),
                0.1 * size, 0.01);
}

TEST_F(TwoFontPdf, PassesTheCheckOfQpdf) {
    const QpdfReport report = checkWithQpdf(file("two.pdf"));
    EXPECT_EQ(report.exitCode, 0) << report.text;
    EXPECT_THAT(report.text, HasSubstr("No syntax or stream encoding errors found"));
}

TEST_F(TwoFontPdf, ThePictureShowsWhatThePageShows) {
    constexpr double kPageHeight = 841.89;
    const PagePicture picture = readPng(file("two.png"));
    // The picture ends below its last line, before the next one begins.
    double last = kPageHeight;
    for (const QpdfFont* font : {&text(), &headings()}) {
        for (const double baseline : font->baselines) {
            if (baseline > kPageHeight / 2)
                last = std::min(last, baseline);
        }
    }
    const auto rows = static_cast<unsigned>((kPageHeight - last + 4) * kDpi / 72);
    const PagePicture drawn = page("two", kDpi * kFiner).reduced(kFiner);
    const PagePicture expected = drawn.corner(picture.width, rows);
    const double found = difference(expected, picture.corner(picture.width, rows));
    RecordProperty("difference", std::to_string(found));
    EXPECT_LT(found, 0.2); // the picture is hinted, the page is not
    EXPECT_GT(difference(expected, picture.shifted().corner(picture.width, rows)), 3 * found);
}
