// The pages of the example as PostScript, shown by Ghostscript, beside the same pages as a PDF.

#include "interop/PagePicture.h"
#include "support/FontPackages.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace KWTest;
using testing::HasSubstr;

class PostScript : public testing::Test {
protected:
    void SetUp() override {
        if (!kForeignPrograms)
            GTEST_SKIP();
    }

    ProcessResult typeset(std::vector<std::string> options, const std::string& text) const {
        options.insert(options.end(), {"-o", pdf.string(), "--ps", ps.string(),
                                       folder.write("text.txt", text).string()});
        return runProgram(KW_TYPESET, options);
    }
    /// The first page.
    PagePicture shown(const std::filesystem::path& file) const {
        const std::string out = folder.path("page.pgm").string();
        const ProcessResult result = runProgram(
            "gs", {"-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-sDEVICE=pgmraw", "-dTextAlphaBits=4",
                   "-r216", "-dFirstPage=1", "-dLastPage=1", "-sOutputFile=" + out, file.string()});
        EXPECT_TRUE(result.ok()) << result.describe();
        EXPECT_EQ(result.output, "");
        return readPgm(out);
    }
    /// Both files show the same page, which has ink on it.
    void expectTheSamePage() const {
        const PagePicture page = shown(ps);
        EXPECT_GT(page.totalInk(), 100000U);
        // Another rasteriser of the same program reads the outlines of a PDF; places are rounded
        // to thousandths of a point in the one and of the font size in the other.
        EXPECT_LT(difference(page, shown(pdf)), 0.1);
    }
    /// A configuration that knows one folder, and fonts there that lie beside each other.
    std::string type1Folder(const std::vector<std::string>& fonts) const {
        const std::filesystem::path place = folder.makeFolder("fonts");
        for (const std::string& name : fonts) {
            const std::filesystem::path file = packagedFont(name);
            std::filesystem::copy_file(file, place / file.filename());
        }
        return folder
            .write("font-config.xml", "<font-config windows-registry=\"disable\">"
                                      "<font-folder path=\"" +
                                          place.string() + "\"/></font-config>")
            .string();
    }

    TempDir folder;
    std::filesystem::path pdf = folder.path("out.pdf");
    std::filesystem::path ps = folder.path("out.ps");
};

TEST_F(PostScript, AFontKeyedByNamesIsShownAsInThePdf) {
    ASSERT_TRUE(typeset({"--font", packagedFont("LinLibertine").string(), "--size", "20"},
                        "# Office fjord\n\nThe quick brown fox, \u0391\u03B2\u03B3, \u0416\u0436.")
                    .ok());
    EXPECT_THAT(readFile(ps).str(), HasSubstr("%%BeginResource: CIDFont (KW"));
    expectTheSamePage();
}

TEST_F(PostScript, AFontKeyedByCidsIsShownAsInThePdfAlsoInColumns) {
    const std::string config =
        folder
            .write("font-config.xml", "<font-config windows-registry=\"disable\"><font-folder "
                                      "path=\"" +
                                          packagedFont("NotoSansCJK").parent_path().string() +
                                          "\"/></font-config>")
            .string();
    ASSERT_TRUE(typeset({"--family", "Noto Sans CJK JP", "--config", config, "--size", "20"},
                        "\u65E5\u672C\u8A9E\u306E\u6587\u7AE0\n\n"
                        "@ vertical\n\u7E26\u66F8\u304D\u3001ABC\u3002")
                    .ok());
    expectTheSamePage();
}

TEST_F(PostScript, AType1FamilyIsShownAsInThePdf) {
    const std::string config = type1Folder({"C059-AFM", "C059-PFB"});
    const ProcessResult result =
        typeset({"--family", "C059", "--config", config, "--size", "20"},
                "# Office fjord\n\nThe quick brown fox: \u00C4\u00E9\u00F1, "
                "\u0141\u00F3d\u017A, \u0159e\u010D.");
    ASSERT_TRUE(result.ok()) << result.describe();
    EXPECT_THAT(readFile(ps).str(), HasSubstr("%%BeginResource: font C059-Roman\n"));
    expectTheSamePage();
}

TEST_F(PostScript, AFontWithTrueTypeOutlinesIsRefused) {
    const ProcessResult result =
        typeset({"--font", packagedFont("DejaVuSans").string()}, "Some text");
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, HasSubstr("DejaVuSans.ttf: PostScript takes fonts with CFF "
                                         "outlines and Type 1 fonts only"));
    EXPECT_FALSE(std::filesystem::exists(ps));
}

} // namespace
