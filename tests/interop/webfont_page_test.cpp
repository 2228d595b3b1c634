// The page of examples/make-webfont-page.py in a browser: what it says of a font as it is, of our
// WOFF, and of the same tables with padding.

#include "support/FontPackages.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace KWTest;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class WebFontPage : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ASSERT_TRUE(hasProgram("chromium")) << "install chromium";
        const std::string page = folder.path("page.html").string();
        const ProcessResult made =
            runProgram("/usr/bin/python3",
                       {KW_PAGE_SCRIPT, KW_TYPESET, packagedFont(GetParam()).string(), page});
        ASSERT_TRUE(made.ok()) << made.describe();
        if (!browse("about:blank").ok())
            GTEST_SKIP() << "the browser does not start on this machine";
        // On a machine with much to do the browser may give a font up before it is there.
        constexpr int kTries = 5;
        for (int i = 0; i < kTries && !isTold(); ++i) {
            const ProcessResult shown = browse("file://" + page);
            ASSERT_TRUE(shown.ok()) << shown.describe();
            dom = shown.output;
            console = shown.errors;
        }
    }
    bool isTold() const {
        return state("source").starts_with("taken") && state("padded").starts_with("taken");
    }
    ProcessResult browse(const std::string& address) const {
        return runProgram("chromium", {"--headless=new", "--no-sandbox", "--disable-gpu",
                                       "--disable-dev-shm-usage", "--disable-background-networking",
                                       "--no-first-run", "--virtual-time-budget=10000",
                                       "--enable-logging=stderr",
                                       "--user-data-dir=" + folder.path("profile").string(),
                                       "--dump-dom", address});
    }
    /// What the page says of one of its fonts.
    std::string state(const std::string& id) const {
        const std::size_t section = dom.find("<section id=\"" + id + "\">");
        const std::string mark = "class=\"state\">";
        const std::size_t start = dom.find(mark, section);
        if (section == std::string::npos || start == std::string::npos)
            return "not on the page";
        return dom.substr(start + mark.size(), dom.find('<', start) - start - mark.size());
    }

    TempDir folder;
    std::string dom;
    std::string console;
};

TEST_P(WebFontPage, ChromiumTakesTheSourceAndThePaddedTablesWithTheSameWidths) {
    EXPECT_THAT(state("source"), StartsWith("taken; "));
    EXPECT_THAT(state("source"), Not(HasSubstr("; 0 wide")));
    EXPECT_EQ(state("padded"), state("source"));
}

// Tables without padding do not start at multiples of four.
TEST_P(WebFontPage, ChromiumRefusesOurLayoutForItsAlignment) {
    EXPECT_EQ(state("ours"), "refused: NetworkError");
    EXPECT_THAT(console, HasSubstr("OTS parsing error: "));
    EXPECT_THAT(console, HasSubstr(": misaligned table"));
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, WebFontPage,
                         testing::Values("DejaVuSans", "LiberationSerif"),
                         [](const auto& parameter) { return std::string(parameter.param); });

} // namespace
